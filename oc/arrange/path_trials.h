// SPDX-License-Identifier: Apache-2.0
//
// The trials of the path search: a path grown by one position, with the answers that
// rf_EvaluatePath gives for it, to the last bit, at the cost of judging at most one line. All sums
// of an evaluation run line by line, so those of the lines before the last one are taken from the
// path at which the last line started, and the additions that remain are the same in the same
// order. A last line that another path had before is not judged again.
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange/known_lines.h"
#include "oc/arrange/line_cost.h"
#include "oc/arrange/path_tree.h"
#include "oc/arrange_params.h"
#include "rz/types.h"

class rz_PathTrials {
 public:
  /// The references must outlive the object.
  rz_PathTrials(rz_PathTree& tree, const std::vector<rzLong>& targetKeys,
                const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                const rz_ScoreTable& scores, const rzOCArrangeParams& params, bool isLeftHanded,
                std::size_t mostKnownLines = kMostKnownLines);

  /// The path that the trials to come grow. It must be shorter than the target; it is held until
  /// the next one is set.
  void grow(rzLong node);

  /// Grows the path by one position. False if that gives a path that is not allowed; otherwise
  /// `grown` is it, ready for the tree, and `total` is its cost.
  bool tryChoice(rzLong choice, bool startsLine, rz_PathNode& grown, double& total);

 private:
  // Some hundred bytes each: the longest searches remember tens of megabytes.
  static constexpr std::size_t kMostKnownLines = 1 << 18;

  void loadChoices_(rzLong node);
  rzLong lastLine_();
  void loadLine_();
  void loadUsedCandidates_();
  bool mayStartLine_() const;
  bool mayContinue_(rzLong choice) const;
  bool addPosition_(rzLong choice, bool startsLine, rz_PathNode& grown) const;
  bool continueLine_(rzLong choice, rz_PathSums& sums);
  rz_JudgedLine judgeLine_(rzLong choice);
  double total_(const rz_PathSums& sums) const;

  rz_PathTree& tree_;
  const std::vector<rzLong>& targetKeys_;
  const std::vector<rz_CharData>& charData_;
  const rz_PoseTable& poses_;
  const rz_ScoreTable& scores_;
  const rzOCArrangeParams& params_;
  rz_LineJudge judge_;
  rz_KnownLines knownLines_;
  std::vector<rzLong> lastOfKey_;  // by position, the one before it that has its key; or -1

  // The path that is grown.
  rzLong node_ = rz_PathTree::kRoot;
  std::vector<rzLong> nodes_;    // the node that ends with each position
  std::vector<rzLong> choices_;  // and its choice
  rzLong lineStart_ = 0;         // of its last line
  rzLong line_ = rz_KnownLines::kUnknown;
  std::vector<bool> isUsed_;  // candidates of the next position, by positions of the same key

  // Its last line, once it has to be judged.
  bool isLineLoaded_ = false;
  rzLong lastMatched_ = kUnmatched;
  rz_MatchedChars chars_;
  double sumLogScale_ = 0.0;
};
