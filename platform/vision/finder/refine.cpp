// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/refine.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/vision/finder/match_points.h"

namespace finder {

namespace {

constexpr double kConverged = 0.003;  // pels by which no point moves any more
constexpr std::size_t kFewestEdges = 6;
constexpr int kUnknowns = 5;           // x, y, turn, relative scale, boldness
constexpr double kStiffness = 0.1;     // against boldness, as a share of all weights
constexpr double kMostBoldness = 1.0;  // pels

// Normal equations of the unknowns, and their solution by elimination.
struct Equations {
  std::array<std::array<double, kUnknowns + 1>, kUnknowns> rows{};

  void add(const std::array<double, kUnknowns>& slopes, double offset, double weight) {
    for (std::size_t i = 0; i < kUnknowns; ++i) {
      const double f = weight * slopes[i];
      for (std::size_t j = 0; j < kUnknowns; ++j) rows[i][j] += f * slopes[j];
      rows[i][kUnknowns] += f * offset;
    }
  }

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

// Full weight for edges that nearly agree, none for those that are far off or turned.
double edgeWeight(const PointMatch& match, double range) {
  const double far = match.offset / (range + 0.5);
  const double near = std::max(0.0, 1.0 - far * far);
  const double turned = std::clamp((match.cosine - 0.5) / 0.35, 0.0, 1.0);
  return match.weight * near * near * turned;
}

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
  std::vector<PointMatch> matches;
  for (int round = 0; round < plan.rounds; ++round) {
    const Mat2 map = levelFromClient * similarity(pose.angle, pose.scale);
    // A point moves by this when the pose turns by a radian: as if its arm were turned by a quarter
    // in client coordinates.
    const Mat2 turning = map * Mat2{0.0, -1.0, 1.0, 0.0} * inverse(map);
    matchPoints(gradients, model.points, plan.points, pose, map, plan.range, plan.least, matches);
    Equations equations;
    std::size_t edges = 0;
    double weights = 0.0;
    double radius = 0.0;
    double all = 0.0;
    for (const PointMatch& match : matches) {
      radius = std::max(radius, length(match.arm));
      all += match.weight;
      if (match.strength <= 0.0) continue;
      const double weight = edgeWeight(match, plan.range);
      if (weight <= 0.0) continue;
      ++edges;
      weights += weight;
      equations.add({match.normal.x, match.normal.y, dot(match.normal, turning * match.arm),
                     dot(match.normal, match.arm), 1.0},
                    match.offset, weight);
    }
    if (weights < plan.support * all) return std::nullopt;
    if (edges < kFewestEdges) return pose;
    const double stiffness = kStiffness * weights;
    equations.rows[4][4] += stiffness;
    equations.rows[4][kUnknowns] -= stiffness * pose.boldness;
    if (!limits.angleIsFree) equations.hold(2);
    if (!limits.scaleIsFree) equations.hold(3);
    std::array<double, kUnknowns> step{};
    if (!equations.solve(step)) return pose;
    const double farthest = plan.range + 0.5;
    const double shift = std::hypot(step[0], step[1]);
    const double moved =
        shift + radius * (std::abs(step[2]) + std::abs(step[3])) + std::abs(step[4]);
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
