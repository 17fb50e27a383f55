// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/search_grid.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace finder {

namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kNearlyFull = 359.0 / 360.0 * kTurn;  // from here on a zone is the whole turn
// The grid search takes place where the pattern's radius is at most so many pels: 13 to 28 pels of
// height, enough to tell characters apart and few enough to be fast.
constexpr double kSearchRadius = 17.0;
// Halfway between two angles or scales of the grid the outermost points are off by so many pels at
// most, and by so much the response maps are spread.
constexpr double kAngleReach = 1.3;
constexpr double kScaleReach = 1.1;
constexpr double kWidestStep = kTurn / 30.0;
constexpr double kWidestBand = 1.35;  // factor of scales that one model serves
constexpr int kMostLevels = 12;
// A refined pose may leave its zone by this part of a step.
constexpr double kSlack = 0.45;

int levelOf(double grain) {
  return grain > 1.0 ? std::min(kMostLevels, static_cast<int>(std::lround(std::log2(grain)))) : 0;
}

int levelFor(const TrainingPlan& training, double radius) {
  const int most = training.automaticGrain
                       ? kMostLevels
                       : std::max(levelOf(training.coarsest), finestLevel(training));
  int level = finestLevel(training);
  while (level < most && std::ldexp(radius, -level) > kSearchRadius) ++level;
  // Beyond this radius points would be left out, whatever the limits say.
  while (std::ldexp(radius, -level) > kGreatestRadius - 2) ++level;
  return level;
}

}  // namespace

int finestLevel(const TrainingPlan& training) {
  return training.automaticGrain ? 0 : levelOf(training.finest);
}

std::vector<ScaleBand> scaleBands(const FindPlan& plan, const TrainingPlan& training,
                                  double radius) {
  if (!plan.scaleIsOpen) {
    return {{levelFor(training, radius * plan.scale), plan.scale, {plan.scale}, 1.0}};
  }
  std::vector<ScaleBand> bands;
  const double width = std::log(plan.scaleEnd / plan.scaleStart);
  const int count = std::max(1, static_cast<int>(std::ceil(width / std::log(kWidestBand))));
  for (int i = 0; i < count; ++i) {
    const double low = plan.scaleStart * std::exp(width * i / count);
    const double high = plan.scaleStart * std::exp(width * (i + 1) / count);
    ScaleBand band;
    band.middle = std::sqrt(low * high);
    band.level = levelFor(training, radius * band.middle);
    const double step = 2.0 * std::log1p(kScaleReach / std::ldexp(radius * high, -band.level));
    const int steps = std::max(1, static_cast<int>(std::ceil(std::log(high / low) / step)));
    band.step = std::pow(high / low, 1.0 / steps);
    for (int k = 0; k < steps; ++k) band.scales.push_back(low * std::pow(band.step, k + 0.5));
    bands.push_back(band);
  }
  return bands;
}

AngleRow angleRow(const FindPlan& plan, double radius) {
  if (!plan.angleIsOpen) return {{plan.angle}, 0.0, false};
  const double widest = std::min(2.0 * std::asin(std::min(1.0, kAngleReach / radius)), kWidestStep);
  const double width = plan.angleEnd - plan.angleStart;
  AngleRow row;
  row.isFullTurn = width >= kNearlyFull - 1e-9;
  const double whole = row.isFullTurn ? kTurn : width;
  const int count = std::max(1, static_cast<int>(std::ceil(whole / widest - 1e-9)));
  row.step = whole / count;
  const double first = row.isFullTurn ? 0.0 : plan.angleStart + 0.5 * row.step;
  for (int i = 0; i < count; ++i) row.values.push_back(first + i * row.step);
  return row;
}

std::vector<GridTurn> gridTurns(const ScaleBand& band, const AngleRow& angles) {
  std::vector<GridTurn> turns;
  for (std::size_t s = 0; s < band.scales.size(); ++s) {
    for (std::size_t a = 0; a < angles.values.size(); ++a) {
      turns.push_back({angles.values[a], band.scales[s], static_cast<int>(a), static_cast<int>(s)});
    }
  }
  return turns;
}

PoseLimits poseLimits(const FindPlan& plan, const ScaleBand& band, const AngleRow& angles) {
  PoseLimits limits;
  limits.angleIsFree = plan.angleIsOpen;
  limits.isFullTurn = angles.isFullTurn;
  limits.lowestAngle = plan.angleStart - kSlack * angles.step;
  limits.highestAngle = plan.angleEnd + kSlack * angles.step;
  limits.scaleIsFree = plan.scaleIsOpen;
  const double slack = std::pow(band.step, kSlack);
  limits.lowestScale = plan.scaleStart / slack;
  limits.highestScale = plan.scaleEnd * slack;
  return limits;
}

}  // namespace finder
