// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/overlap.h"

#include <algorithm>
#include <cmath>

namespace finder {

namespace {

double cross(Vec2 a, Vec2 b) { return a.x * b.y - a.y * b.x; }

double signedArea(const std::vector<Vec2>& polygon) {
  double sum = 0.0;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Vec2 a = polygon[i] - polygon[0];
    const Vec2 b = polygon[(i + 1) % polygon.size()] - polygon[0];
    sum += cross(a, b);
  }
  return 0.5 * sum;
}

// The part of a polygon on the inner side of the line from `a` to `b` (I. E. Sutherland and
// G. W. Hodgman, "Reentrant polygon clipping", 1974).
std::vector<Vec2> clipped(const std::vector<Vec2>& polygon, Vec2 a, Vec2 b, double sign) {
  std::vector<Vec2> result;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Vec2 p = polygon[i];
    const Vec2 q = polygon[(i + 1) % polygon.size()];
    const double sideP = sign * cross(b - a, p - a);
    const double sideQ = sign * cross(b - a, q - a);
    if (sideP >= 0.0) result.push_back(p);
    if ((sideP >= 0.0) != (sideQ >= 0.0)) {
      result.push_back(p + (sideP / (sideP - sideQ)) * (q - p));
    }
  }
  return result;
}

}  // namespace

double areaOf(const std::vector<Vec2>& polygon) {
  return polygon.size() < 3 ? 0.0 : std::abs(signedArea(polygon));
}

double overlapShare(const std::vector<Vec2>& a, const std::vector<Vec2>& b) {
  const double smaller = std::min(areaOf(a), areaOf(b));
  if (!(smaller > 0.0)) return 0.0;
  const double sign = signedArea(b) < 0.0 ? -1.0 : 1.0;
  std::vector<Vec2> common = a;
  for (std::size_t i = 0; i < b.size() && !common.empty(); ++i) {
    common = clipped(common, b[i], b[(i + 1) % b.size()], sign);
  }
  return areaOf(common) / smaller;
}

}  // namespace finder
