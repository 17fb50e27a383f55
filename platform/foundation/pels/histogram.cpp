// SPDX-License-Identifier: Apache-2.0
#include "rz/histogram.h"

#include <cstddef>
#include <cstdint>
#include <numeric>

namespace {

rzLong medianOf(const std::vector<rzLong>& histogram) {
  const std::int64_t all = std::accumulate(histogram.begin(), histogram.end(), std::int64_t{0});
  std::int64_t sum = 0;
  for (std::size_t grey = 0; grey < histogram.size(); ++grey) {
    sum += histogram[grey];
    if (2 * sum >= all) return rf_Count(grey);
  }
  return 0;
}

}  // namespace

rzHistoStats::rzHistoStats(const std::vector<rzLong>& histogram, bool)
    : median_(medianOf(histogram)) {}
