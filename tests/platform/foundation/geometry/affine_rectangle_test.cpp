// SPDX-License-Identifier: Apache-2.0
#include "rz/affine_rectangle.h"

#include <gtest/gtest.h>

#include <random>

#include "rz/math_error.h"

namespace {

constexpr double kTolerance = 1e-11;  // a few roundings of numbers of the order of 100

struct Measures {
  double xLength, yLength, xRotation, skew;
  rzVector<2> center;
};

Measures measuresOf(const rzAffineRectangle& r) {
  return {r.xLength(), r.yLength(), r.xRotation().toDouble(), r.skew().toDouble(), r.center()};
}

void expectNear(const Measures& a, const Measures& b) {
  EXPECT_NEAR(a.xLength, b.xLength, kTolerance);
  EXPECT_NEAR(a.yLength, b.yLength, kTolerance);
  EXPECT_NEAR(rzRadian(a.xRotation - b.xRotation).signedNorm().toDouble(), 0.0, kTolerance);
  EXPECT_NEAR(rzRadian(a.skew - b.skew).signedNorm().toDouble(), 0.0, kTolerance);
  EXPECT_LT(a.center.distance(b.center), kTolerance);
}

TEST(AffineRectangle, EachSetterKeepsTheOtherMeasures) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> place(-50.0, 50.0), length(1.0, 40.0), turn(-3.1, 3.1),
      skew(-1.2, 1.2);
  for (int i = 0; i < 500; ++i) {
    const rzAffineRectangle rect({place(random), place(random)}, length(random), length(random),
                                 rzRadian(turn(random)), rzRadian(skew(random)));
    const Measures wanted{
        length(random), length(random), turn(random), skew(random), {place(random), place(random)}};
    rzAffineRectangle r = rect;
    Measures expected = measuresOf(rect);
    expectNear(measuresOf(r), expected);
    r.xLength(expected.xLength = wanted.xLength);
    expectNear(measuresOf(r), expected);
    r.yLength(expected.yLength = wanted.yLength);
    expectNear(measuresOf(r), expected);
    r.xRotation(rzRadian(expected.xRotation = wanted.xRotation));
    expectNear(measuresOf(r), expected);
    r.skew(rzRadian(expected.skew = wanted.skew));
    expectNear(measuresOf(r), expected);
    r.center(expected.center = wanted.center);
    expectNear(measuresOf(r), expected);
  }
}

TEST(AffineRectangle, EnclosesAllCornersAndNoPelTooMany) {
  rzAffineRectangle rect(rzPelRect(3, 4, 7, 5));
  EXPECT_EQ(rect.encloseImageRect({}), rzPelRect(3, 4, 7, 5));
  rect.center(rect.center() + rzVector<2>(0.5, 0.0));
  EXPECT_EQ(rect.encloseImageRect({}), rzPelRect(3, 4, 8, 5));
  EXPECT_EQ(rzAffineRectangle({0.1, 0.0}, {3.0, 0.0}, {0.1, 1.0}).encloseImageRect({}),
            rzPelRect(0, 0, 3, 1));
  EXPECT_EQ(rzAffineRectangle({0.0, 0.0}, {4.0, 1.0}, {-2.0, 5.0}).encloseImageRect({}),
            rzPelRect(-2, 0, 6, 6));
  EXPECT_THROW(rzAffineRectangle({0.0, 0.0}, {1e10, 0.0}, {0.0, 1.0}).encloseImageRect({}),
               rzMathError::Overflow);
}

}  // namespace
