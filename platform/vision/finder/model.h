// SPDX-License-Identifier: Apache-2.0
//
// What the finder knows of a pattern: points of its outline, each with the direction of the
// gradient there.
//
// Edge points are ridges of the gradient's magnitude (J. Canny, "A computational approach to edge
// detection", 1986) at sub-pel places along the gradient (F. Devernay, "A non-maxima suppression
// method for edge detection with sub-pixel accuracy", INRIA RR-2724, 1995).
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/vision/finder/edge_points.h"
#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/lanes.h"

namespace finder {

struct ModelPoint {
  Vec2 place;           // client units of the training image, against the pattern's centre
  Vec2 normal;          // unit vector in client coordinates along the gradient, to the bright side
  double weight = 1.0;  // share of the outline's length that the point stands for, 1 in the mean
};

/// How many neighbours of a point are known.
inline constexpr std::size_t kNeighbours = 4;
using Neighbours = std::array<std::uint16_t, kNeighbours>;

/// Some points of an outline side by side.
struct PointBlock {
  Floats x, y;
  Floats normalX, normalY;
  Floats weight;  // 0 in the last block where there are no more points
};

/// The outline as it shows when the picture has a certain grain.
struct Model {
  double grain = 1.0;                  // size of the picture's pels in pels of the training image
  std::vector<ModelPoint> points;      // evenly spaced along the outline, in the order of thinned()
  std::vector<PointBlock> blocks;      // the same points, in the same order
  std::vector<Neighbours> neighbours;  // of each point, by their indices, along its own edge
  double radius = 0.0;                 // greatest distance of a point from the centre
};

/// The image that was trained.
struct TrainingImage {
  PelView view;
  Mat2 clientFromPel;
};

/// The pattern's place in the training image.
struct PatternFrame {
  Vec2 centrePel;  // pels of the training image
  Vec2 halfSize;   // of the tight box round the edge points, in those pels
};

/// Fewest edge points that make a model.
inline constexpr int kFewestPoints = 12;

/// The edge points of an image as pels of `grain` of its own show them.
std::vector<EdgePoint> outlineOf(const TrainingImage& image, double grain);

/// The tight box round the edge points. A box of no size when there are too few.
PatternFrame measurePattern(const std::vector<EdgePoint>& outline);

/// The model of the outline at `grain`, at most `mostPoints` points. No points when there are too
/// few.
Model makeModel(const std::vector<EdgePoint>& outline, const PatternFrame& frame,
                const Mat2& clientFromPel, double grain, int mostPoints);

/// The outline of the same print, light where it is dark.
Model negative(Model model);

/// An even choice of at most `count` of the points, in such an order that also the first few are
/// evenly spread.
std::vector<ModelPoint> thinned(const std::vector<ModelPoint>& points, int count);

}  // namespace finder
