// SPDX-License-Identifier: Apache-2.0
//
// How well a pattern at a pose agrees with the picture.
#pragma once

#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/gradient.h"
#include "platform/vision/finder/model.h"

namespace finder {

struct Assessment {
  double score = 0.0;     // 0 to 1
  double coverage = 0.0;  // share of the outline that finds an edge
};

/// Measures how far the picture's edges lie from the pattern's and how they are turned against
/// them, in the sense of C. Steger, "Similarity measures for occlusion, clutter, and illumination
/// invariant object recognition" (2001); with all points, what is missing in one piece costs more.
/// Changes smoothly with the pose and the picture.
Assessment assess(const GradientMap& gradients, const Model& model, std::size_t points,
                  const Mat2& levelFromClient, const Pose& pose, double contrast);

}  // namespace finder
