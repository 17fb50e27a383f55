// SPDX-License-Identifier: Apache-2.0
#include "rz/matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "rz/math_error.h"
#include "rz/real_eq.h"
#include "rz/xform.h"

namespace {

constexpr double kTolerance = 1e-12;  // a few roundings of numbers of the order of 10

rzXform<2> asXform(const rzMatrix<2>& m) { return {m, {}}; }

bool near(const rzVector<2>& a, const rzVector<2>& b) { return a.distance(b) < kTolerance; }

rzXform<2> randomXform(std::mt19937& random) {
  std::uniform_real_distribution<double> number(-3.0, 3.0);
  const auto next = [&] { return number(random); };
  const double m[6] = {next(), next(), next(), next(), next(), next()};
  return {rzMatrix<2>(m[0], m[1], m[2], m[3]), {m[4], m[5]}};
}

TEST(Matrix, TakenApartAndComposedAgainIsItselfForEverySign) {
  std::mt19937 random(1);
  for (int i = 0; i < 10000; ++i) {
    const rzMatrix<2> m = randomXform(random).matrix();
    const rzMatrix<2> again(m.xRot(), m.yRot(), m.xScale(), m.yScale());
    EXPECT_TRUE(rfRealEq(asXform(again), asXform(m), kTolerance)) << i;
    EXPECT_GE(m.xScale(), 0.0);
    EXPECT_GE(m.yScale(), 0.0);
  }
}

TEST(Matrix, WithoutInverseIsSingular) {
  const double inf = HUGE_VAL;
  const double huge = std::numeric_limits<double>::max();
  const double tiny = std::numeric_limits<double>::min();
  for (const rzMatrix<2>& m :
       {rzMatrix<2>(0.0, 0.0, 0.0, 0.0), rzMatrix<2>(1.0, 2.0, 2.0, 4.0),
        rzMatrix<2>(inf, 0.0, 0.0, 1.0), rzMatrix<2>(std::nan(""), 0.0, 0.0, 1.0),
        rzMatrix<2>(huge, 0.0, 0.0, huge), rzMatrix<2>(tiny * 0x1p-40, 0.0, 0.0, 1.0)}) {
    EXPECT_THROW(m.inverse(), rzMathError::Singular);
  }
}

TEST(Xform, ProductMapsFromRightToLeftAndInverseUndoesIt) {
  std::mt19937 random(2);
  for (int i = 0; i < 1000; ++i) {
    const rzXform<2> a = randomXform(random);
    const rzXform<2> b = randomXform(random);
    const rzVector<2> p = randomXform(random).trans();
    EXPECT_TRUE(near((a * b) * p, a * (b * p)));
    if (std::fabs(a.matrix().determinant()) > 0.01) {
      EXPECT_LT((a.inverse() * (a * p)).distance(p), 1e-10);
    }
    EXPECT_TRUE(near(a.mapVector(p), a * p - a * rzVector<2>()));
  }
}

TEST(Xform, FiveArgumentsGiveScaleThenAspectThenSkewThenRotationAndAMirrorTurnsY) {
  const rzXform<2> similarity({5.0, 6.0}, 2.0, 1.0, rzRadian(0.0), rzDegree(90.0));
  EXPECT_TRUE(near(similarity * rzVector<2>(1.0, 0.0), {5.0, 8.0}));
  EXPECT_TRUE(near(similarity * rzVector<2>(0.0, 1.0), {3.0, 6.0}));

  const rzXform<2> skewed({}, 2.0, 1.5, rzDegree(20.0), rzDegree(10.0));
  EXPECT_NEAR(rzDegree(skewed.xRot()).toDouble(), 10.0, kTolerance);
  EXPECT_NEAR(rzDegree(skewed.yRot()).toDouble(), 30.0, kTolerance);
  EXPECT_NEAR(skewed.xScale(), 2.0, kTolerance);
  EXPECT_NEAR(skewed.yScale(), 3.0, kTolerance);

  const rzMatrix<2> mirrored = skewed.matrix() * rzMatrix<2>(1.0, 0.0, 0.0, -1.0);
  EXPECT_NEAR(rzDegree(mirrored.yRot().signedNorm()).toDouble(), -150.0, kTolerance);
  EXPECT_FALSE(std::signbit(rzMatrix<2>(2.0, 0.0, 0.0, 2.0).inverse().yRot().toDouble()));
}

TEST(RealEq, RoundingToWholeNumbersRefusesWhatDoesNotFit) {
  EXPECT_EQ(rfIFloor(-0.5), -1);
  EXPECT_EQ(rfICeil(-0.5), 0);
  EXPECT_EQ(rfIFloor(2147483647.9), 2147483647);
  EXPECT_EQ(rfICeil(-2147483648.9), -2147483647 - 1);
  for (double value : {2147483647.5, 2147483648.0, -2147483649.0, HUGE_VAL, std::nan("")}) {
    EXPECT_THROW(rfICeil(value), rzMathError::Overflow) << value;
  }
  EXPECT_THROW(rfIFloor(-2147483648.5), rzMathError::Overflow);
}

}  // namespace
