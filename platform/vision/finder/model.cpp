// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/model.h"

#include <algorithm>
#include <limits>

#include "platform/vision/finder/edge_points.h"

namespace finder {

namespace {

// The run's gradient filters, and the pels over which it averages, act like a Gaussian of this many
// of its pels.
constexpr double kSigmaOfGrain = 0.93;
constexpr double kSmallestSigma = 0.7;  // in training pels; below it the grid shows through

double sigmaOf(double grain) { return std::max(kSmallestSigma, kSigmaOfGrain * grain); }

}  // namespace

PatternFrame measurePattern(const TrainingImage& image, double grain) {
  const std::vector<EdgePoint> points = edgePointsOf(image.view, sigmaOf(grain));
  if (points.size() < static_cast<std::size_t>(kFewestPoints)) return {};
  constexpr double kHuge = std::numeric_limits<double>::max();
  Vec2 low{kHuge, kHuge};
  Vec2 high{-kHuge, -kHuge};
  for (const EdgePoint& p : points) {
    low = {std::min(low.x, p.place.x), std::min(low.y, p.place.y)};
    high = {std::max(high.x, p.place.x), std::max(high.y, p.place.y)};
  }
  return {0.5 * (low + high), 0.5 * (high - low)};
}

Model makeModel(const TrainingImage& image, const PatternFrame& frame, double grain,
                int mostPoints) {
  Model model;
  model.grain = grain;
  const std::vector<EdgePoint> edges = edgePointsOf(image.view, sigmaOf(grain));
  if (edges.size() < static_cast<std::size_t>(kFewestPoints)) return model;
  for (const EdgePoint& e : edges) {
    ModelPoint point;
    point.place = image.clientFromPel * (e.place - frame.centrePel);
    point.normal = mapNormal(image.clientFromPel, e.gradient);
    point.weight = e.length;
    model.points.push_back(point);
  }
  model.points = thinned(model.points, mostPoints);
  for (const ModelPoint& p : model.points) model.radius = std::max(model.radius, length(p.place));
  return model;
}

std::vector<ModelPoint> thinned(const std::vector<ModelPoint>& points, int count) {
  const auto most = static_cast<std::size_t>(count);
  std::vector<ModelPoint> chosen;
  if (points.size() <= most) {
    chosen = points;
  } else {
    // Always the point that is farthest from those already chosen. Points of opposite edges of a
    // stroke do not speak for one another.
    std::vector<double> distance(points.size(), std::numeric_limits<double>::max());
    std::size_t next = 0;
    for (std::size_t k = 0; k < most; ++k) {
      chosen.push_back(points[next]);
      const ModelPoint& last = points[next];
      std::size_t farthest = 0;
      for (std::size_t i = 0; i < points.size(); ++i) {
        const double turned = 1.0 - dot(points[i].normal, last.normal);  // 0 to 2
        const Vec2 d = points[i].place - last.place;
        distance[i] = std::min(distance[i], dot(d, d) * (1.0 + 4.0 * turned));
        if (distance[i] > distance[farthest]) farthest = i;
      }
      next = farthest;
    }
    for (ModelPoint& p : chosen) p.weight = 0.0;
    for (const ModelPoint& p : points) {
      std::size_t nearest = 0;
      double best = std::numeric_limits<double>::max();
      for (std::size_t i = 0; i < chosen.size(); ++i) {
        const double turned = 1.0 - dot(p.normal, chosen[i].normal);
        const Vec2 d = p.place - chosen[i].place;
        const double away = dot(d, d) * (1.0 + 4.0 * turned);
        if (away < best) {
          best = away;
          nearest = i;
        }
      }
      chosen[nearest].weight += p.weight;
    }
  }
  double sum = 0.0;
  for (const ModelPoint& p : chosen) sum += p.weight;
  for (ModelPoint& p : chosen) p.weight *= static_cast<double>(chosen.size()) / sum;
  return chosen;
}

}  // namespace finder
