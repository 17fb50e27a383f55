// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/path_tree.h"

#include <algorithm>

rz_PathTree::rz_PathTree() {
  rz_PathNode root;
  root.holders = 1;
  nodes_.push_back(root);
}

rzLong rz_PathTree::add(const rz_PathNode& node) {
  rzLong index = rf_Count(nodes_.size());
  if (free_.empty()) {
    nodes_.push_back(node);
  } else {
    index = free_.back();
    free_.pop_back();
    nodes_[rf_At(index)] = node;
  }
  nodes_[rf_At(index)].holders = 1;
  hold(node.parent);
  return index;
}

void rz_PathTree::release(rzLong node) {
  while (--nodes_[rf_At(node)].holders == 0) {
    free_.push_back(node);
    node = nodes_[rf_At(node)].parent;
  }
}

rz_ArrangePath rz_PathTree::path(rzLong node) const {
  rz_ArrangePath path;
  for (; node != kRoot; node = (*this)[node].parent) {
    path.choices.push_back((*this)[node].choice);
    if ((*this)[node].startsLine()) path.lineStarts.push_back((*this)[node].length - 1);
  }
  std::ranges::reverse(path.choices);
  std::ranges::reverse(path.lineStarts);
  return path;
}
