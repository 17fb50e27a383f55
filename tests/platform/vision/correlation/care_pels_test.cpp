// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/care_pels.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/noise.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

bool isBright(unsigned char mask) { return mask >= 128; }

// Pels of both pictures that face one another and count, in doubles.
struct PlainPairs {
  std::vector<double> a, b;

  PlainPairs(const Image& pattern, const Image& patternMask, const Image& picture,
             const Image& pictureMask, rzLong x, rzLong y) {
    for (rzLong v = 0; v < pattern.height(); ++v) {
      for (rzLong u = 0; u < pattern.width(); ++u) {
        if (!picture.window().contains(rzPair<rzLong>(x + u, y + v))) continue;
        if (*patternMask.pointToPel(u, v) < 128 || *pictureMask.pointToPel(x + u, y + v) < 128) {
          continue;
        }
        a.push_back(*pattern.pointToPel(u, v));
        b.push_back(*picture.pointToPel(x + u, y + v));
      }
    }
  }

  static double mean(const std::vector<double>& values) {
    double sum = 0.0;
    for (const double value : values) sum += value;
    return sum / static_cast<double>(values.size());
  }

  double correlation() const {
    double ab = 0.0;
    double aa = 0.0;
    double bb = 0.0;
    for (std::size_t k = 0; k < a.size(); ++k) {
      ab += (a[k] - mean(a)) * (b[k] - mean(b));
      aa += (a[k] - mean(a)) * (a[k] - mean(a));
      bb += (b[k] - mean(b)) * (b[k] - mean(b));
    }
    return aa > 1e-9 && bb > 1e-9 ? ab / std::sqrt(aa * bb) : 0.0;
  }
};

TEST(CarePels, MasksOnBothSidesAndOverhangCorrelateAsThePlainPairsDo) {
  const rzPelRect patternRect(0, 0, 9, 7);
  const rzPelRect pictureRect(0, 0, 12, 8);
  const Image pattern = noise(patternRect, 1);
  const Image patternMask = noise(patternRect, 2);
  const Image picture = noise(pictureRect, 3);
  const Image pictureMask = noise(pictureRect, 4);
  const rz_CarePels a(pattern, patternMask, isBright);
  const rz_CarePels b(picture, pictureMask, isBright, 9);
  for (rzLong y = -7; y <= 8; ++y) {
    for (rzLong x = -9; x <= 12; ++x) {
      const PlainPairs pairs(pattern, patternMask, picture, pictureMask, x, y);
      const rz_PairSums sums = rf_PairSums(a, b, x, y);
      ASSERT_EQ(sums.n, static_cast<std::int64_t>(pairs.a.size())) << x << ", " << y;
      ASSERT_EQ(sums.n, rf_NumPairs(a, b, x, y));
      ASSERT_NEAR(rf_Correlation(sums), pairs.correlation(), 1e-12) << x << ", " << y;
    }
  }
}

TEST(Correlation, EqualSidesGiveExactlyOneAndMirroredGreysExactlyMinusOne) {
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    const Image picture = noise(rzPelRect(0, 0, 13, 11), seed, 0, 1 + static_cast<int>(seed));
    const rz_CarePels pels(picture, {}, isBright);
    rz_PairSums sums = rf_PairSums(pels, pels, 0, 0);
    ASSERT_EQ(rf_Correlation(sums), 1.0) << seed;
    // b = 255 - a
    const rz_PairSums own = sums;
    sums.b = 255 * own.n - own.a;
    sums.bb = 255 * 255 * own.n - 2 * 255 * own.a + own.aa;
    sums.ab = 255 * own.a - own.aa;
    ASSERT_EQ(rf_Correlation(sums), -1.0) << seed;
  }
}

TEST(Correlation, IsZeroWithoutPairsAndWhenASideIsFlat) {
  EXPECT_EQ(rf_Correlation({}), 0.0);
  EXPECT_EQ(rf_Correlation({4, 40, 400, 10, 30, 100}), 0.0);
  EXPECT_EQ(rf_Correlation({4, 10, 30, 40, 400, 100}), 0.0);
}

}  // namespace
