// SPDX-License-Identifier: Apache-2.0
#include "oc/occhar/care_region.h"

#include <algorithm>
#include <cstddef>

#include "oc/padding.h"

namespace {

// Rows and columns are counted from the upper left corner of the window; `last` is included.
class CareScan {
 public:
  template <class Mask>
  CareScan(const Mask& mask, unsigned char careThreshold)
      : pels_(mask.pointToPel(mask.offset().x(), mask.offset().y())),
        step_(mask.rowUpdate()),
        width_(mask.width()),
        threshold_(careThreshold) {}

  bool rowHasCare(rzLong row) const {
    const unsigned char* pels = pels_ + row * step_;
    return std::any_of(pels, pels + width_, [this](unsigned char pel) { return cares(pel); });
  }
  bool columnHasCare(rzLong column, rzLong top, rzLong bottom) const {
    for (rzLong row = top; row <= bottom; ++row) {
      if (cares(pels_[row * step_ + column])) return true;
    }
    return false;
  }
  bool caresForAll(rzLong left, rzLong right, rzLong top, rzLong bottom) const {
    for (rzLong row = top; row <= bottom; ++row) {
      const unsigned char* pels = pels_ + row * step_;
      for (rzLong column = left; column <= right; ++column) {
        if (!cares(pels[column])) return false;
      }
    }
    return true;
  }

 private:
  bool cares(unsigned char pel) const { return pel >= threshold_; }

  const unsigned char* pels_;
  std::ptrdiff_t step_;
  rzLong width_;
  unsigned char threshold_;
};

template <class Mask>
rzPelRect windowToCare(Mask& mask, unsigned char careThreshold, bool& careFound) {
  careFound = true;
  if (!mask.isBound()) return {};
  const CareScan scan(mask, careThreshold);
  rzLong top = 0;
  while (top < mask.height() && !scan.rowHasCare(top)) ++top;
  if (top == mask.height()) {
    mask.setUnbound();
    careFound = false;
    return {};
  }
  rzLong bottom = mask.height() - 1;
  while (bottom > top && !scan.rowHasCare(bottom)) --bottom;
  rzLong left = 0;
  while (!scan.columnHasCare(left, top, bottom)) ++left;
  rzLong right = mask.width() - 1;
  while (right > left && !scan.columnHasCare(right, top, bottom)) --right;
  const rzPelRect region(mask.offset().x() + left, mask.offset().y() + top, right - left + 1,
                         bottom - top + 1);
  if (scan.caresForAll(left, right, top, bottom)) {
    mask.setUnbound();
  } else {
    mask.window(region, false);
  }
  return region;
}

}  // namespace

rzPelRect windowMaskCareRegion(rzPelBuffer<unsigned char>& mask, unsigned char careThreshold,
                               bool& careFound) {
  return windowToCare(mask, careThreshold, careFound);
}

rzPelRect rf_OCWindowMaskCareRegion(rzPelBuffer_const<unsigned char>& mask,
                                    unsigned char careThreshold, bool& careFound) {
  return windowToCare(mask, careThreshold, careFound);
}
