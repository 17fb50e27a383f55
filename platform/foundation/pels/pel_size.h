// SPDX-License-Identifier: Apache-2.0
//
// Which rectangles of pels can exist.
#pragma once

#include <cstdint>
#include <limits>

#include "rz/pel_rect.h"
#include "rz/types.h"

/// Has 1 to 2^31 - 1 pels.
inline bool isPelSize(rzLong width, rzLong height) {
  return width > 0 && height > 0 &&
         std::int64_t{width} * height <= std::numeric_limits<rzLong>::max();
}

/// Such a size, and all corners have numbers in the range of rzLong.
inline bool isPelPlace(std::int64_t x, std::int64_t y, rzLong width, rzLong height) {
  const auto fits = [](std::int64_t low, rzLong size) {
    return low >= std::numeric_limits<rzLong>::min() &&
           low + size <= std::numeric_limits<rzLong>::max();
  };
  return isPelSize(width, height) && fits(x, width) && fits(y, height);
}

inline bool isPelPlace(const rzPelRect& rect) {
  return isPelPlace(rect.x(), rect.y(), rect.width(), rect.height());
}
