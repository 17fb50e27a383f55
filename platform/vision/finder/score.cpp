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
// The score is a power of the mean agreement.
constexpr double kPower = 1.1;
// What tells a character from another one that has all the rest of it, a Q from an O, is missing in
// one piece, while noise takes points here and there. A point is part of such a piece when its
// neighbourhood agrees less than this in the mean, and none of the piece when it agrees more.
constexpr double kNoneAround = 0.2;
constexpr double kEnoughAround = 0.5;
constexpr double kSmallPiece = 0.015;  // of the outline: up to this it does not count,
constexpr double kLargePiece = 0.06;   // from this on in full,
constexpr double kLossOfPiece = 0.3;   // and takes so much of the score
constexpr double kHasPartner = 0.3;    // agreement from which a point counts as covered

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

// The share of the outline that is missing in one piece, by its points' agreements: those whose
// neighbourhood has none either.
double missingShare(const Model& model, const std::vector<PointMatch>& matches,
                    const std::vector<double>& agreements) {
  double missing = 0.0;
  double all = 0.0;
  for (std::size_t i = 0; i < agreements.size(); ++i) {
    double sum = agreements[i];
    for (const std::uint16_t k : model.neighbours[i]) sum += agreements[k];
    all += matches[i].weight;
    missing += matches[i].weight * falling(sum / (kNeighbours + 1), kNoneAround, kEnoughAround);
  }
  return missing / all;
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
  std::vector<double> agreements(matches.size(), 0.0);
  for (std::size_t i = 0; i < matches.size(); ++i) {
    const PointMatch& m = matches[i];
    all += m.weight;
    if (m.strength <= 0.0) continue;
    const double agreement = agreementOf(m, far, step, median);
    agreements[i] = agreement;
    sum += m.weight * agreement;
    if (agreement > kHasPartner) found += m.weight;
  }
  result.score = std::clamp(std::pow(sum / all, kPower), 0.0, 1.0);
  if (points == model.points.size()) {
    const double missing = missingShare(model, matches, agreements);
    result.score *= 1.0 - kLossOfPiece * rising(missing, kSmallPiece, kLargePiece);
  }
  result.coverage = found / all;
  return result;
}

}  // namespace finder
