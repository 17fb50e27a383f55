// SPDX-License-Identifier: Apache-2.0
//
// Is it the same print, worn? Correlation counts ink that is missing and ink that should not be
// there alike. But print loses ink far more often than it gains some, and another character nearly
// always shows ink where this one has paper.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "rz/pel_buffer.h"

class rz_PrintLikeness {
 public:
  rz_PrintLikeness() = default;
  /// What the window of `pattern` shows; not flat. Its rim is paper.
  explicit rz_PrintLikeness(const rzPelBuffer_const<unsigned char>& pattern);

  /// 1 for the same print at any contrast and brightness, less with what differs, and 0 for what
  /// differs as much as empty paper does, or shows no contrast. The pattern's upper left corner
  /// lies at column x and row y of the picture's pel coordinates, the pattern wholly inside.
  double of(const rzPelBuffer_const<unsigned char>& picture, rzLong x, rzLong y) const;

 private:
  std::vector<std::uint8_t> isInk_;  // of each pel of the pattern
  std::vector<std::int32_t> ink_;    // its blackness, in thousandths
  std::size_t numInk_ = 0;
  rzPair<rzLong> size_;
  bool isDark_ = true;   // ink is darker than paper
  double energy_ = 0.0;  // sum of squared differences of ink_ from the mean
};
