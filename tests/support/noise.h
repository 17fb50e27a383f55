// SPDX-License-Identifier: Apache-2.0
//
// Pictures without structure, the same for the same seed.
#pragma once

#include <cstdint>
#include <random>

#include "rz/pel_buffer.h"

inline rzPelBuffer<unsigned char> noise(const rzPelRect& rect, std::uint32_t seed, int darkest = 0,
                                        int brightest = 255) {
  std::mt19937 random(seed);
  rzPelBuffer<unsigned char> image(rect, 32);
  for (rzLong y = rect.y(); y < rect.lr().y(); ++y) {
    for (rzLong x = rect.x(); x < rect.lr().x(); ++x) {
      const std::uint32_t range = static_cast<std::uint32_t>(brightest - darkest + 1);
      *image.pointToPel(x, y) =
          static_cast<unsigned char>(darkest + static_cast<int>(random() % range));
    }
  }
  return image;
}
