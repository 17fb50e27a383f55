// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/vision/finder/geometry.h"

namespace finder {

/// The area of a polygon, corners in turn.
double areaOf(const std::vector<Vec2>& polygon);

/// The common area of two convex polygons as a share of the smaller one.
double overlapShare(const std::vector<Vec2>& a, const std::vector<Vec2>& b);

}  // namespace finder
