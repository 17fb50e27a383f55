// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange_params.h"

/// Gives every position of the text a pose, a score and a status: matched positions those of their
/// candidate, turned the right way up where the character looks the same either way; unmatched ones
/// inside a line the place where the line wants them; others a placeholder. `cost` is that of the
/// final evaluation of `path`.
void rf_AssignPositions(const rz_PoseTable& poses, const rz_ScoreTable& scores,
                        const rz_ArrangePath& path, const rz_ArrangeCost& cost,
                        const std::vector<rz_CharData>& charData, const rzOCArrangeParams& params,
                        std::vector<rz_Pose>& positionPoses, std::vector<double>& resultScores,
                        std::vector<rzOCArrangeDefs::CharStatus>& resultStatuses);
