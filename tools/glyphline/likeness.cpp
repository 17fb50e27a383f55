// SPDX-License-Identifier: Apache-2.0
#include "likeness.h"

#include <algorithm>
#include <cmath>

namespace glyphline {
namespace {

using Picture = rzPelBuffer<unsigned char>;

double correlation(const Picture& a, const Picture& b, rzLong shiftX, rzLong shiftY) {
  const rzPair<rzLong> middle((a.width() - b.width()) / 2 + shiftX,
                              (a.height() - b.height()) / 2 + shiftY);
  const rzPelRect common = rzPelRect(0, 0, a.width(), a.height())
                               .intersect({middle.x(), middle.y(), b.width(), b.height()});
  double n = 0, sumA = 0, sumB = 0, squaresA = 0, squaresB = 0, products = 0;
  for (rzLong y = common.y(); y < common.ll().y(); ++y) {
    for (rzLong x = common.x(); x < common.ur().x(); ++x) {
      const double pelA = *a.pointToPel(a.window().x() + x, a.window().y() + y);
      const double pelB =
          *b.pointToPel(b.window().x() + x - middle.x(), b.window().y() + y - middle.y());
      n += 1;
      sumA += pelA;
      sumB += pelB;
      squaresA += pelA * pelA;
      squaresB += pelB * pelB;
      products += pelA * pelB;
    }
  }
  const double variances = (n * squaresA - sumA * sumA) * (n * squaresB - sumB * sumB);
  return variances > 0.0 ? (n * products - sumA * sumB) / std::sqrt(variances) : 0.0;
}

}  // namespace

double likeness(const Picture& a, const Picture& b) {
  double best = -1.0;
  for (rzLong y = -1; y <= 1; ++y) {
    for (rzLong x = -1; x <= 1; ++x) best = std::max(best, correlation(a, b, x, y));
  }
  return best;
}

std::size_t mostTypical(const std::vector<Picture>& pictures) {
  std::vector<double> sums(pictures.size(), 0.0);
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      const double like = likeness(pictures[i], pictures[k]);
      sums[i] += like;
      sums[k] += like;
    }
  }
  return static_cast<std::size_t>(std::max_element(sums.begin(), sums.end()) - sums.begin());
}

}  // namespace glyphline
