// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "oc/alphabet.h"
#include "oc/arrange/arrange_records.h"
#include "oc/line_arrangement.h"
#include "rz/ptr_handle.h"
#include "rz/xform.h"

/// Makes lines and arrangement of the positions' poses. The arrangement's frame is that of position
/// 0, a line's frame that of its first position. Uncertainties tell how far each character lay from
/// where its line wanted it; they are 0 unless `compPoseUncertainties`. `cost` is that of the final
/// evaluation of `path`.
void rf_BuildArrangement(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                         const std::vector<rzLong>& targetKeys, const rz_ArrangePath& path,
                         const rz_ArrangeCost& cost, const std::vector<rz_Pose>& positionPoses,
                         bool compPoseUncertainties,
                         rzPtrHandle_const<rzOCLineArrangement>& arrangement,
                         rzXform<2>& clientFromArrangementXform);
