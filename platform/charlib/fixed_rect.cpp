// SPDX-License-Identifier: Apache-2.0
#include "rz/charlib/fixed_rect.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

constexpr int kNumbers = 4;
constexpr double kMin = std::numeric_limits<std::int32_t>::min();
constexpr double kMax = std::numeric_limits<std::int32_t>::max();

// -bits, which the smallest number does not have; any number so large says "beyond all limits".
std::int32_t negated(std::int32_t bits) {
  return bits == std::numeric_limits<std::int32_t>::min() ? std::numeric_limits<std::int32_t>::max()
                                                          : -bits;
}

}  // namespace

rsys_result roc_rect32FixedInitFromRectD_(std::int32_t fixedRect[4], std::int32_t bits,
                                          const double rect[4]) {
  std::array<std::int32_t, kNumbers> numbers;
  for (std::size_t i = 0; i < kNumbers; ++i) {
    const double rounded = std::round(std::ldexp(rect[i], bits));
    if (!(rounded >= kMin && rounded <= kMax)) return ROC_FIXED_POINT_OVERFLOW;
    numbers[i] = static_cast<std::int32_t>(rounded);
  }
  std::ranges::copy(numbers, fixedRect);
  return RSYS_SUCCESS;
}

rsys_result roc_rectDInitFromRect32Fixed_(double rect[4], const std::int32_t fixedRect[4],
                                          std::int32_t bits) {
  std::array<double, kNumbers> numbers;
  for (std::size_t i = 0; i < kNumbers; ++i) {
    numbers[i] = std::ldexp(static_cast<double>(fixedRect[i]), negated(bits));
    if (!std::isfinite(numbers[i])) return ROC_INTEGER_OVERFLOW;
  }
  std::ranges::copy(numbers, rect);
  return RSYS_SUCCESS;
}
