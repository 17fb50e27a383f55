// SPDX-License-Identifier: Apache-2.0
#include "rz/angle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "rz/angle8.h"

namespace {

constexpr double kPi = std::numbers::pi;

TEST(Angle, NormBringsRadiansAndDegreesIntoTheTurn) {
  struct {
    const char* name;
    double value, norm, signedNorm;
  } const cases[] = {{"negative", -1.0, 2 * kPi - 1.0, -1.0},
                     {"minus half turn", -kPi, kPi, kPi},
                     {"three quarters", 1.5 * kPi, 1.5 * kPi, -0.5 * kPi},
                     {"full turn", 2 * kPi, 0.0, 0.0},
                     {"three turns and a bit", 6 * kPi + 0.25, 0.25, 0.25},
                     {"minus five half turns", -5 * kPi, kPi, kPi}};
  // 2 pi itself is no multiple of a double's pi, so a turn more or less costs a few ulps.
  constexpr double kTurnRounding = 1e-14;
  for (const auto& c : cases) {
    EXPECT_NEAR(rzRadian(c.value).norm().toDouble(), c.norm, kTurnRounding) << c.name;
    EXPECT_NEAR(rzRadian(c.value).signedNorm().toDouble(), c.signedNorm, kTurnRounding) << c.name;
    EXPECT_NEAR(rzDegree(rzRadian(c.value)).norm().toDouble(), c.norm / kPi * 180.0, 1e-12);
  }
  EXPECT_TRUE(std::isnan(rzRadian(HUGE_VAL).norm().toDouble()));
  EXPECT_TRUE(std::isnan(rzRadian(std::nan("")).signedNorm().toDouble()));
}

TEST(Angle, NormStaysInsideItsHalfOpenIntervalNextToTheEnds) {
  const double tiny = std::numeric_limits<double>::denorm_min();
  for (double base : {0.0, kPi, -kPi, 2 * kPi, -2 * kPi, 100 * kPi}) {
    for (double value : {base, std::nextafter(base, 1e9), std::nextafter(base, -1e9), base - tiny,
                         base - 1e-17, base + 1e-17}) {
      const double norm = rzRadian(value).norm().toDouble();
      EXPECT_GE(norm, 0.0) << value;
      EXPECT_LT(norm, 2 * kPi) << value;
      EXPECT_FALSE(std::signbit(norm)) << value;
      const double signedNorm = rzRadian(value).signedNorm().toDouble();
      EXPECT_GT(signedNorm, -kPi) << value;
      EXPECT_LE(signedNorm, kPi) << value;
    }
  }
}

TEST(Angle8, RoundsToTheNearestStepAndWrapsAtTheTurn) {
  const double step = 2 * kPi / 256;
  EXPECT_EQ(rzAngle8(rzRadian(0.49 * step)).plain(), 0);
  EXPECT_EQ(rzAngle8(rzRadian(0.51 * step)).plain(), 1);
  EXPECT_EQ(rzAngle8(rzRadian(-0.51 * step)).plain(), 255);
  EXPECT_EQ(rzAngle8(rzRadian(255.6 * step)).plain(), 0);
  EXPECT_EQ(rzAngle8(rzDegree(90.0)).plain(), 64);
  EXPECT_EQ((rzAngle8(rzDegree(10.0)) - rzAngle8(rzDegree(190.0))).plain(), 128);
}

}  // namespace
