// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/match_points.h"

#include <algorithm>
#include <cmath>

#include "platform/vision/finder/cpu_variants.h"

namespace finder {

namespace {

constexpr int kSamples = 8;  // along a normal, a pel apart; the first ones count
static_assert(2 * (kGreatestRange + 1) + 1 <= kSamples);

// A gradient between the pels' centres, from the four around it. `u`, `v` are against the centre of
// pel (0, 0) and leave a pel on all sides.
RZ_ALWAYS_INLINE void blend(const Gradient* values, int width, float u, float v, float& x,
                            float& y) {
  const int i = static_cast<int>(u);
  const int j = static_cast<int>(v);
  const float a = u - static_cast<float>(i);
  const float b = v - static_cast<float>(j);
  const int at = j * width + i;
  const Gradient g00 = values[at];
  const Gradient g10 = values[at + 1];
  const Gradient g01 = values[at + width];
  const Gradient g11 = values[at + width + 1];
  const float w00 = (1.0F - a) * (1.0F - b);
  const float w10 = a * (1.0F - b);
  const float w01 = (1.0F - a) * b;
  const float w11 = a * b;
  x = w00 * static_cast<float>(g00.x()) + w10 * static_cast<float>(g10.x()) +
      w01 * static_cast<float>(g01.x()) + w11 * static_cast<float>(g11.x());
  y = w00 * static_cast<float>(g00.y()) + w10 * static_cast<float>(g10.y()) +
      w01 * static_cast<float>(g01.y()) + w11 * static_cast<float>(g11.y());
}

RZ_ALWAYS_INLINE bool isInside(const GradientMap& map, float u, float v) {
  return u >= 0.0F && v >= 0.0F && u < static_cast<float>(map.width - 1) &&
         v < static_cast<float>(map.height - 1);
}

// The same, null outside.
RZ_ALWAYS_INLINE void blendOrNull(const GradientMap& map, float u, float v, float& x, float& y) {
  x = y = 0.0F;
  if (isInside(map, u, v)) blend(map.values.get(), map.width, u, v, x, y);
}

// The gradients' parts along the normal (nx, ny) at (u + t nx, v + t ny), t from -reach on.
RZ_ALWAYS_INLINE void sampleAlong(const GradientMap& map, float u, float v, float nx, float ny,
                                  int reach, float* along) {
  const auto first = static_cast<float>(-reach);
  const float last = first + static_cast<float>(kSamples - 1);
  if (isInside(map, u + first * nx, v + first * ny) &&
      isInside(map, u + last * nx, v + last * ny)) {
    const Gradient* values = map.values.get();
    const int width = map.width;
    for (int k = 0; k < kSamples; ++k) {
      const float t = first + static_cast<float>(k);
      float x;
      float y;
      blend(values, width, u + t * nx, v + t * ny, x, y);
      along[k] = x * nx + y * ny;
    }
    return;
  }
  for (int k = 0; k <= 2 * reach; ++k) {
    const float t = first + static_cast<float>(k);
    float x;
    float y;
    blendOrNull(map, u + t * nx, v + t * ny, x, y);
    along[k] = x * nx + y * ny;
  }
}

// Of two edges the nearer one counts more.
RZ_ALWAYS_INLINE float preference(float offset) { return 1.0F / (1.0F + 0.15F * offset * offset); }

RZ_ALWAYS_INLINE void matchPoint(const GradientMap& map, float u, float v, int range, float least,
                                 PointMatch& match) {
  const auto nx = static_cast<float>(match.normal.x);
  const auto ny = static_cast<float>(match.normal.y);
  const int reach = range + 1;
  float along[kSamples];
  sampleAlong(map, u, v, nx, ny, reach, along);
  float best = 0.0F;
  float bestOffset = 0.0F;
  float strength = 0.0F;
  for (int k = 1; k < 2 * reach; ++k) {
    const float here = along[k];
    const float before = along[k - 1];
    const float after = along[k + 1];
    if (here < least || here < before || here <= after) continue;
    const float offset =
        static_cast<float>(k - reach) + 0.5F * (before - after) / (before - 2.0F * here + after);
    const float value = here * preference(offset);
    if (value <= best) continue;
    best = value;
    bestOffset = offset;
    strength = here;
  }
  if (strength <= 0.0F) return;
  match.offset = static_cast<double>(bestOffset);
  match.strength = static_cast<double>(strength);
  float x;
  float y;
  blendOrNull(map, u + bestOffset * nx, v + bestOffset * ny, x, y);
  const float size = std::sqrt(x * x + y * y);
  if (size > 0.0F) match.cosine = static_cast<double>((x * nx + y * ny) / size);
}

RZ_ALWAYS_INLINE void matchAll(const GradientMap& map, Vec2 centre, double boldness, int range,
                               float least, PointMatch* matches, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    PointMatch& match = matches[i];
    const Vec2 place = centre + match.arm + boldness * match.normal;
    matchPoint(map, static_cast<float>(place.x - 0.5), static_cast<float>(place.y - 0.5), range,
               least, match);
  }
}

RZ_CPU_VARIANTS(matchAll,
                (const GradientMap& map, Vec2 centre, double boldness, int range, float least,
                 PointMatch* matches, std::size_t count),
                (map, centre, boldness, range, least, matches, count))

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
    matches.push_back(match);
  }
  RZ_BEST_VARIANT(matchAll)
  (gradients, pose.centre, pose.boldness, range, static_cast<float>(least), matches.data(),
   matches.size());
}

}  // namespace finder
