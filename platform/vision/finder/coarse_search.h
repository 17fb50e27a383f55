// SPDX-License-Identifier: Apache-2.0
//
// The search over a grid of places, angles and scales, in one level of a picture.
#pragma once

#include <vector>

#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/model.h"
#include "platform/vision/finder/picture_features.h"

namespace finder {

/// One angle and scale of the grid.
struct GridTurn {
  double angle = 0.0;  // radians
  double scale = 1.0;
  int angleIndex = 0;
  int scaleIndex = 0;
};

struct Candidate {
  Pose pose;  // the centre in pels of the level
  double score = 0.0;
  int angleIndex = 0;
  int scaleIndex = 0;
};

/// The places where the model, turned and scaled in all ways of the grid, agrees with the picture
/// at least to `threshold` (0 to 1), and better than at the places next to it. `angleCount` is how
/// many steps make the whole turn, or 0 where the angles do not close to one. Of neighbours in
/// place, angle and scale only the best is given; at most `most`, the best first.
std::vector<Candidate> searchGrid(const ResponseMaps& maps, const std::vector<ModelPoint>& points,
                                  const Mat2& levelFromClient, const std::vector<GridTurn>& turns,
                                  int angleCount, double threshold, std::size_t most);

/// How many points a model of the grid search may have: their responses add up in bytes.
inline constexpr int kMostGridPoints = 255 / kBestResponse;

}  // namespace finder
