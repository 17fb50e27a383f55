// SPDX-License-Identifier: Apache-2.0
//
// Which candidate does each position take, and where do lines begin? A best-first search over
// partial paths: the cheapest one that waits is grown by one position in every allowed way, until
// a complete one comes first. The cost of a path can fall as it grows, because its last line is
// fitted anew, so the answer is good but not proved to be the best.
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange_params.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"

/// Fills `path`, which gets a choice for every position of the target. False if the search ended
/// before it had seen a complete path: the best partial one is then completed with unmatched
/// positions. The image tells the handedness of the client frame. May throw rzTimeout::Expired.
bool rf_SearchPaths(const rzPelBuffer_const<unsigned char>& image,
                    const std::vector<rzLong>& targetKeys, const std::vector<rz_CharData>& charData,
                    const rz_PoseTable& poses, const rz_ScoreTable& scores,
                    const rzOCArrangeParams& params, rz_ArrangePath& path);

/// Makes each unmatched position at the end of the last line a line of its own, if that line has
/// more than one position.
void rf_SplitTrailingUnmatched(rz_ArrangePath& path);
