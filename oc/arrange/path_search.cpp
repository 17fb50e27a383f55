// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/path_search.h"

#include <algorithm>

#include "rz/attention.h"

namespace {

constexpr rzLong kMaxLag = 5;  // positions behind the longest path; those further back are dropped
constexpr rzULong kCheckBit = 8;  // attention is looked at in the rounds that have this bit clear

}  // namespace

rz_PathSearch::rz_PathSearch(const std::vector<rzLong>& targetKeys,
                             const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                             const rz_ScoreTable& scores, const rzOCArrangeParams& params,
                             bool isLeftHanded)
    : charData_(charData),
      params_(params),
      trials_(tree_, targetKeys, charData, poses, scores, params, isLeftHanded) {
  rf_LinkCandidates(charData, poses, links_);
  tree_.hold(best_);
  tree_.hold(rz_PathTree::kRoot);
  queue_.push(rz_PathTree::kRoot, 0.0);
}

bool rz_PathSearch::runRound() {
  if (queue_.size() >= params_.maxCandidates() || queue_.empty()) return false;
  const rzLong node = queue_.top();
  const rzLong length = tree_.step(node).length;
  if (length == rf_Count(charData_.size())) return false;
  ++numRounds_;
  if ((numRounds_ & kCheckBit) == 0) rzAttention::check();
  queue_.pop();
  if (length >= bestLength_ - kMaxLag) growPath_(node);
  tree_.release(node);
  return true;
}

// The order of the trials decides which of equally cheap paths comes first.
void rz_PathSearch::growPath_(rzLong node) {
  const std::size_t position = rf_At(tree_.step(node).length);
  const rzLong previous = tree_.step(node).choice;
  trials_.grow(node);
  const rz_CharData& character = charData_[position];
  for (rzLong c = character.mayStayUnmatched ? kUnmatched : 0; c < character.numCandidates; ++c) {
    if (canContinue_(position, previous, c)) tryChoice_(c, false);
    tryChoice_(c, true);
  }
}

bool rz_PathSearch::canContinue_(std::size_t position, rzLong previous, rzLong choice) const {
  if (position == 0) return false;
  return previous < 0 || choice < 0 || links_[position - 1][rf_At(previous)][rf_At(choice)];
}

void rz_PathSearch::tryChoice_(rzLong choice, bool startsLine) {
  rz_PathNode grown;
  double total = 0.0;
  ++counts_.tried;
  if (!trials_.tryChoice(choice, startsLine, grown, total)) return;
  const rzLong node = tree_.add(grown);
  queue_.push(node, total);
  counts_.mostWaiting = std::max(counts_.mostWaiting, queue_.size());
  const rzLong length = grown.step.length;
  const bool isBetter = length > bestLength_ || (length == bestLength_ && total < bestCost_);
  if (!isBetter) return;
  tree_.hold(node);
  tree_.release(best_);
  best_ = node;
  bestLength_ = length;
  bestCost_ = total;
}
