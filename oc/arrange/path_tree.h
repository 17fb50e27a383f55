// SPDX-License-Identifier: Apache-2.0
//
// The paths of a search, as a tree of shared prefixes: a path is a node, its choices are read off
// on the way to the root. Half a million paths of a hundred choices each thus fit into some forty
// megabytes. A node lives while it is held or has children.
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange/evaluate_path.h"
#include "rz/types.h"

/// A path, told by its last position and the path before it.
struct rz_PathNode {
  bool startsLine() const { return beforeLine == parent; }

  rzLong parent = -1;
  rzLong beforeLine = -1;  ///< The path that ends where the last line starts; -1 for the root.
  rzLong choice = kUnmatched;
  rzLong length = 0;

  // Sums over the whole path.
  rzLong unmatched = 0;  ///< Positions that are neither matched nor blank.
  rzLong charged = 0;    ///< Those of them that cost.
  rzLong realLines = 0;  ///< Lines that are not a single unmatched position.
  rzLong holders = 0;    ///< Children, and those that asked to hold it.
  double matchCost = 0.0;
  rz_PathErrors errors;
};

class rz_PathTree {
 public:
  static constexpr rzLong kRoot = 0;  ///< The empty path, never removed.

  rz_PathTree();

  const rz_PathNode& operator[](rzLong node) const { return nodes_[rf_At(node)]; }

  /// Adds a node below its parent and holds it once.
  rzLong add(const rz_PathNode& node);
  void hold(rzLong node) { ++nodes_[rf_At(node)].holders; }
  /// Removes what nobody holds any more, up to the root.
  void release(rzLong node);

  /// Where the last line of a path starts.
  rzLong lineStart(rzLong node) const { return (*this)[(*this)[node].beforeLine].length; }

  rz_ArrangePath path(rzLong node) const;

 private:
  std::vector<rz_PathNode> nodes_;
  std::vector<rzLong> free_;
};
