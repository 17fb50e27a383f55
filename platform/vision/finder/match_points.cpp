// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/match_points.h"

#include <algorithm>

namespace finder {

namespace {

constexpr int kMostSamples = 2 * (kGreatestRange + 1) + 1;  // along a normal, a pel apart
constexpr float kFarther = 0.15F;  // how much less an edge counts a pel away than one at the point

struct Gradients {
  Floats x, y;
};

// Gradients between the pels' centres, from the four around each place; null where one of these is
// outside. `u`, `v` are against the centre of pel (0, 0).
RZ_ALWAYS_INLINE void blend(const GradientMap& map, Floats u, Floats v, Gradients& result) {
  const Ints isInside = (u >= 0.0F) & (v >= 0.0F) & (u < static_cast<float>(map.width - 1)) &
                        (v < static_cast<float>(map.height - 1));
  u = isInside ? u : Floats{};
  v = isInside ? v : Floats{};
  const Ints i = __builtin_convertvector(u, Ints);
  const Ints j = __builtin_convertvector(v, Ints);
  const Floats a = u - __builtin_convertvector(i, Floats);
  const Floats b = v - __builtin_convertvector(j, Floats);
  const Ints at = j * map.width + i;
  Ints g00, g10, g01, g11;
  for (int l = 0; l < kLanes; ++l) {
    const Gradient* above = map.values.get() + at[l];
    const Gradient* below = above + map.width;
    g00[l] = above[0].word();
    g10[l] = above[1].word();
    g01[l] = below[0].word();
    g11[l] = below[1].word();
  }
  const Floats w00 = (1.0F - a) * (1.0F - b);
  const Floats w10 = a * (1.0F - b);
  const Floats w01 = (1.0F - a) * b;
  const Floats w11 = a * b;
  const Floats x = w00 * __builtin_convertvector(Gradient::x(g00), Floats) +
                   w10 * __builtin_convertvector(Gradient::x(g10), Floats) +
                   w01 * __builtin_convertvector(Gradient::x(g01), Floats) +
                   w11 * __builtin_convertvector(Gradient::x(g11), Floats);
  const Floats y = w00 * __builtin_convertvector(Gradient::y(g00), Floats) +
                   w10 * __builtin_convertvector(Gradient::y(g10), Floats) +
                   w01 * __builtin_convertvector(Gradient::y(g01), Floats) +
                   w11 * __builtin_convertvector(Gradient::y(g11), Floats);
  result.x = isInside ? x : Floats{};
  result.y = isInside ? y : Floats{};
}

// Looks along the normals from (u, v) for the strongest edges; of two the nearer one counts more.
RZ_ALWAYS_INLINE void findEdges(const GradientMap& map, Floats u, Floats v, int range, float least,
                                Matches& m) {
  const int reach = range + 1;
  Floats along[kMostSamples];
  Gradients g;
  for (int k = 0; k <= 2 * reach; ++k) {
    const auto t = static_cast<float>(k - reach);
    blend(map, u + t * m.normalX, v + t * m.normalY, g);
    along[k] = g.x * m.normalX + g.y * m.normalY;
  }
  Floats best{};
  m.offset = m.strength = Floats{};
  for (int k = 1; k < 2 * reach; ++k) {
    const Floats here = along[k];
    const Floats before = along[k - 1];
    const Floats after = along[k + 1];
    const Ints isEdge = (here >= least) & (here >= before) & (here > after);
    const Floats bend = isEdge ? before - 2.0F * here + after : Floats{} - 1.0F;
    const Floats offset = static_cast<float>(k - reach) + 0.5F * (before - after) / bend;
    const Floats value = here / (1.0F + kFarther * offset * offset);
    const Ints isBetter = isEdge & (value > best);
    best = isBetter ? value : best;
    m.offset = isBetter ? offset : m.offset;
    m.strength = isBetter ? here : m.strength;
  }
  blend(map, u + m.offset * m.normalX, v + m.offset * m.normalY, g);
  const Floats size = rootOf(g.x * g.x + g.y * g.y);
  const Ints isKnown = (m.strength > 0.0F) & (size > 0.0F);
  const Floats cosine = (g.x * m.normalX + g.y * m.normalY) / (isKnown ? size : Floats{} + 1.0F);
  m.cosine = isKnown ? cosine : Floats{};
}

RZ_ALWAYS_INLINE void matchBlocks(const GradientMap& gradients, const PointBlock* points,
                                  const Pose& pose, const Mat2& map, int range, float least,
                                  std::vector<Matches>& matches) {
  const FloatMap arms(map);
  const FloatMap normals(normalMap(map));
  const auto centreU = static_cast<float>(pose.centre.x - 0.5);
  const auto centreV = static_cast<float>(pose.centre.y - 0.5);
  const auto boldness = static_cast<float>(pose.boldness);
  for (Matches& m : matches) {
    const PointBlock& p = *points++;
    m.armX = arms.xx * p.x + arms.xy * p.y;
    m.armY = arms.yx * p.x + arms.yy * p.y;
    const Floats x = normals.xx * p.normalX + normals.xy * p.normalY;
    const Floats y = normals.yx * p.normalX + normals.yy * p.normalY;
    const Floats size = rootOf(x * x + y * y);
    m.normalX = x / size;
    m.normalY = y / size;
    m.weight = p.weight;
    findEdges(gradients, centreU + (m.armX + boldness * m.normalX),
              centreV + (m.armY + boldness * m.normalY), range, least, m);
  }
}

RZ_CPU_VARIANTS(matchBlocks,
                (const GradientMap& gradients, const PointBlock* points, const Pose& pose,
                 const Mat2& map, int range, float least, std::vector<Matches>& matches),
                (gradients, points, pose, map, range, least, matches))

}  // namespace

void matchPoints(const GradientMap& gradients, const Model& model, std::size_t count,
                 const Pose& pose, const Mat2& map, int range, double least,
                 std::vector<Matches>& matches) {
  matches.clear();
  if (gradients.width < 2 || gradients.height < 2) return;
  matches.resize((std::min(count, model.points.size()) + kLanes - 1) / kLanes);
  RZ_BEST_VARIANT(matchBlocks)
  (gradients, model.blocks.data(), pose, map, range, static_cast<float>(least), matches);
}

}  // namespace finder
