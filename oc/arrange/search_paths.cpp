// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/search_paths.h"

#include "oc/arrange/handedness.h"
#include "oc/arrange/link_candidates.h"
#include "oc/arrange/path_tree.h"
#include "oc/arrange/path_trials.h"
#include "oc/arrange/priority_queue.h"
#include "rz/attention.h"

namespace {

constexpr rzLong kMaxLag = 5;  // positions behind the longest path; those further back are dropped
constexpr rzULong kCheckBit = 8;  // attention is looked at in the rounds that have this bit clear

class PathSearch {
 public:
  PathSearch(const std::vector<rzLong>& targetKeys, const std::vector<rz_CharData>& charData,
             const rz_PoseTable& poses, const rz_ScoreTable& scores,
             const rzOCArrangeParams& params, bool isLeftHanded)
      : charData_(charData),
        params_(params),
        trials_(tree_, targetKeys, charData, poses, scores, params, isLeftHanded) {
    rf_LinkCandidates(charData, poses, links_);
    tree_.hold(best_);
    tree_.hold(rz_PathTree::kRoot);
    queue_.push(rz_PathTree::kRoot, 0.0);
  }

  /// The longest path seen, among those the first of the cheapest.
  rz_ArrangePath run() {
    const rzLong targetLength = rf_Count(charData_.size());
    rzULong popped = 0;
    while (queue_.size() < params_.maxCandidates() && !queue_.empty()) {
      const rzLong node = queue_.top();
      const rzLong length = tree_[node].length;
      if (length == targetLength) break;
      ++popped;
      if ((popped & kCheckBit) == 0) rzAttention::check();
      queue_.pop();
      if (length >= bestLength_ - kMaxLag) growPath_(node);
      tree_.release(node);
    }
    return tree_.path(best_);
  }

 private:
  // The order of the trials decides which of equally cheap paths comes first.
  void growPath_(rzLong node) {
    const std::size_t position = rf_At(tree_[node].length);
    const rzLong previous = tree_[node].choice;
    trials_.grow(node);
    const rz_CharData& character = charData_[position];
    for (rzLong c = character.mayStayUnmatched ? kUnmatched : 0; c < character.numCandidates; ++c) {
      if (canContinue_(position, previous, c)) tryChoice_(c, false);
      tryChoice_(c, true);
    }
  }

  bool canContinue_(std::size_t position, rzLong previous, rzLong c) const {
    if (position == 0) return false;
    return previous < 0 || c < 0 || links_[position - 1][rf_At(previous)][rf_At(c)];
  }

  void tryChoice_(rzLong choice, bool startsLine) {
    rz_PathNode grown;
    double total = 0.0;
    if (!trials_.tryChoice(choice, startsLine, grown, total)) return;
    const rzLong node = tree_.add(grown);
    queue_.push(node, total);
    const bool isBetter =
        grown.length > bestLength_ || (grown.length == bestLength_ && total < bestCost_);
    if (!isBetter) return;
    tree_.hold(node);
    tree_.release(best_);
    best_ = node;
    bestLength_ = grown.length;
    bestCost_ = total;
  }

  const std::vector<rz_CharData>& charData_;
  const rzOCArrangeParams& params_;
  rz_LinkTable links_;
  rz_PathTree tree_;
  rz_PathTrials trials_;
  rz_PriorityQueue<rzLong> queue_{true};  // nodes of the tree by total cost
  rzLong best_ = rz_PathTree::kRoot;
  rzLong bestLength_ = 0;
  double bestCost_ = 0.0;
};

}  // namespace

bool rf_SearchPaths(const rzPelBuffer_const<unsigned char>& image,
                    const std::vector<rzLong>& targetKeys, const std::vector<rz_CharData>& charData,
                    const rz_PoseTable& poses, const rz_ScoreTable& scores,
                    const rzOCArrangeParams& params, rz_ArrangePath& path) {
  const bool isLeftHanded = rf_IsLeftHanded(image);
  path = PathSearch(targetKeys, charData, poses, scores, params, isLeftHanded).run();
  if (path.choices.size() == targetKeys.size()) return true;
  rf_SplitTrailingUnmatched(path);
  while (path.choices.size() < targetKeys.size()) path.append(kUnmatched, true);
  return false;
}

void rf_SplitTrailingUnmatched(rz_ArrangePath& path) {
  if (path.lineStarts.empty() || path.size() - path.lineStarts.back() <= 1) return;
  rzLong first = path.size();
  while (first > 0 && path.choices[rf_At(first - 1)] == kUnmatched) --first;
  for (; first < path.size(); ++first) path.lineStarts.push_back(first);
}
