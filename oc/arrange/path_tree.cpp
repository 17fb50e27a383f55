// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/path_tree.h"

#include <algorithm>

rz_PathTree::rz_PathTree() {
  steps_.emplace_back().holders = 1;
  sums_.emplace_back();
}

rzLong rz_PathTree::add(const rz_PathNode& node) {
  rzLong index = rf_Count(steps_.size());
  if (free_.empty()) {
    steps_.push_back(node.step);
    sums_.push_back(node.sums);
  } else {
    index = free_.back();
    free_.pop_back();
    steps_[rf_At(index)] = node.step;
    sums_[rf_At(index)] = node.sums;
  }
  steps_[rf_At(index)].holders = 1;
  hold(node.step.parent);
  return index;
}

void rz_PathTree::release(rzLong node) {
  while (--steps_[rf_At(node)].holders == 0) {
    free_.push_back(node);
    node = steps_[rf_At(node)].parent;
  }
}

rz_ArrangePath rz_PathTree::path(rzLong node) const {
  rz_ArrangePath path;
  for (; node != kRoot; node = step(node).parent) {
    path.choices.push_back(step(node).choice);
    if (step(node).startsLine()) path.lineStarts.push_back(step(node).length - 1);
  }
  std::ranges::reverse(path.choices);
  std::ranges::reverse(path.lineStarts);
  return path;
}
