// SPDX-License-Identifier: Apache-2.0
//
// Candidate tables of a label printed in rows of 20 characters, as the character search would leave
// them, with up to two false candidates a key.
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"

struct TableKind {
  rzLong numKeys;  // kAllDiffer: no key stands twice
  bool hasSpaces;
  double missing;  // share of characters of which nothing is found
  double leastScore;
};
inline constexpr rzLong kAllDiffer = 0;

struct CandidateTable {
  std::vector<rzLong> keys;
  std::vector<rz_CharData> charData;
  rz_PoseTable poses;
  rz_ScoreTable scores;
};

CandidateTable makeTable(const TableKind& kind, rzLong length, unsigned seed);
