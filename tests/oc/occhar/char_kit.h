// SPDX-License-Identifier: Apache-2.0
//
// Pictures and records for the tests of character records.
#pragma once

#include <string>
#include <vector>

#include "oc/char.h"
#include "rz/pel_functions.h"

namespace kit {

using Image = rzOCChar::Image;

/// One row to a string; a digit d stands for grey 20 * d, '#' for 255, '.' for 0.
inline rzPelBuffer<unsigned char> picture(const std::vector<std::string>& rows, rzLong x = 0,
                                          rzLong y = 0) {
  const rzPelRect window(x, y, rf_Count(rows.front().size()), rf_Count(rows.size()));
  rzPelBuffer<unsigned char> image(window, 32);
  for (rzLong r = 0; r < window.height(); ++r) {
    for (rzLong c = 0; c < window.width(); ++c) {
      const char pel = rows[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)];
      const int grey = pel == '#' ? 255 : pel == '.' ? 0 : 20 * (pel - '0');
      *image.pointToPel(x + c, y + r) = static_cast<unsigned char>(grey);
    }
  }
  return image;
}

/// The pels of the window, a row to a string, as picture() reads them.
inline std::vector<std::string> rowsOf(const Image& image) {
  std::vector<std::string> rows;
  const rzPelRect window = image.window();
  for (rzLong y = window.y(); y < window.ll().y(); ++y) {
    std::string row;
    for (rzLong x = window.x(); x < window.ur().x(); ++x) {
      const unsigned char pel = *image.pointToPel(x, y);
      row += pel == 255 ? '#' : pel == 0 ? '.' : static_cast<char>('0' + pel / 20);
    }
    rows.push_back(row);
  }
  return rows;
}

/// A record with something in every field; its binarized image is cached.
inline rzOCChar filledChar() {
  rzOCChar c;
  c.key(rzOCCharKey(0x394, 2, 3, 4));
  c.image(picture({"1234", "5678", "9876"}, 10, 20), rzPelRect());
  c.mask(picture({"####", "#..#", "####"}, 10, 20), rzPelRect());
  c.normalizedImage(picture({"1289", "8912"}, 10, 20), rzPelRect());
  c.polarity(rzOCDefs::eLightOnDark);
  c.imageArea(rzPelRect(11, 20, 2, 2));
  c.threshold(100);
  c.invert(true);
  c.hasThresholdAndInvert(true);
  c.name("delta");
  c.description32(U"Greek \u0394");
  rzOCCharMetrics metrics;
  metrics.rect(rzOCCharMetrics::eMarkRectImage, rzPelRect(11, 20, 2, 5));
  metrics.isRectSpecified(rzOCCharMetrics::eMarkRectImage, true);
  metrics.detectedMarkRect(rzRect(1.0, 2.0, 3.0, 4.0));
  metrics.hasDetectedMarkRect(true);
  c.metrics(metrics);
  c.moveOrigin(rzVector<2>(0.5, -1.5));
  c.binarizedImage(false);
  return c;
}

}  // namespace kit
