// SPDX-License-Identifier: Apache-2.0
#include "platform/charlib/binarize.h"

#include <array>

#include "rz/pel_functions.h"

rzPelBuffer_const<unsigned char> binarized(const rzPelBuffer_const<unsigned char>& image,
                                           rzLong threshold, bool invert) {
  std::array<unsigned char, 256> table;
  for (rzLong grey = 0; grey < 256; ++grey) {
    table[static_cast<std::size_t>(grey)] = (grey < threshold) == invert ? 255 : 0;
  }
  return rfPelMap(image, table);
}
