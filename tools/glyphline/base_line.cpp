// SPDX-License-Identifier: Apache-2.0
#include "base_line.h"

#include <algorithm>
#include <cmath>

namespace glyphline {
namespace {

constexpr double kSteepest = 0.2;  // a line steeper than this is a mistake of few boxes

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double centreX(const rzRect& box) { return box.x() + 0.5 * box.width(); }
double bottom(const rzRect& box) { return box.y() + box.height(); }

// Beside each other: they share rows for at least a third of the lower one.
bool shareRows(const rzRect& a, const rzRect& b) {
  const double common = std::min(a.y() + a.height(), b.y() + b.height()) - std::max(a.y(), b.y());
  return 3 * common >= std::min(a.height(), b.height());
}

// Close enough to be neighbours of one line: within a few heights.
bool areNear(const rzRect& a, const rzRect& b) {
  constexpr double kReach = 4;  // heights of the larger one
  const double gap = std::max(a.x(), b.x()) - std::min(a.x() + a.width(), b.x() + b.width());
  return gap <= kReach * std::max(a.height(), b.height());
}

}  // namespace

std::vector<std::vector<std::size_t>> printedLines(const std::vector<rzRect>& boxes) {
  std::vector<std::size_t> order(boxes.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return centreX(boxes[a]) < centreX(boxes[b]); });
  std::vector<std::vector<std::size_t>> lines;
  for (const std::size_t i : order) {
    const auto joins = [&](const std::vector<std::size_t>& line) {
      // Look back over a few boxes, since the last one may be a mere dot.
      const std::size_t first = line.size() > 3 ? line.size() - 3 : 0;
      for (std::size_t k = first; k < line.size(); ++k) {
        if (shareRows(boxes[line[k]], boxes[i]) && areNear(boxes[line[k]], boxes[i])) return true;
      }
      return false;
    };
    const auto line = std::find_if(lines.begin(), lines.end(), joins);
    if (line == lines.end()) {
      lines.push_back({i});
    } else {
      line->push_back(i);
    }
  }
  return lines;
}

BaseLine fitBaseLine(const std::vector<rzRect>& boxes) {
  std::vector<double> slopes;
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    for (std::size_t k = i + 1; k < boxes.size(); ++k) {
      const double dx = centreX(boxes[k]) - centreX(boxes[i]);
      const double slope = (bottom(boxes[k]) - bottom(boxes[i])) / dx;
      if (std::abs(slope) <= kSteepest) slopes.push_back(slope);
    }
  }
  BaseLine line;
  if (!slopes.empty()) line.slope = medianOf(std::move(slopes));
  std::vector<double> offsets;
  for (const rzRect& box : boxes) offsets.push_back(bottom(box) - line.slope * centreX(box));
  line.offset = medianOf(std::move(offsets));
  return line;
}

}  // namespace glyphline
