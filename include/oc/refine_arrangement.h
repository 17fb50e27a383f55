// SPDX-License-Identifier: Apache-2.0
//
// rf_RefineArrangement: a second look, by correlation, at the positions that were only inferred.
// rfOCArrange does this by itself.
#pragma once

#include <vector>

#include "oc/alphabet.h"
#include "oc/arrange_defs.h"
#include "oc/pose.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"

class rzDiagObject;

/// A second look at each inferred position: the patch round its pose is cut out of `image` and
/// searched for the character by correlation. A character that is there makes the position
/// matched, with pose and score of the correlation. Matched and unknown positions stay as they
/// are. `poses`, `statuses` and `scores` have one entry for each of the keys and are updated in
/// place; after an rzTimeout::Expired they hold what was refined so far. `alphabet` is not null.
/// `diag` and `flags` are not used.
RZ_API void rf_RefineArrangement(const rzPelBuffer_const<unsigned char>& image,
                                 const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                                 const std::vector<rzLong>& keys, std::vector<rz_Pose>& poses,
                                 std::vector<rzOCArrangeDefs::CharStatus>& statuses,
                                 std::vector<double>& scores, rzDiagObject* diag, rzULong flags);
