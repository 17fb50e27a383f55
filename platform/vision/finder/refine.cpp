// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/refine.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/vision/finder/match_points.h"

namespace finder {

namespace {

constexpr double kConverged = 0.003;  // pels by which no point moves any more
constexpr int kFewestEdges = 6;
constexpr int kUnknowns = 5;           // x, y, turn, relative scale, boldness
constexpr double kStiffness = 0.1;     // against boldness, as a share of all weights
constexpr double kMostBoldness = 1.0;  // pels

// Normal equations of the unknowns, and their solution by elimination.
struct Equations {
  std::array<std::array<double, kUnknowns + 1>, kUnknowns> rows{};

  void hold(std::size_t unknown) {
    for (std::size_t i = 0; i < kUnknowns; ++i) rows[i][unknown] = rows[unknown][i] = 0.0;
    rows[unknown][unknown] = 1.0;
    rows[unknown][kUnknowns] = 0.0;
  }

  // False if the points do not fix the pose.
  bool solve(std::array<double, kUnknowns>& solution) {
    std::array<double, kUnknowns> scale;
    for (std::size_t i = 0; i < kUnknowns; ++i) {
      if (!(rows[i][i] > 0.0)) return false;
      scale[i] = rows[i][i];
    }
    // The matrix is positive definite: no pivoting.
    for (std::size_t k = 0; k < kUnknowns; ++k) {
      if (!(rows[k][k] > 1e-6 * scale[k])) return false;
      for (std::size_t i = k + 1; i < kUnknowns; ++i) {
        const double f = rows[i][k] / rows[k][k];
        for (std::size_t j = k; j <= kUnknowns; ++j) rows[i][j] -= f * rows[k][j];
      }
    }
    for (std::size_t k = kUnknowns; k-- > 0;) {
      double sum = rows[k][kUnknowns];
      for (std::size_t j = k + 1; j < kUnknowns; ++j) sum -= rows[k][j] * solution[j];
      solution[k] = sum / rows[k][k];
    }
    return true;
  }
};

// Sums over the pattern's points, of which each lane has a share.
struct Sums {
  Floats products[kUnknowns][kUnknowns + 1]{};  // of the equations; those below the diagonal are
                                                // not used
  Floats weights{};                             // of the edges
  Floats allWeights{};                          // of the points
  Ints edges{};

  Equations equations() const {
    Equations result;
    for (std::size_t i = 0; i < kUnknowns; ++i) {
      for (std::size_t j = i; j <= kUnknowns; ++j) result.rows[i][j] = sumOf(products[i][j]);
      for (std::size_t j = 0; j < i; ++j) result.rows[i][j] = result.rows[j][i];
    }
    return result;
  }
};

// Full weight for edges that nearly agree, none for those that are far off or turned.
RZ_ALWAYS_INLINE Floats edgeWeight(const Matches& m, float range) {
  const Floats far = m.offset / (range + 0.5F);
  const Floats near = greater(1.0F - far * far, Floats{});
  const Floats turned = unitClamped((m.cosine - 0.5F) / 0.35F);
  const Floats weight = m.weight * near * near * turned;
  return m.strength > 0.0F ? weight : Floats{};
}

RZ_ALWAYS_INLINE void addUp(const std::vector<Matches>& matches, const FloatMap& turning,
                            float range, Sums& sums) {
  for (const Matches& m : matches) {
    const Floats weight = edgeWeight(m, range);
    const Floats turn = m.normalX * (turning.xx * m.armX + turning.xy * m.armY) +
                        m.normalY * (turning.yx * m.armX + turning.yy * m.armY);
    const Floats growth = m.normalX * m.armX + m.normalY * m.armY;
    const Floats slopes[kUnknowns + 1] = {m.normalX, m.normalY,       turn,
                                          growth,    Floats{} + 1.0F, m.offset};
    for (int i = 0; i < kUnknowns; ++i) {
      const Floats f = weight * slopes[i];
      for (int j = i; j <= kUnknowns; ++j) sums.products[i][j] += f * slopes[j];
    }
    sums.weights += weight;
    sums.allWeights += m.weight;
    sums.edges -= weight > 0.0F;
  }
}

RZ_CPU_VARIANTS(addUp,
                (const std::vector<Matches>& matches, const FloatMap& turning, float range,
                 Sums& sums),
                (matches, turning, range, sums))

}  // namespace

Pose limited(const Pose& pose, const PoseLimits& limits) {
  Pose result = pose;
  if (limits.angleIsFree && !limits.isFullTurn) {
    result.angle = std::clamp(pose.angle, limits.lowestAngle, limits.highestAngle);
  }
  if (limits.scaleIsFree) {
    result.scale = std::clamp(pose.scale, limits.lowestScale, limits.highestScale);
  }
  return result;
}

std::optional<Pose> refined(const GradientMap& gradients, const Model& model,
                            const Mat2& levelFromClient, const Pose& start,
                            const PoseLimits& limits, const RefinePlan& plan) {
  Pose pose = start;
  std::vector<Matches> matches;
  for (int round = 0; round < plan.rounds; ++round) {
    const Mat2 map = levelFromClient * similarity(pose.angle, pose.scale);
    // A point moves by this when the pose turns by a radian: as if its arm were turned by a quarter
    // in client coordinates.
    const Mat2 turning = map * Mat2{0.0, -1.0, 1.0, 0.0} * inverse(map);
    matchPoints(gradients, model, plan.points, pose, map, plan.range, plan.least, matches);
    Sums sums;
    RZ_BEST_VARIANT(addUp)
    (matches, FloatMap(turning), static_cast<float>(plan.range), sums);
    const double weights = sumOf(sums.weights);
    if (weights < plan.support * sumOf(sums.allWeights)) return std::nullopt;
    int edges = 0;
    for (int l = 0; l < kLanes; ++l) edges += sums.edges[l];
    if (edges < kFewestEdges) return pose;
    Equations equations = sums.equations();
    const double stiffness = kStiffness * weights;
    equations.rows[4][4] += stiffness;
    equations.rows[4][kUnknowns] -= stiffness * pose.boldness;
    if (!limits.angleIsFree) equations.hold(2);
    if (!limits.scaleIsFree) equations.hold(3);
    std::array<double, kUnknowns> step{};
    if (!equations.solve(step)) return pose;
    const double farthest = plan.range + 0.5;
    const double shift = std::hypot(step[0], step[1]);
    const double moved = shift +
                         model.radius * meanScale(map) * (std::abs(step[2]) + std::abs(step[3])) +
                         std::abs(step[4]);
    if (!(moved < 4.0 * farthest)) return pose;
    pose.centre = pose.centre + Vec2{step[0], step[1]};
    if (limits.angleIsFree) pose.angle += step[2];
    if (limits.scaleIsFree) pose.scale *= 1.0 + step[3];
    pose.boldness = std::clamp(pose.boldness + step[4], -kMostBoldness, kMostBoldness);
    pose = limited(pose, limits);
    if (moved < kConverged) break;
  }
  return pose;
}

}  // namespace finder
