// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"

/// `links[i][a][b]`: may candidate a of position i and candidate b of position i + 1 stand side by
/// side on one line?
using rz_LinkTable = std::vector<std::vector<std::vector<bool>>>;

/// Links candidates that are close to each other, measured in characters, and turned alike as far
/// as their symmetries show. Covers all candidates, also those that the search may not use.
void rf_LinkCandidates(const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                       rz_LinkTable& links);
