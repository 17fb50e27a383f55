// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"

/// `links[i][a][b]`: may candidate a of position i and candidate b of position i + 1 stand side by
/// side on one line? Positions of a key have the same candidates, so neighbours of the same two
/// keys share one table: a text of one key repeated has one table in all.
class rz_LinkTable {
 public:
  using Pair = std::vector<std::vector<bool>>;

  std::size_t size() const { return pairOf_.size(); }
  const Pair& operator[](std::size_t i) const { return pairs_[pairOf_[i]]; }
  std::size_t numDistinctPairs() const { return pairs_.size(); }

 private:
  friend void rf_LinkCandidates(const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                                rz_LinkTable& links);

  std::vector<Pair> pairs_;          // one for each two kinds of neighbours
  std::vector<std::size_t> pairOf_;  // by position
};

/// Links candidates that are close to each other, measured in characters, and turned alike as far
/// as their symmetries show. Covers all candidates, also those that the search may not use.
void rf_LinkCandidates(const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                       rz_LinkTable& links);
