// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/match_points.h"

#include <algorithm>
#include <cmath>

namespace finder {

namespace {

struct FloatGradient {
  float x;
  float y;
};

// Between the pels' centres; null outside.
FloatGradient between(const GradientMap& map, float x, float y) {
  const float u = x - 0.5F;
  const float v = y - 0.5F;
  if (!(u >= 0.0F && v >= 0.0F)) return {0.0F, 0.0F};
  const int i = static_cast<int>(u);
  const int j = static_cast<int>(v);
  if (i + 1 >= map.width || j + 1 >= map.height) return {0.0F, 0.0F};
  const float a = u - static_cast<float>(i);
  const float b = v - static_cast<float>(j);
  const Gradient* top = map.row(j) + i;
  const Gradient* bottom = top + map.width;
  const float w00 = (1.0F - a) * (1.0F - b);
  const float w10 = a * (1.0F - b);
  const float w01 = (1.0F - a) * b;
  const float w11 = a * b;
  return {w00 * static_cast<float>(top[0].x) + w10 * static_cast<float>(top[1].x) +
              w01 * static_cast<float>(bottom[0].x) + w11 * static_cast<float>(bottom[1].x),
          w00 * static_cast<float>(top[0].y) + w10 * static_cast<float>(top[1].y) +
              w01 * static_cast<float>(bottom[0].y) + w11 * static_cast<float>(bottom[1].y)};
}

// Of two edges the nearer one counts more.
double preference(double offset) { return 1.0 / (1.0 + 0.15 * offset * offset); }

void matchPoint(const GradientMap& gradients, Vec2 place, int range, double least,
                PointMatch& match) {
  const auto nx = static_cast<float>(match.normal.x);
  const auto ny = static_cast<float>(match.normal.y);
  const auto px = static_cast<float>(place.x);
  const auto py = static_cast<float>(place.y);
  double along[2 * kGreatestRange + 3];
  const int reach = range + 1;
  for (int t = -reach; t <= reach; ++t) {
    const auto s = static_cast<float>(t);
    const FloatGradient g = between(gradients, px + s * nx, py + s * ny);
    along[t + reach] = static_cast<double>(g.x * nx + g.y * ny);
  }
  double best = 0.0;
  for (int t = 1; t < 2 * reach; ++t) {
    const double here = along[t];
    const double before = along[t - 1];
    const double after = along[t + 1];
    if (here < least || here < before || here <= after) continue;
    const double offset = t - reach + 0.5 * (before - after) / (before - 2.0 * here + after);
    const double value = here * preference(offset);
    if (value <= best) continue;
    best = value;
    match.offset = offset;
    match.strength = here;
  }
  if (match.strength <= 0.0) return;
  const auto s = static_cast<float>(match.offset);
  const FloatGradient g = between(gradients, px + s * nx, py + s * ny);
  const float size = std::sqrt(g.x * g.x + g.y * g.y);
  if (size > 0.0F) match.cosine = static_cast<double>((g.x * nx + g.y * ny) / size);
}

}  // namespace

void matchPoints(const GradientMap& gradients, const std::vector<ModelPoint>& points,
                 std::size_t count, const Pose& pose, const Mat2& map, int range, double least,
                 std::vector<PointMatch>& matches) {
  matches.clear();
  for (std::size_t i = 0; i < std::min(count, points.size()); ++i) {
    PointMatch match;
    match.arm = map * points[i].place;
    match.normal = mapNormal(map, points[i].normal);
    match.weight = points[i].weight;
    matchPoint(gradients, pose.centre + match.arm + pose.boldness * match.normal, range, least,
               match);
    matches.push_back(match);
  }
}

}  // namespace finder
