// SPDX-License-Identifier: Apache-2.0
//
// Small pictures for tests, and a matcher that shows the first pel that differs.
#pragma once

#include <gmock/gmock.h>

#include <random>

#include "rz/pel_buffer.h"
#include "rz/pel_functions.h"

namespace pictures {

using Image = rzPelBuffer<unsigned char>;
using ImageView = rzPelBuffer_const<unsigned char>;

/// Every pel from its place.
template <class GreyAt>
Image drawn(const rzPelRect& rect, GreyAt greyAt) {
  Image image(rect, 32);
  for (rzLong y = rect.y(); y < rect.lr().y(); ++y) {
    for (rzLong x = rect.x(); x < rect.lr().x(); ++x) {
      *image.pointToPel(x, y) = static_cast<unsigned char>(greyAt(x, y));
    }
  }
  return image;
}

inline Image noise(const rzPelRect& rect, unsigned seed = 1) {
  std::mt19937 random(seed);
  return drawn(rect, [&random](rzLong, rzLong) { return random() & 0xFFU; });
}

inline Image flat(const rzPelRect& rect, unsigned char grey) {
  return drawn(rect, [grey](rzLong, rzLong) { return grey; });
}

inline rzXform<2> shift(double x, double y) { return {rzMatrix<2>(), rzVector<2>(x, y)}; }

/// Equal windows and equal pels.
MATCHER_P(ShowsTheSameAs, expected, "") {
  const ImageView left = arg;
  const ImageView right = expected;
  const rzPelRect window = left.window();
  if (window != right.window()) {
    *result_listener << "the windows differ";
    return false;
  }
  for (rzLong y = window.y(); y < window.lr().y(); ++y) {
    for (rzLong x = window.x(); x < window.lr().x(); ++x) {
      const int a = *left.pointToPel(x, y);
      const int b = *right.pointToPel(x, y);
      if (a == b) continue;
      *result_listener << "pel (" << x << ", " << y << ") is " << a << ", expected " << b;
      return false;
    }
  }
  return true;
}

}  // namespace pictures
