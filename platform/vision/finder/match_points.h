// SPDX-License-Identifier: Apache-2.0
//
// Pairs the pattern's points with edges of the picture near them.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/gradient.h"
#include "platform/vision/finder/lanes.h"
#include "platform/vision/finder/model.h"

namespace finder {

/// The edges near some points of the pattern, side by side.
struct Matches {
  Floats armX, armY;        // from the pattern's centre to the point, pels
  Floats normalX, normalY;  // where the gradient should point
  Floats weight;            // of the model point; 0 where there is none
  Floats offset;    // of the edge from the point, along the normal and beyond the boldness, pels
  Floats strength;  // gradient along the normal; 0 when there is no edge
  Floats cosine;    // of the angle between the gradient and the normal
};

/// Looks for the edge of each of the first `count` points (rounded up to whole blocks), up to
/// `range` pels and a half on both sides of it moved by the pose's boldness. `map` takes client
/// lengths to pels. Edges with a gradient below `least` do not count.
void matchPoints(const GradientMap& gradients, const Model& model, std::size_t count,
                 const Pose& pose, const Mat2& map, int range, double least,
                 std::vector<Matches>& matches);

inline constexpr int kGreatestRange = 2;

}  // namespace finder
