// SPDX-License-Identifier: Apache-2.0
//
// What a line of characters looks like. Results tell poses and not which shape was fitted, so the
// shape is read off the places of the matched characters: a line is circular when it has three of
// them or more, a straight line misses them by more than a printer's tremble, and a circle misses
// them far less.
#pragma once

#include <vector>

#include "rz/vector.h"

namespace glyphline {

struct LineShape {
  bool isCircular = false;
  /// The fitted line as a chain of points from the first place to the last; empty for fewer than
  /// two places.
  std::vector<rzVector<2>> curve;
};

/// The shape of a line whose characters stand at these places, in reading order.
LineShape shapeOf(const std::vector<rzVector<2>>& places);

}  // namespace glyphline
