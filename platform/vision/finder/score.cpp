// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/score.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/vision/finder/match_points.h"

namespace finder {

namespace {

// Where the agreement of a point with its edge begins to fall and where it ends. Measured so that
// ordinary print keeps its score while other characters lose theirs: narrower limits cost
// characters of bad print more than they take from wrong ones.
constexpr float kNear = 0.2F;  // pels between point and edge
constexpr double kFar = 0.9;   // less for patterns of a small radius, whose strokes are closer
constexpr double kFarOfNone = 0.3;
constexpr double kFarOfRadius = 0.04;
constexpr float kAlong = 0.96F;  // cosine of the angle between their directions
constexpr float kAcross = 0.8F;
constexpr float kSureContrast = 0.5F;  // of the contrast asked for, as an ideal step
constexpr float kNoContrast = 0.3F;
constexpr float kSureStrength = 0.4F;  // of the median of the pattern's edges
constexpr float kNoStrength = 0.1F;
// The score is a power of the mean agreement.
constexpr double kPower = 1.1;
// What tells a character from another one that has all the rest of it, a Q from an O, is missing in
// one piece, while noise takes points here and there. A point is part of such a piece when its
// neighbourhood agrees less than this in the mean, and none of the piece when it agrees more.
constexpr float kNoneAround = 0.2F;
constexpr float kEnoughAround = 0.5F;
constexpr float kSmallPiece = 0.015F;  // of the outline: up to this it does not count,
constexpr float kLargePiece = 0.06F;   // from this on in full,
constexpr double kLossOfPiece = 0.3;   // and takes so much of the score
// Edges lie to both sides of the right character's outline by chance, and to one side of another
// one's along whole pieces: a B's in an 8. Means of the offsets over a neighbourhood, in pels;
// noise makes them larger, by this part of the median by which offsets differ from those around
// them.
constexpr float kLittleShift = 0.1F;
constexpr float kMuchShift = 0.3F;
constexpr float kShiftOfNoise = 0.66F;
constexpr float kFewShifted = 0.1F;   // of the outline: up to this it does not count,
constexpr float kManyShifted = 0.2F;  // from this on in full,
constexpr double kLossOfShift = 0.15;
constexpr float kHasPartner = 0.3F;  // agreement from which a point counts as covered

// 1 up to `from`, 0 from `to` on, smooth between.
template <class Value>
RZ_ALWAYS_INLINE Value falling(Value value, float from, float to) {
  const Value t = unitClamped((value - from) / (to - from));
  return 1.0F - t * t * (3.0F - 2.0F * t);
}

template <class Value>
RZ_ALWAYS_INLINE Value rising(Value value, float from, float to) {
  return 1.0F - falling(value, from, to);
}

// The limits of one pattern in one picture.
struct Limits {
  float far;     // pels
  float step;    // gradient of the contrast asked for
  float median;  // gradient of the pattern's edges
};

RZ_ALWAYS_INLINE Floats agreementOf(const Matches& m, const Limits& limits) {
  const Floats agreement =
      falling(absolute(m.offset), kNear, limits.far) * rising(m.cosine, kAcross, kAlong) *
      rising(m.strength, kNoContrast * limits.step, kSureContrast * limits.step) *
      rising(m.strength, kNoStrength * limits.median, kSureStrength * limits.median);
  return m.strength > 0.0F ? agreement : Floats{};
}

// Sums over the pattern's points, of which each lane has a share.
struct Sums {
  Floats agreed{};
  Floats found{};
  Floats all{};
};

RZ_ALWAYS_INLINE void addUp(const std::vector<Matches>& matches, const Limits& limits, Sums& sums,
                            float* agreements) {
  for (const Matches& m : matches) {
    const Floats agreement = agreementOf(m, limits);
    std::memcpy(agreements, &agreement, sizeof agreement);
    agreements += kLanes;
    sums.agreed += m.weight * agreement;
    sums.found += agreement > kHasPartner ? m.weight : Floats{};
    sums.all += m.weight;
  }
}

RZ_CPU_VARIANTS(addUp,
                (const std::vector<Matches>& matches, const Limits& limits, Sums& sums,
                 float* agreements),
                (matches, limits, sums, agreements))

// 0 of none.
float medianOf(std::vector<float>& values) {
  if (values.empty()) return 0.0F;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

float medianStrength(const std::vector<Matches>& matches) {
  std::vector<float> strengths;
  strengths.reserve(matches.size() * kLanes);
  for (const Matches& m : matches) {
    for (int l = 0; l < kLanes; ++l) {
      if (m.strength[l] > 0.0F && m.weight[l] > 0.0F) strengths.push_back(m.strength[l]);
    }
  }
  return medianOf(strengths);
}

// The share of the outline that is missing in one piece, by its points' agreements: those whose
// neighbourhood has none either.
double missingShare(const Model& model, const std::vector<float>& agreements) {
  double missing = 0.0;
  for (std::size_t i = 0; i < model.points.size(); ++i) {
    float sum = agreements[i];
    for (const std::uint16_t k : model.neighbours[i]) sum += agreements[k];
    const float mean = sum / static_cast<float>(kNeighbours + 1);
    missing +=
        model.points[i].weight * static_cast<double>(falling(mean, kNoneAround, kEnoughAround));
  }
  return missing / static_cast<double>(model.points.size());
}

// The share of the outline to one side of which its edges lie.
double shiftedShare(const Model& model, const std::vector<Matches>& matches) {
  const std::size_t count = model.points.size();
  const auto hasEdge = [&](std::size_t i) {
    return matches[i / kLanes].strength[i % kLanes] > 0.0F;
  };
  const auto offsetOf = [&](std::size_t i) { return matches[i / kLanes].offset[i % kLanes]; };
  std::vector<float> shifts(count, 0.0F);
  std::vector<float> deviations;
  deviations.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    float sum = 0.0F;
    float edges = 0.0F;
    for (const std::uint16_t k : model.neighbours[i]) {
      if (!hasEdge(k)) continue;
      sum += offsetOf(k);
      edges += 1.0F;
    }
    if (hasEdge(i)) {
      if (edges > 1.0F) deviations.push_back(std::abs(offsetOf(i) - sum / edges));
      sum += offsetOf(i);
      edges += 1.0F;
    }
    if (edges > 0.0F) shifts[i] = std::abs(sum / edges);
  }
  const float noise = kShiftOfNoise * medianOf(deviations);
  double shifted = 0.0;
  for (std::size_t i = 0; i < count; ++i) {
    shifted += model.points[i].weight *
               static_cast<double>(rising(shifts[i], kLittleShift + noise, kMuchShift + noise));
  }
  return shifted / static_cast<double>(count);
}

// What another character's differences take from a score: the greater of both kinds.
double lossOf(double missing, double shifted) {
  const auto piece =
      static_cast<double>(rising(static_cast<float>(missing), kSmallPiece, kLargePiece));
  const auto shift =
      static_cast<double>(rising(static_cast<float>(shifted), kFewShifted, kManyShifted));
  return std::max(kLossOfPiece * piece, kLossOfShift * shift);
}

}  // namespace

Assessment assess(const GradientMap& gradients, const Model& model, std::size_t points,
                  const Mat2& levelFromClient, const Pose& pose, double contrast) {
  const double step = contrast * kGradientOfStep;
  std::vector<Matches> matches;
  const Mat2 map = levelFromClient * similarity(pose.angle, pose.scale);
  matchPoints(gradients, model, points, pose, map, 1, double{kNoContrast} * step, matches);
  const float median = medianStrength(matches);
  if (median <= 0.0F) return {};
  const double far = std::min(kFar, kFarOfNone + kFarOfRadius * model.radius * meanScale(map));
  const Limits limits{static_cast<float>(far), static_cast<float>(step), median};
  std::vector<float> agreements(matches.size() * kLanes);
  Sums sums;
  RZ_BEST_VARIANT(addUp)(matches, limits, sums, agreements.data());
  const double all = sumOf(sums.all);
  Assessment result;
  result.score = std::clamp(std::pow(sumOf(sums.agreed) / all, kPower), 0.0, 1.0);
  if (points >= model.points.size()) {
    result.score *= 1.0 - lossOf(missingShare(model, agreements), shiftedShare(model, matches));
  }
  result.coverage = sumOf(sums.found) / all;
  return result;
}

}  // namespace finder
