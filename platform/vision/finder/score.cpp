// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/score.h"

#include <algorithm>
#include <cmath>

#include "platform/vision/finder/match_points.h"

namespace finder {

namespace {

// Where the agreement of a point with its edge begins to fall and where it ends. Measured so that
// ordinary print keeps its score while other characters lose theirs: narrower limits cost
// characters of bad print more than they take from wrong ones.
constexpr double kNear = 0.2;  // pels between point and edge
constexpr double kFar = 0.9;   // less for patterns of a small radius, whose strokes are closer
constexpr double kFarOfNone = 0.3;
constexpr double kFarOfRadius = 0.04;
constexpr double kAlong = 0.96;  // cosine of the angle between their directions
constexpr double kAcross = 0.8;
constexpr double kSureContrast = 0.8;  // of the contrast asked for, as an ideal step
constexpr double kNoContrast = 0.3;
constexpr double kSureStrength = 0.4;  // of the median of the pattern's edges
constexpr double kNoStrength = 0.1;
// Half a pattern is worth less than half: the score is a power of the mean agreement.
constexpr double kPower = 1.5;
constexpr double kHasPartner = 0.3;  // agreement from which a point counts as covered

// 1 up to `from`, 0 from `to` on, smooth between.
double falling(double value, double from, double to) {
  const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
  return 1.0 - t * t * (3.0 - 2.0 * t);
}

double rising(double value, double from, double to) { return 1.0 - falling(value, from, to); }

double agreementOf(const PointMatch& match, double far, double step, double median) {
  return falling(std::abs(match.offset), kNear, far) * rising(match.cosine, kAcross, kAlong) *
         rising(match.strength, kNoContrast * step, kSureContrast * step) *
         rising(match.strength, kNoStrength * median, kSureStrength * median);
}

double medianStrength(const std::vector<PointMatch>& matches) {
  std::vector<double> strengths;
  for (const PointMatch& m : matches) {
    if (m.strength > 0.0) strengths.push_back(m.strength);
  }
  if (strengths.empty()) return 0.0;
  const auto middle = strengths.begin() + static_cast<std::ptrdiff_t>(strengths.size() / 2);
  std::nth_element(strengths.begin(), middle, strengths.end());
  return *middle;
}

}  // namespace

Assessment assess(const GradientMap& gradients, const Model& model, std::size_t points,
                  const Mat2& levelFromClient, const Pose& pose, double contrast) {
  const double step = contrast * kGradientOfStep;
  std::vector<PointMatch> matches;
  const Mat2 map = levelFromClient * similarity(pose.angle, pose.scale);
  matchPoints(gradients, model.points, points, pose, map, 1, kNoContrast * step, matches);
  Assessment result;
  const double median = medianStrength(matches);
  if (median <= 0.0) return result;
  const double far = std::min(kFar, kFarOfNone + kFarOfRadius * model.radius * meanScale(map));
  double sum = 0.0;
  double found = 0.0;
  double all = 0.0;
  for (const PointMatch& m : matches) {
    all += m.weight;
    if (m.strength <= 0.0) continue;
    const double agreement = agreementOf(m, far, step, median);
    sum += m.weight * agreement;
    if (agreement > kHasPartner) found += m.weight;
  }
  result.score = std::clamp(std::pow(sum / all, kPower), 0.0, 1.0);
  result.coverage = found / all;
  return result;
}

}  // namespace finder
