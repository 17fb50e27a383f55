// SPDX-License-Identifier: Apache-2.0
//
// Finding printed lines among boxes, and the base line of each.
#pragma once

#include <cstddef>
#include <vector>

#include "rz/rect.h"

namespace glyphline {

/// A base line: y = offset + slope * x, pels of the picture.
struct BaseLine {
  double offset = 0.0;
  double slope = 0.0;

  double at(double x) const { return offset + slope * x; }
};

/// Groups boxes that stand beside each other into printed lines; indices, each line from left to
/// right.
std::vector<std::vector<std::size_t>> printedLines(const std::vector<rzRect>& boxes);

/// The line through the bottoms of the boxes of one printed line. Median slope and offset (P. Sen,
/// "Estimates of the regression coefficient based on Kendall's tau", JASA 63, 1968), so that
/// descenders and raised marks, as long as they are fewer than half, hang below or stand above.
BaseLine fitBaseLine(const std::vector<rzRect>& boxes);

}  // namespace glyphline
