// SPDX-License-Identifier: Apache-2.0
#include "oc/occhar/mark_corners.h"

#include <cstddef>

namespace {

using Image = rzPelBuffer_const<unsigned char>;

constexpr unsigned char kCare = 128;

// Rows and columns are counted from the upper left corner of the rectangle; `last` is included.
template <bool isMasked>
class Scan {
 public:
  Scan(const Image& image, const Image& mask, const rzPelRect& rect, const MarkTable& isMark)
      : image_(image.pointToPel(rect.x(), rect.y())),
        imageStep_(image.rowUpdate()),
        width_(rect.width()),
        isMark_(isMark) {
    if constexpr (isMasked) {
      mask_ = mask.pointToPel(rect.x(), rect.y());
      maskStep_ = mask.rowUpdate();
    }
  }

  bool rowHasMark(rzLong row) const {
    for (rzLong column = 0; column < width_; ++column) {
      if (isMark(column, row)) return true;
    }
    return false;
  }
  bool columnHasMark(rzLong column, rzLong first, rzLong last) const {
    for (rzLong row = first; row <= last; ++row) {
      if (isMark(column, row)) return true;
    }
    return false;
  }

 private:
  bool isMark(rzLong column, rzLong row) const {
    if (!isMark_[image_[row * imageStep_ + column]]) return false;
    if constexpr (isMasked) return mask_[row * maskStep_ + column] >= kCare;
    return true;
  }

  const unsigned char* image_;
  std::ptrdiff_t imageStep_;
  const unsigned char* mask_ = nullptr;
  std::ptrdiff_t maskStep_ = 0;
  rzLong width_;
  const MarkTable& isMark_;
};

template <bool isMasked>
std::optional<MarkCorners> corners(const Scan<isMasked>& scan, const rzPelRect& rect) {
  const rzLong lastRow = rect.height() - 1;
  rzLong bottom = lastRow;
  while (bottom >= 0 && !scan.rowHasMark(bottom)) --bottom;
  if (bottom < 0) return std::nullopt;
  rzLong left = 0;
  while (!scan.columnHasMark(left, 0, bottom)) ++left;
  rzLong top = 0;
  while (!scan.rowHasMark(top)) ++top;
  rzLong right = rect.width() - 1;
  while (!scan.columnHasMark(right, top, lastRow)) --right;
  return MarkCorners{rzPair<rzLong>(rect.x() + left, rect.y() + bottom + 1),
                     rzPair<rzLong>(rect.x() + right + 1, rect.y() + top)};
}

}  // namespace

std::optional<MarkCorners> markCorners(const Image& image, const Image& mask, const rzPelRect& rect,
                                       const MarkTable& isMark) {
  if (rect.isNull()) return std::nullopt;
  if (mask.isBound()) return corners(Scan<true>(image, mask, rect, isMark), rect);
  return corners(Scan<false>(image, mask, rect, isMark), rect);
}
