// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/score.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "platform/vision/finder/match_points.h"

namespace finder {

namespace {

double envOr(const char* n, double d) { const char* s = std::getenv(n); return s ? std::atof(s) : d; }

// 1 up to `from`, 0 from `to` on, smooth between.
double falling(double value, double from, double to) {
  const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
  return 1.0 - t * t * (3.0 - 2.0 * t);
}

double rising(double value, double from, double to) { return 1.0 - falling(value, from, to); }

}  // namespace

Assessment assess(const GradientMap& gradients, const Model& model, std::size_t points,
                  const Mat2& levelFromClient, const Pose& pose, double contrast) {
  static const double kD0 = envOr("D0", 0.35), kD1 = envOr("D1", 1.3), kC0 = envOr("C0", 0.5),
                      kC1 = envOr("C1", 0.94), kS0 = envOr("S0", 0.1), kS1 = envOr("S1", 0.4),
                      kGamma = envOr("GAMMA", 1.3);
  const double step = contrast * kGradientOfStep;
  std::vector<PointMatch> matches;
  const Mat2 map = levelFromClient * similarity(pose.angle, pose.scale);
  matchPoints(gradients, model.points, points, pose.centre, map, 1, 0.3 * step, matches);
  std::vector<double> strengths;
  for (const PointMatch& m : matches) {
    if (m.strength > 0.0) strengths.push_back(m.strength);
  }
  Assessment result;
  if (strengths.empty()) return result;
  const auto middle = strengths.begin() + static_cast<std::ptrdiff_t>(strengths.size() / 2);
  std::nth_element(strengths.begin(), middle, strengths.end());
  const double median = *middle;
  result.strength = median;
  double sum = 0.0;
  double found = 0.0;
  double all = 0.0;
  for (const PointMatch& m : matches) {
    all += m.weight;
    if (m.strength <= 0.0) continue;
    const double agreement = falling(std::abs(m.offset), kD0, kD1) * rising(m.cosine, kC0, kC1) *
                             rising(m.strength, 0.3 * step, 0.8 * step) *
                             rising(m.strength, kS0 * median, kS1 * median);
    sum += m.weight * agreement;
    if (agreement > 0.3) found += m.weight;
  }
  result.score = std::clamp(std::pow(sum / all, kGamma), 0.0, 1.0);
  result.coverage = found / all;
  return result;
}

}  // namespace finder
