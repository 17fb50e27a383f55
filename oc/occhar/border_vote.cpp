// SPDX-License-Identifier: Apache-2.0
#include "oc/occhar/border_vote.h"

#include <array>
#include <cstddef>
#include <numeric>

namespace {

using Image = rzPelBuffer_const<unsigned char>;
using Histogram = std::array<rzLong, 256>;

constexpr unsigned char kCare = 128;

// A row or a column of image and mask.
struct Pels {
  const unsigned char* image;
  const unsigned char* mask;
  std::ptrdiff_t imageStep;
  std::ptrdiff_t maskStep;
  rzLong count;

  unsigned char grey(rzLong i) const { return image[i * imageStep]; }
  bool cares(rzLong i) const { return mask[i * maskStep] >= kCare; }
};

// Counts the first care pel, and the last one when that is another.
void countEnds(const Pels& pels, Histogram& histogram) {
  rzLong first = 0;
  while (first < pels.count && !pels.cares(first)) ++first;
  if (first == pels.count) return;
  ++histogram[pels.grey(first)];
  rzLong last = pels.count - 1;
  while (last > first && !pels.cares(last)) --last;
  if (last > first) ++histogram[pels.grey(last)];
}

Histogram maskedBorder(const Image& image, const Image& mask, const rzPelRect& rect) {
  Histogram histogram{};
  for (rzLong y = rect.y(); y < rect.ll().y(); ++y) {
    countEnds({image.pointToPel(rect.x(), y), mask.pointToPel(rect.x(), y), 1, 1, rect.width()},
              histogram);
  }
  for (rzLong x = rect.x(); x < rect.ur().x(); ++x) {
    countEnds({image.pointToPel(x, rect.y()), mask.pointToPel(x, rect.y()), image.rowUpdate(),
               mask.rowUpdate(), rect.height()},
              histogram);
  }
  return histogram;
}

// Corners count twice, and so do all pels of a single row or column.
Histogram wholeBorder(const Image& image, const rzPelRect& rect) {
  Histogram histogram{};
  const rzLong lastRow = rect.ll().y() - 1;
  const unsigned char* upper = image.pointToPel(rect.x(), rect.y());
  const unsigned char* lower = image.pointToPel(rect.x(), lastRow);
  for (rzLong i = 0; i < rect.width(); ++i) {
    ++histogram[upper[i]];
    ++histogram[lower[i]];
  }
  for (rzLong y = rect.y(); y <= lastRow; ++y) {
    const unsigned char* row = image.pointToPel(rect.x(), y);
    ++histogram[row[0]];
    ++histogram[row[rect.width() - 1]];
  }
  return histogram;
}

}  // namespace

rzOCDefs::Polarity borderVote(const Image& image, const Image& mask, const rzPelRect& rect,
                              rzLong threshold) {
  if (rect.isNull()) return rzOCDefs::ePolarityUnknown;
  const Histogram histogram =
      mask.isBound() ? maskedBorder(image, mask, rect) : wholeBorder(image, rect);
  const auto split = histogram.begin() + threshold;
  const std::int64_t low = std::accumulate(histogram.begin(), split, std::int64_t{0});
  const std::int64_t high = std::accumulate(split, histogram.end(), std::int64_t{0});
  if (low == high) return rzOCDefs::ePolarityUnknown;
  return low < high ? rzOCDefs::eDarkOnLight : rzOCDefs::eLightOnDark;
}
