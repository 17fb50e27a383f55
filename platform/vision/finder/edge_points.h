// SPDX-License-Identifier: Apache-2.0
//
// Sub-pel edge points of a small image at any smoothing.
#pragma once

#include <vector>

#include "platform/vision/finder/geometry.h"

namespace finder {

struct EdgePoint {
  Vec2 place;           // pels
  Vec2 gradient;        // grey levels per pel
  double length = 1.0;  // of the outline that this point stands for, about, in pels
};

/// The edge points of what `view` shows after smoothing with a Gaussian of `sigma` pels. Weak edges
/// and short pieces are left out.
std::vector<EdgePoint> edgePointsOf(const PelView& view, double sigma);

}  // namespace finder
