// SPDX-License-Identifier: Apache-2.0
#include "oc/images/blankness.h"

#include <gtest/gtest.h>

#include <cmath>

#include "rz/attention.h"
#include "rz/pel_functions.h"
#include "rz/timeout.h"
#include "support/noise.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

Image flat(const rzPelRect& rect, unsigned char grey) {
  rzPelBuffer<unsigned char> image(rect, 32);
  rfPelSet(image, grey);
  return image;
}

double plainCorrelation(const Image& region, const Image& care, rzLong dx, rzLong dy) {
  double n = 0, a = 0, b = 0, aa = 0, bb = 0, ab = 0;
  for (rzLong y = 2; y + 2 < region.height(); ++y) {
    for (rzLong x = 2; x + 2 < region.width(); ++x) {
      if (care.isBound() && *care.pointToPel(x, y) < 128) continue;
      const double p = *region.pointToPel(x, y);
      const double q = *region.pointToPel(x + dx, y + dy);
      n += 1, a += p, b += q, aa += p * p, bb += q * q, ab += p * q;
    }
  }
  return (n * ab - a * b) / std::sqrt((n * aa - a * a) * (n * bb - b * b));
}

TEST(Blankness, IsTheMeanOfTheAbsoluteCorrelationsAtTwentyFiveShifts) {
  const rzPelRect rect(0, 0, 15, 11);
  for (std::uint32_t seed = 0; seed < 10; ++seed) {
    const Image region = noise(rect, seed);
    for (const Image& care : {Image(), Image(noise(rect, seed + 50))}) {
      double sum = 0.0;
      for (rzLong dy = -2; dy <= 2; ++dy) {
        for (rzLong dx = -2; dx <= 2; ++dx) {
          sum += std::fabs(std::round(1000.0 * plainCorrelation(region, care, dx, dy)));
        }
      }
      EXPECT_NEAR(rf_AutoCorrelationScore(region, care), sum / 25.0, 1e-9) << seed;
    }
  }
}

TEST(Blankness, AVarianceOfOneIsFlatAndAnythingAboveIsNot) {
  rzPelBuffer<unsigned char> region(rzPelRect(0, 0, 8, 8), 32);
  for (rzLong y = 0; y < 8; ++y) {
    for (rzLong x = 0; x < 8; ++x) *region.pointToPel(x, y) = x % 2 == 0 ? 10 : 12;
  }
  EXPECT_EQ(rf_AutoCorrelationScore(region, Image()), 0.0);
  *region.pointToPel(3, 3) = 13;
  EXPECT_GT(rf_AutoCorrelationScore(region, Image()), 0.0);
}

TEST(Blankness, IsOneWhereNothingCountsWhateverTheBorderOfTheMaskSays) {
  const rzPelRect rect(4, 4, 9, 9);
  rzPelBuffer<unsigned char> care(rect, 32);
  *care.pointToPel(4, 4) = 255;  // within the border
  *care.pointToPel(8, 8) = 127;
  EXPECT_EQ(rf_AutoCorrelationScore(noise(rect, 2), care), 1.0);
}

TEST(ScoreBlankness, LooksWhereThePoseAndTheAreaSay) {
  rzPelBuffer<unsigned char> image(rzPelRect(0, 0, 60, 40), 32);
  rfPelSet(image, 200);
  rfPelCopy(noise(rzPelRect(30, 10, 16, 16), 4), image);
  const rzPelRect area(2, 3, 12, 12);
  const auto shift = [](double x, double y) { return rzXform<2>(rzMatrix<2>(), {x, y}); };
  EXPECT_EQ(rfScoreBlankness(image, Image(), shift(0, 0), Image(), area, Image()), 0.0);
  EXPECT_GT(rfScoreBlankness(image, Image(), shift(30, 10), Image(), area, Image()), 50.0);
  Image model = flat(rzPelRect(0, 0, 20, 20), 9);
  model.clientFromImageXform(shift(30, 10));
  EXPECT_EQ(rfScoreBlankness(image, Image(), shift(0, 0), model, area, Image()),
            rfScoreBlankness(image, Image(), shift(30, 10), Image(), area, Image()));
}

TEST(ScoreBlankness, CountsOnlyWhatBothMasksCareFor) {
  const rzPelRect window(0, 0, 30, 30);
  const rzPelRect area(3, 5, 12, 12);
  const Image image = noise(window, 5);
  const Image none = flat(window, 0);
  const Image all = flat(window, 255);
  const auto score = [&](const Image& mask, const Image& modelMask) {
    return rfScoreBlankness(image, mask, rzXform<2>(), Image(), area, modelMask);
  };
  const double unmasked = score(Image(), Image());
  EXPECT_GT(unmasked, 1.0);
  EXPECT_EQ(score(all, Image()), unmasked);
  EXPECT_EQ(score(Image(), all), unmasked);
  EXPECT_EQ(score(all, all), unmasked);
  EXPECT_EQ(score(none, Image()), 1.0);
  EXPECT_EQ(score(Image(), none), 1.0);
  EXPECT_EQ(score(all, none), 1.0);
  EXPECT_EQ(score(none, all), 1.0);
}

TEST(ScoreBlankness, RefusesAreasWithoutAnInteriorAndAreasOutsideTheMask) {
  const Image image = noise(rzPelRect(0, 0, 30, 30), 6);
  const auto score = [&](const rzPelRect& area, const Image& modelMask) {
    return rfScoreBlankness(image, Image(), rzXform<2>(), Image(), area, modelMask);
  };
  EXPECT_THROW(score(rzPelRect(0, 0, 4, 9), Image()), rzPel::BadWindow);
  EXPECT_THROW(score(rzPelRect(0, 0, 9, 4), Image()), rzPel::BadWindow);
  EXPECT_NO_THROW(score(rzPelRect(0, 0, 5, 5), Image()));
  EXPECT_THROW(score(rzPelRect(0, 0, 9, 9), flat(rzPelRect(0, 0, 8, 9), 255)), rzPel::BadWindow);
}

}  // namespace
