// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/model.h"

#include <algorithm>
#include <limits>
namespace finder {

namespace {

// The run's gradient filters, with the pels over which they average and the blur that a lens adds
// to a drawn training image, act like a Gaussian of so many of its pels.
constexpr double kSigmaOfGrain = 1.1;
constexpr double kSmallestSigma = 0.7;  // in training pels; below it the grid shows through

double sigmaOf(double grain) { return std::max(kSmallestSigma, kSigmaOfGrain * grain); }

// How little a point speaks for another one: the squared distance, more where the outline runs in
// another direction, as on the other edge of a stroke.
double strangeness(const ModelPoint& a, const ModelPoint& b) {
  const Vec2 d = a.place - b.place;
  return dot(d, d) * (1.0 + 4.0 * (1.0 - dot(a.normal, b.normal)));
}

// The points that are least strange to each one.
std::vector<Neighbours> neighboursOf(const std::vector<ModelPoint>& points) {
  std::vector<Neighbours> all(points.size(), Neighbours{});
  if (points.size() <= kNeighbours) return all;
  for (std::size_t i = 0; i < points.size(); ++i) {
    std::array<double, kNeighbours> least;
    least.fill(std::numeric_limits<double>::max());
    for (std::size_t j = 0; j < points.size(); ++j) {
      const double value = strangeness(points[i], points[j]);
      if (j == i || value >= least.back()) continue;
      std::size_t k = kNeighbours - 1;
      for (; k > 0 && least[k - 1] > value; --k) {
        least[k] = least[k - 1];
        all[i][k] = all[i][k - 1];
      }
      least[k] = value;
      all[i][k] = static_cast<std::uint16_t>(j);
    }
  }
  return all;
}

std::vector<PointBlock> blocksOf(const std::vector<ModelPoint>& points) {
  constexpr PointBlock kNone{{}, {}, Floats{} + 1.0F, {}, {}};
  std::vector<PointBlock> blocks((points.size() + kLanes - 1) / kLanes, kNone);
  for (std::size_t i = 0; i < points.size(); ++i) {
    PointBlock& block = blocks[i / kLanes];
    const ModelPoint& p = points[i];
    block.x[i % kLanes] = static_cast<float>(p.place.x);
    block.y[i % kLanes] = static_cast<float>(p.place.y);
    block.normalX[i % kLanes] = static_cast<float>(p.normal.x);
    block.normalY[i % kLanes] = static_cast<float>(p.normal.y);
    block.weight[i % kLanes] = static_cast<float>(p.weight);
  }
  return blocks;
}

}  // namespace

std::vector<EdgePoint> outlineOf(const TrainingImage& image, double grain) {
  return edgePointsOf(image.view, sigmaOf(grain));
}

PatternFrame measurePattern(const std::vector<EdgePoint>& outline) {
  if (outline.size() < static_cast<std::size_t>(kFewestPoints)) return {};
  constexpr double kHuge = std::numeric_limits<double>::max();
  Vec2 low{kHuge, kHuge};
  Vec2 high{-kHuge, -kHuge};
  for (const EdgePoint& p : outline) {
    low = {std::min(low.x, p.place.x), std::min(low.y, p.place.y)};
    high = {std::max(high.x, p.place.x), std::max(high.y, p.place.y)};
  }
  return {0.5 * (low + high), 0.5 * (high - low)};
}

Model makeModel(const std::vector<EdgePoint>& outline, const PatternFrame& frame,
                const Mat2& clientFromPel, double grain, int mostPoints) {
  Model model;
  model.grain = grain;
  if (outline.size() < static_cast<std::size_t>(kFewestPoints)) return model;
  for (const EdgePoint& e : outline) {
    ModelPoint point;
    point.place = clientFromPel * (e.place - frame.centrePel);
    point.normal = mapNormal(clientFromPel, e.gradient);
    point.weight = e.length;
    model.points.push_back(point);
  }
  model.points = thinned(model.points, mostPoints);
  model.blocks = blocksOf(model.points);
  model.neighbours = neighboursOf(model.points);
  for (const ModelPoint& p : model.points) model.radius = std::max(model.radius, length(p.place));
  return model;
}

Model negative(Model model) {
  for (ModelPoint& p : model.points) p.normal = -1.0 * p.normal;
  model.blocks = blocksOf(model.points);
  return model;
}

std::vector<ModelPoint> thinned(const std::vector<ModelPoint>& points, int count) {
  constexpr double kFar = std::numeric_limits<double>::max();
  if (points.empty()) return {};
  // Always the point that is farthest from those already chosen.
  std::vector<ModelPoint> chosen;
  std::vector<std::size_t> nearest(points.size(), 0);
  std::vector<double> distance(points.size(), kFar);
  std::size_t next = 0;
  while (chosen.size() < std::min(points.size(), static_cast<std::size_t>(count))) {
    const ModelPoint& last = points[next];
    for (std::size_t i = 0; i < points.size(); ++i) {
      const double away = strangeness(points[i], last);
      if (away >= distance[i]) continue;
      distance[i] = away;
      nearest[i] = chosen.size();
    }
    chosen.push_back(last);
    next = static_cast<std::size_t>(std::max_element(distance.begin(), distance.end()) -
                                    distance.begin());
  }
  double sum = 0.0;
  for (const ModelPoint& p : points) sum += p.weight;
  for (ModelPoint& p : chosen) p.weight = 0.0;
  // Each point chosen stands for those that are nearest to it.
  const double share = static_cast<double>(chosen.size()) / sum;
  for (std::size_t i = 0; i < points.size(); ++i) {
    chosen[nearest[i]].weight += share * points[i].weight;
  }
  return chosen;
}

}  // namespace finder
