// SPDX-License-Identifier: Apache-2.0
//
// What stands in the picture where a pattern at a pose expects its edges.
#pragma once

#include <vector>

#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/gradient.h"
#include "platform/vision/finder/model.h"

namespace finder {

/// The edge near one point of the pattern.
struct PointMatch {
  Vec2 arm;             // from the pattern's centre to the point, pels
  Vec2 normal;          // where the gradient should point
  double weight = 1.0;  // of the model point
  double offset =
      0.0;  // of the edge from the point, along the normal and beyond the boldness, pels
  double strength = 0.0;  // gradient along the normal; 0 when there is no edge
  double cosine = 0.0;    // of the angle between the gradient and the normal
};

/// Looks for the edge of each of the first `count` points, up to `range` pels and a half on both
/// sides of it moved by the pose's boldness. `map` takes client lengths to pels. Edges with a
/// gradient below `least` do not count.
void matchPoints(const GradientMap& gradients, const std::vector<ModelPoint>& points,
                 std::size_t count, const Pose& pose, const Mat2& map, int range, double least,
                 std::vector<PointMatch>& matches);

inline constexpr int kGreatestRange = 2;

}  // namespace finder
