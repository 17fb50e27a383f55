// SPDX-License-Identifier: Apache-2.0
//
// The paths of a search, as a tree of shared prefixes: a path is a node, its choices are read off
// on the way to the root. Half a million paths of a hundred choices each thus fit into some forty
// megabytes. A node lives while it is held or has children.
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange/evaluate_path.h"
#include "oc/arrange/known_lines.h"
#include "rz/types.h"

/// A path, told by its last position and the path before it. Small, for the search goes from path
/// to path through memory.
struct rz_PathStep {
  bool startsLine() const { return beforeLine == parent; }

  rzLong parent = -1;
  rzLong beforeLine = -1;  ///< The path that ends where the last line starts; -1 for the root.
  rzLong choice = kUnmatched;
  rzLong length = 0;
  rzLong holders = 0;  ///< Children, and those that asked to hold it.
};

/// Sums over a whole path.
struct rz_PathSums {
  rzLong unmatched = 0;                   ///< Positions that are neither matched nor blank.
  rzLong charged = 0;                     ///< Those of them that cost.
  rzLong realLines = 0;                   ///< Lines that are not a single unmatched position.
  rzLong line = rz_KnownLines::kUnknown;  ///< The last line, unless it has just started.
  double matchCost = 0.0;
  rz_PathErrors errors;
};

struct rz_PathNode {
  rz_PathStep step;
  rz_PathSums sums;
};

class rz_PathTree {
 public:
  static constexpr rzLong kRoot = 0;  ///< The empty path, never removed.

  rz_PathTree();

  const rz_PathStep& step(rzLong node) const { return steps_[rf_At(node)]; }
  const rz_PathSums& sums(rzLong node) const { return sums_[rf_At(node)]; }

  /// Adds a node below its parent and holds it once.
  rzLong add(const rz_PathNode& node);
  void hold(rzLong node) { ++steps_[rf_At(node)].holders; }
  /// Removes what nobody holds any more, up to the root.
  void release(rzLong node);

  /// Where the last line of a path starts.
  rzLong lineStart(rzLong node) const { return step(step(node).beforeLine).length; }

  rz_ArrangePath path(rzLong node) const;

 private:
  std::vector<rz_PathStep> steps_;  // by node
  std::vector<rz_PathSums> sums_;   // by node
  std::vector<rzLong> free_;
};
