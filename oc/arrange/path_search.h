// SPDX-License-Identifier: Apache-2.0
//
// The path search, round by round. rf_SearchPaths runs it to its end.
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange/link_candidates.h"
#include "oc/arrange/path_tree.h"
#include "oc/arrange/path_trials.h"
#include "oc/arrange/priority_queue.h"
#include "oc/arrange_params.h"
#include "rz/types.h"

/// What a search took.
struct rz_PathSearchCounts {
  rzLong tried = 0;        ///< Paths that were judged, allowed or not.
  rzLong mostWaiting = 0;  ///< Paths in the queue when it was longest.
};

class rz_PathSearch {
 public:
  /// The references must outlive the object. `isLeftHanded`: see rf_IsLeftHanded.
  rz_PathSearch(const std::vector<rzLong>& targetKeys, const std::vector<rz_CharData>& charData,
                const rz_PoseTable& poses, const rz_ScoreTable& scores,
                const rzOCArrangeParams& params, bool isLeftHanded);

  /// Takes the cheapest path out and grows it. False, and nothing done, when the search is over.
  /// May throw rzTimeout::Expired.
  bool runRound();

  /// The longest path seen, among those the first of the cheapest.
  rz_ArrangePath best() const { return tree_.path(best_); }
  /// The cheapest path that waits; rz_PriorityQueueDefs::EmptyQueue if there is none.
  rz_ArrangePath front() const { return tree_.path(queue_.top()); }
  rzLong numWaiting() const { return queue_.size(); }
  const rz_PathSearchCounts& counts() const { return counts_; }

 private:
  void growPath_(rzLong node);
  bool canContinue_(std::size_t position, rzLong previous, rzLong choice) const;
  void tryChoice_(rzLong choice, bool startsLine);

  const std::vector<rz_CharData>& charData_;
  const rzOCArrangeParams& params_;
  rz_LinkTable links_;
  rz_PathTree tree_;
  rz_PathTrials trials_;
  rz_PriorityQueue<rzLong> queue_{true};  // nodes of the tree by total cost
  rzULong numRounds_ = 0;
  rz_PathSearchCounts counts_;
  rzLong best_ = rz_PathTree::kRoot;
  rzLong bestLength_ = 0;
  double bestCost_ = 0.0;
};
