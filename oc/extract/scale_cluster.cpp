// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/scale_cluster.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr double kWidestRatio = 1.08;  // of the greatest to the smallest scale that still agree

}  // namespace

bool rf_FindScaleCluster(const std::vector<double>& samples, rzLong minSamples, double& out) {
  const auto wanted = static_cast<std::size_t>(std::max<rzLong>(minSamples, 1));
  if (samples.size() < wanted || samples.front() < 0.0) return false;
  std::vector<double> sorted = samples;
  std::sort(sorted.begin(), sorted.end());

  const std::size_t span = wanted - 1;
  double bestRatio = kWidestRatio;
  std::size_t bestIndex = sorted.size();
  for (std::size_t k = 0; k + span < sorted.size(); ++k) {
    if (bestRatio * sorted[k] > sorted[k + span]) {
      bestRatio = sorted[k + span] / sorted[k];
      bestIndex = k;
    }
  }
  if (bestIndex == sorted.size()) return false;
  out = std::sqrt(sorted[bestIndex] * sorted[bestIndex + span]);
  return true;
}
