// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/care_pels.h"

#include <algorithm>
#include <cmath>

double rf_Correlation(const rz_PairSums& sums) {
  const rz_WideInteger varianceA = rf_ScaledVariance(sums.n, sums.a, sums.aa);
  const rz_WideInteger varianceB = rf_ScaledVariance(sums.n, sums.b, sums.bb);
  if (varianceA <= 0 || varianceB <= 0) return 0.0;
  const rz_WideInteger covariance =
      rz_WideInteger{sums.n} * sums.ab - rz_WideInteger{sums.a} * sums.b;
  // The root of a rounded square is exact, so equal sides give exactly 1.
  const double r = static_cast<double>(covariance) /
                   std::sqrt(static_cast<double>(varianceA) * static_cast<double>(varianceB));
  return std::clamp(r, -1.0, 1.0);
}

rz_CarePels::rz_CarePels(const rzPelBuffer_const<unsigned char>& image,
                         const rzPelBuffer_const<unsigned char>& mask, bool (*cares)(unsigned char),
                         std::size_t margin)
    : care(static_cast<std::size_t>(image.width()), static_cast<std::size_t>(image.height()),
           margin),
      grey(care),
      squaresHigh(care),
      squaresLow(care) {
  for (std::size_t y = 0; y < care.height(); ++y) {
    const auto line = static_cast<rzLong>(y);
    const unsigned char* pels = image.pointToPel(image.window().x(), image.window().y() + line);
    const unsigned char* cared =
        mask.isBound() ? mask.pointToPel(mask.window().x(), mask.window().y() + line) : nullptr;
    for (std::size_t x = 0; x < care.width(); ++x) {
      if (cared != nullptr && !cares(cared[x])) continue;
      const int square = pels[x] * pels[x];
      care.row(y)[x] = 1;
      grey.row(y)[x] = pels[x];
      squaresHigh.row(y)[x] = static_cast<std::int16_t>(square / 256);
      squaresLow.row(y)[x] = static_cast<std::int16_t>(square % 256);
    }
  }
}

std::int64_t rf_NumPairs(const rz_CarePels& pattern, const rz_CarePels& picture, std::ptrdiff_t x,
                         std::ptrdiff_t y) {
  return rf_CrossSum(pattern.care, picture.care, x, y);
}

rz_PairSums rf_PairSums(const rz_CarePels& pattern, const rz_CarePels& picture, std::ptrdiff_t x,
                        std::ptrdiff_t y) {
  const auto squares = [x, y](const rz_WidePels& highA, const rz_WidePels& lowA,
                              const rz_WidePels& highB, const rz_WidePels& lowB) {
    return 256 * rf_CrossSum(highA, highB, x, y) + rf_CrossSum(lowA, lowB, x, y);
  };
  rz_PairSums sums;
  sums.n = rf_NumPairs(pattern, picture, x, y);
  sums.a = rf_CrossSum(pattern.grey, picture.care, x, y);
  sums.aa = squares(pattern.squaresHigh, pattern.squaresLow, picture.care, picture.care);
  sums.b = rf_CrossSum(pattern.care, picture.grey, x, y);
  sums.bb = squares(pattern.care, pattern.care, picture.squaresHigh, picture.squaresLow);
  sums.ab = rf_CrossSum(pattern.grey, picture.grey, x, y);
  return sums;
}
