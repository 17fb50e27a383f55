// SPDX-License-Identifier: Apache-2.0
//
// Correlation of two pictures of which some pels do not count, exactly: only pels that both care
// for enter, and everything is summed in integers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/vision/correlation/cross_sums.h"
#include "rz/pel_buffer.h"

/// The sums over pairs of pels (a, b) from which their correlation follows.
struct rz_PairSums {
  std::int64_t n = 0;
  std::int64_t a = 0;
  std::int64_t aa = 0;
  std::int64_t b = 0;
  std::int64_t bb = 0;
  std::int64_t ab = 0;
};

/// n squared times the variance of n pels with that sum and sum of squares.
inline rz_WideInteger rf_ScaledVariance(std::int64_t n, std::int64_t sum, std::int64_t squares) {
  return rz_WideInteger{n} * squares - rz_WideInteger{sum} * sum;
}

/// The correlation coefficient, -1 to 1; 0 when either side is flat or there are no pairs. Exactly
/// 1 when the two sides are equal.
double rf_Correlation(const rz_PairSums& sums);

/// A picture as tables whose products give all six sums: what is not cared for is 0 everywhere.
/// Squares do not fit 16 bits with a sign and are kept as 256 * squaresHigh + squaresLow.
struct rz_CarePels {
  rz_CarePels() = default;
  /// `cares` tells from its value whether a pel of `mask` counts; with an unbound mask all count.
  /// The windows of both are equal in size.
  rz_CarePels(const rzPelBuffer_const<unsigned char>& image,
              const rzPelBuffer_const<unsigned char>& mask, bool (*cares)(unsigned char),
              std::size_t margin = 0);

  rz_WidePels care;  // 1 or 0
  rz_WidePels grey;
  rz_WidePels squaresHigh;
  rz_WidePels squaresLow;
};

/// The number of pels that both care for, with the template's corner at (x, y) of the picture; how
/// far it may hang over is told at rf_CrossSum.
std::int64_t rf_NumPairs(const rz_CarePels& pattern, const rz_CarePels& picture, std::ptrdiff_t x,
                         std::ptrdiff_t y);

/// The six sums there; a is the template.
rz_PairSums rf_PairSums(const rz_CarePels& pattern, const rz_CarePels& picture, std::ptrdiff_t x,
                        std::ptrdiff_t y);
