// SPDX-License-Identifier: Apache-2.0
//
// Brings a pose that is nearly right to a small part of a pel: the distances between the pattern's
// points and the picture's edges, along the normals, are made smallest in the weighted least
// squares sense, again and again with new edges and weights.
#pragma once

#include <cstddef>
#include <optional>

#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/gradient.h"
#include "platform/vision/finder/model.h"

namespace finder {

/// Which values of a pose may change, and how far. Place is free.
struct PoseLimits {
  bool angleIsFree = true;
  bool scaleIsFree = true;
  bool isFullTurn = true;  // the angle has no limits
  double lowestAngle = 0.0;
  double highestAngle = 0.0;
  double lowestScale = 0.0;
  double highestScale = 0.0;
};

/// How a refinement goes about.
struct RefinePlan {
  std::size_t points = 0;  // how many of the model's points it uses
  int range = 1;           // how far it looks for edges, pels
  int rounds = 4;          // at most
  double least = 0.0;      // smallest gradient of an edge
  double support = 0.0;    // share of the points that must find edges, by their weights
};

/// The refined pose, or none when it has not enough support. Where the edges do not fix the pose it
/// stays as it is.
std::optional<Pose> refined(const GradientMap& gradients, const Model& model,
                            const Mat2& levelFromClient, const Pose& start,
                            const PoseLimits& limits, const RefinePlan& plan);

/// `pose` with the angle and the scale brought into the limits.
Pose limited(const Pose& pose, const PoseLimits& limits);

}  // namespace finder
