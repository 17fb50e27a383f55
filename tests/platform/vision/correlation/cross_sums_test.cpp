// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/cross_sums.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/noise.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

std::int64_t greyAt(const Image& image, std::ptrdiff_t x, std::ptrdiff_t y) {
  if (x < 0 || y < 0 || x >= image.width() || y >= image.height()) return 0;
  return *image.pointToPel(image.window().x() + static_cast<rzLong>(x),
                           image.window().y() + static_cast<rzLong>(y));
}

std::int64_t plainSum(const Image& pattern, const Image& picture, std::ptrdiff_t x,
                      std::ptrdiff_t y) {
  std::int64_t sum = 0;
  for (std::ptrdiff_t v = 0; v < pattern.height(); ++v) {
    for (std::ptrdiff_t u = 0; u < pattern.width(); ++u) {
      sum += greyAt(pattern, u, v) * greyAt(picture, x + u, y + v);
    }
  }
  return sum;
}

TEST(CrossSums, EveryWidthAroundTheVectorsGivesThePlainSumWhereverTheTemplateHangs) {
  for (rzLong width = 1; width <= 2 * 16 + 1; ++width) {
    const Image pattern = noise(rzPelRect(3, -2, width, 3), static_cast<std::uint32_t>(width));
    const Image picture = noise(rzPelRect(-7, 5, 20, 4), 99);
    const auto margin = static_cast<std::size_t>(width);
    const rz_WidePels a(pattern);
    const rz_WidePels b(picture, margin);
    for (std::ptrdiff_t y = -4; y <= 5; ++y) {
      for (std::ptrdiff_t x = -width; x <= 20; ++x) {
        const std::int64_t expected = plainSum(pattern, picture, x, y);
        ASSERT_EQ(rf_CrossSum(a, b, x, y), expected) << width << " at " << x << ", " << y;
        ASSERT_EQ(rf_CrossSumPlain(a, b, x, y), expected) << width << " at " << x << ", " << y;
      }
    }
  }
}

TEST(CrossSums, AllWhitePelsDoNotOverflow) {
  struct Case {
    const char* name;
    rzLong width, height;
  };
  // As many products as 32 bits could not hold: in a row, in one lane, and in all.
  for (const Case& c : {Case{"wide", 70'000, 2}, {"high", 16, 9'000}, {"large", 2'000, 1'500}}) {
    const Image white = noise(rzPelRect(0, 0, c.width, c.height), 1, 255, 255);
    const rz_WidePels pels(white);
    const std::int64_t expected = std::int64_t{255 * 255} * c.width * c.height;
    EXPECT_EQ(rf_CrossSum(pels, pels, 0, 0), expected) << c.name;
    EXPECT_EQ(rf_CrossSumPlain(pels, pels, 0, 0), expected) << c.name;
  }
}

TEST(WindowSums, GiveSumAndSquaresOfEveryWindow) {
  const Image picture = noise(rzPelRect(10, 20, 7, 5), 4);
  const rz_WidePels pels(picture);
  const rz_WindowSums sums(pels);
  for (rzLong height = 0; height <= 5; ++height) {
    for (rzLong width = 0; width <= 7; ++width) {
      for (rzLong x = 0; x + width <= 7; ++x) {
        for (rzLong y = 0; y + height <= 5; ++y) {
          std::int64_t sum = 0;
          std::int64_t squares = 0;
          for (rzLong k = 0; k < width * height; ++k) {
            const std::int64_t grey = greyAt(picture, x + k % width, y + k / width);
            sum += grey;
            squares += grey * grey;
          }
          const auto at = [](rzLong value) { return static_cast<std::size_t>(value); };
          ASSERT_EQ(sums.sum(at(x), at(y), at(width), at(height)), sum);
          ASSERT_EQ(sums.squares(at(x), at(y), at(width), at(height)), squares);
        }
      }
    }
  }
}

}  // namespace
