// SPDX-License-Identifier: Apache-2.0
#include "rz/angle.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "rz/angle8.h"

namespace {

constexpr double kPi = std::numbers::pi;

struct NormCase {
  std::string name;
  double value;
  double norm;
  double signedNorm;
};

class AngleNorm : public testing::TestWithParam<NormCase> {};

// 2 pi itself is no multiple of a double's pi, so a turn more or less costs a few ulps.
constexpr double kTurnRounding = 1e-14;

TEST_P(AngleNorm, BringsRadiansAndDegreesIntoTheTurn) {
  const NormCase& c = GetParam();
  EXPECT_NEAR(rzRadian(c.value).norm().toDouble(), c.norm, kTurnRounding);
  EXPECT_NEAR(rzRadian(c.value).signedNorm().toDouble(), c.signedNorm, kTurnRounding);
  EXPECT_NEAR(rzDegree(rzRadian(c.value)).norm().toDouble(), c.norm / kPi * 180.0, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(
    Table, AngleNorm,
    testing::Values(NormCase{"zero", 0.0, 0.0, 0.0}, NormCase{"inside", 1.0, 1.0, 1.0},
                    NormCase{"negative", -1.0, 2 * kPi - 1.0, -1.0},
                    NormCase{"half_turn", kPi, kPi, kPi},
                    NormCase{"minus_half_turn", -kPi, kPi, kPi},
                    NormCase{"three_quarters", 1.5 * kPi, 1.5 * kPi, -0.5 * kPi},
                    NormCase{"full_turn", 2 * kPi, 0.0, 0.0},
                    NormCase{"minus_full_turn", -2 * kPi, 0.0, 0.0},
                    NormCase{"three_turns_and_a_bit", 6 * kPi + 0.25, 0.25, 0.25},
                    NormCase{"minus_five_half_turns", -5 * kPi, kPi, kPi}),
    [](const auto& paramInfo) { return paramInfo.param.name; });

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

TEST(Angle, NormOfWhatIsNotFiniteIsNoNumber) {
  for (double value : {HUGE_VAL, -HUGE_VAL, std::nan("")}) {
    EXPECT_TRUE(std::isnan(rzRadian(value).norm().toDouble()));
    EXPECT_TRUE(std::isnan(rzRadian(value).signedNorm().toDouble()));
  }
}

TEST(Angle, DegreesAndRadiansMixWithoutFactors) {
  const auto asRadians = [](const rzRadian& r) { return r.toDouble(); };
  EXPECT_DOUBLE_EQ(asRadians(rzDegree(180.0)), kPi);
  EXPECT_EQ(asRadians(rzDegree(90.0)), kPi / 2);
  EXPECT_DOUBLE_EQ((rzRadian(1.0) + rzDegree(90.0)).toDouble(), 1.0 + kPi / 2);
  EXPECT_DOUBLE_EQ((rzDegree(10.0) - rzRadian(kPi)).toDouble(), -170.0);
  EXPECT_DOUBLE_EQ((2.0 * -rzDegree(30.0) / 4.0).toDouble(), -15.0);
  EXPECT_LT(rzDegree(359.0), rzDegree(361.0));
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
