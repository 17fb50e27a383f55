// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/edge_spread.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>

#include "rz/edgelet.h"

namespace {

constexpr std::size_t kFewestEdgelets = 25;
constexpr std::size_t kDirectionBins = 128;   // of half a turn
constexpr std::size_t kDirectionWindow = 15;  // 20 degrees, in whole bins
constexpr double kDominanceShare = 0.5;

// The first bins stand once more at the end, so that a window can wrap around.
using DirectionHistogram = std::array<rzLong, kDirectionBins + kDirectionWindow>;

DirectionHistogram histogramOf(const std::vector<unsigned char>& directions) {
  DirectionHistogram bins{};
  for (const unsigned char direction : directions) ++bins[direction % kDirectionBins];
  std::copy_n(bins.begin(), kDirectionWindow, bins.begin() + kDirectionBins);
  return bins;
}

}  // namespace

EdgeSpread judgeDirections(const std::vector<unsigned char>& directions) {
  if (directions.size() < kFewestEdgelets) return {EdgeVerdict::kTooFew, 0.0};
  const DirectionHistogram bins = histogramOf(directions);
  const double count = static_cast<double>(directions.size());
  const double half = kDominanceShare * count;

  rzLong sum = std::accumulate(bins.begin(), bins.begin() + kDirectionWindow, rzLong{0});
  rzLong best = sum;
  for (std::size_t start = 1; best <= half && start < kDirectionBins; ++start) {
    sum += bins[start + kDirectionWindow - 1] - bins[start - 1];
    best = std::max(best, sum);
  }
  if (best > half) return {EdgeVerdict::kTooParallel, 0.0};
  return {EdgeVerdict::kUsable, count - best};
}

EdgeSpread judgeEdges(const rzPelBuffer_const<unsigned char>& image) {
  constexpr double kGrain = 1.0;
  constexpr double kContrast = 10.0;
  constexpr rzLong kEdgeType = 1;
  rzEdgeletSet edgelets;
  rfEdgeDetect(image, rzEdgeletParams(kGrain, kContrast, kEdgeType), edgelets);
  std::vector<unsigned char> directions;
  directions.reserve(edgelets.edges().size());
  for (const rzEdgelet& edgelet : edgelets.edges()) directions.push_back(edgelet.angle().plain());
  return judgeDirections(directions);
}

bool rf_HasPoorEdgeSpread(const rzPelBuffer_const<unsigned char>& image, rzDiagObject* /*diag*/,
                          rzULong /*flags*/, double* spread) {
  const EdgeSpread edges = judgeEdges(image);
  *spread = edges.spread;
  return edges.verdict != EdgeVerdict::kUsable;
}
