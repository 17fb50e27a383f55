// SPDX-License-Identifier: Apache-2.0
#include "rz/matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "rz/line.h"
#include "rz/math_error.h"
#include "rz/real_eq.h"
#include "rz/rigid.h"
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

TEST(Matrix, MirrorShowsAsYAxisTurnedByHalfATurn) {
  const rzMatrix<2> mirrored =
      rzMatrix<2>(rzDegree(30.0), rzDegree(30.0), 2.0, 3.0) * rzMatrix<2>(1.0, 0.0, 0.0, -1.0);
  EXPECT_LT(mirrored.determinant(), 0.0);
  EXPECT_NEAR(mirrored.xRot().toDouble(), rzRadian(rzDegree(30.0)).toDouble(), kTolerance);
  EXPECT_NEAR((mirrored.yRot() - mirrored.xRot()).norm().toDouble(), kRzPi, kTolerance);
  EXPECT_NEAR(mirrored.yScale(), 3.0, kTolerance);
}

TEST(Matrix, UnturnedMatrixHasNoNegativeZeroAngle) {
  for (const rzMatrix<2>& m : {rzMatrix<2>(), rzMatrix<2>(rzRadian(), rzRadian(), 2.0, 2.0),
                               rzMatrix<2>(2.0, 0.0, 0.0, 2.0).inverse()}) {
    EXPECT_EQ(m.yRot(), rzRadian(0.0));
    EXPECT_FALSE(std::signbit(m.yRot().toDouble()));
    EXPECT_FALSE(std::signbit(m.xRot().toDouble()));
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

TEST(Xform, FiveArgumentsGiveScaleThenAspectThenSkewThenRotation) {
  const rzXform<2> similarity({5.0, 6.0}, 2.0, 1.0, rzRadian(0.0), rzDegree(90.0));
  EXPECT_TRUE(near(similarity * rzVector<2>(1.0, 0.0), {5.0, 8.0}));
  EXPECT_TRUE(near(similarity * rzVector<2>(0.0, 1.0), {3.0, 6.0}));

  const rzXform<2> skewed({}, 2.0, 1.5, rzDegree(20.0), rzDegree(10.0));
  EXPECT_NEAR(rzDegree(skewed.xRot()).toDouble(), 10.0, kTolerance);
  EXPECT_NEAR(rzDegree(skewed.yRot()).toDouble(), 30.0, kTolerance);
  EXPECT_NEAR(skewed.xScale(), 2.0, kTolerance);
  EXPECT_NEAR(skewed.yScale(), 3.0, kTolerance);
}

TEST(Xform, RealEqLooksAtEachOfTheSixNumbers) {
  const double values[6] = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
  const auto build = [](const double* v) {
    return rzXform<2>(rzMatrix<2>(v[0], v[1], v[2], v[3]), {v[4], v[5]});
  };
  for (int i = 0; i < 6; ++i) {
    double changed[6];
    std::copy(values, values + 6, changed);
    changed[i] += 0.25;
    EXPECT_TRUE(rfRealEq(build(values), build(changed), 0.25)) << i;
    EXPECT_FALSE(rfRealEq(build(values), build(changed), 0.2)) << i;
    changed[i] = std::nan("");
    EXPECT_FALSE(rfRealEq(build(values), build(changed), HUGE_VAL)) << i;
  }
}

TEST(Rigid, StepsAddUpWithoutWrapping) {
  const rz2Rigid step(rzDegree(100.0), {10.0, 0.0});
  const rz2Rigid twice = step * step;
  EXPECT_EQ(twice.angle(), rzDegree(200.0));
  EXPECT_NE(twice, rz2Rigid(rzDegree(-160.0), twice.trans()));
  EXPECT_TRUE(near(twice * rzVector<2>(1.0, 2.0), step * (step * rzVector<2>(1.0, 2.0))));
  EXPECT_TRUE(near(step.inverse() * (step * rzVector<2>(3.0, 4.0)), {3.0, 4.0}));
  EXPECT_TRUE(near(step.linear() * rzVector<2>(3.0, 4.0), step * rzVector<2>(3.0, 4.0)));
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

TEST(Line, OffsetAndPointAlongAreInverseToEachOther) {
  const rzLine line(rzDegree(-150.0), {3.0, 4.0});
  for (double t : {-20.0, 0.0, 7.5}) {
    EXPECT_NEAR(line.offset(line.pos() + t * line.dir()), t, kTolerance);
  }
  const rzVector<2> p(10.0, -2.0);
  EXPECT_NEAR((p - line.nearestPoint(p)).dot(line.dir()), 0.0, kTolerance);
}

TEST(Line, FootPointOfAnFLineLiesAQuarterTurnOn) {
  for (double distance : {3.0, -3.0}) {
    const rzFLine line(rzDegree(30.0), distance);
    const rzVector<2> foot(line.distance(), line.angle() + rzRadian(kRzHalfPi));
    EXPECT_NEAR(line.distanceFrom(foot), 0.0, kTolerance);
    EXPECT_NEAR(line.distanceAlong(foot), 0.0, kTolerance);
    EXPECT_NEAR(line.distanceAlong(foot + 5.0 * line.dir()), 5.0, kTolerance);
  }
}

}  // namespace
