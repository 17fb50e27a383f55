// SPDX-License-Identifier: Apache-2.0
#include "rz/rect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "rz/math_error.h"
#include "rz/pel_rect.h"
#include "rz/range.h"

namespace {

constexpr rzLong kMin = std::numeric_limits<rzLong>::min();
constexpr rzLong kMax = std::numeric_limits<rzLong>::max();

TEST(PelRect, CornersAreOnePastTheLastPel) {
  const rzPelRect rect(10, 20, 3, 4);
  EXPECT_EQ(rect.ur(), rzPair<rzLong>(13, 20));
  EXPECT_EQ(rect.ll(), rzPair<rzLong>(10, 24));
  EXPECT_EQ(rzPelRect(rect.ul(), rect.lr()), rect);
}

TEST(PelRect, WithoutWidthOrHeightIsNull) {
  EXPECT_TRUE(rzPelRect().isNull());
  EXPECT_TRUE(rzPelRect(1, 1, 0, 5).isNull());
  EXPECT_TRUE(rzPelRect(1, 1, 5, -1).isNull());
  EXPECT_FALSE(rzPelRect(1, 1, 1, 1).isNull());
  EXPECT_EQ(rzPelRect(1, 1, -5, -6).width(), -5);
}

struct IntersectCase {
  rzPelRect other;
  rzPelRect common;
  bool contained;
};

TEST(PelRect, IntersectionAndContainment) {
  const rzPelRect rect(0, 0, 10, 10);
  const IntersectCase cases[] = {{{2, 3, 4, 5}, {2, 3, 4, 5}, true},
                                 {{0, 0, 10, 10}, {0, 0, 10, 10}, true},
                                 {{-5, 8, 10, 10}, {0, 8, 5, 2}, false},
                                 {{10, 0, 5, 5}, {}, false},
                                 {{20, 20, 1, 1}, {}, false},
                                 {{kMin, kMin, kMax, kMax}, {}, false},
                                 {{5, 5, kMax, kMax}, {5, 5, 5, 5}, false}};
  for (const IntersectCase& c : cases) {
    EXPECT_EQ(rect.intersect(c.other), c.common);
    EXPECT_EQ(c.other.intersect(rect), c.common);
    EXPECT_EQ(rect.contains(c.other), c.contained);
  }
}

TEST(PelRect, TrimTakesOffEachSideAndNegativeNumbersGrow) {
  const rzPelRect rect(10, 20, 30, 40);
  EXPECT_EQ(rect.trim(1, 2, 3, 4, false), rzPelRect(11, 23, 27, 33));
  EXPECT_EQ(rect.trim(-1, -2, -3, -4, true), rzPelRect(9, 17, 33, 47));
}

TEST(PelRect, EncloseHoldsBothAndIgnoresNull) {
  const rzPelRect rect(10, 20, 3, 4);
  EXPECT_EQ(rect.enclose(rzPelRect(8, 30, 1, 1)), rzPelRect(8, 20, 5, 11));
  EXPECT_EQ(rect.enclose(rzPelRect()), rect);
  EXPECT_EQ(rzPelRect().enclose(rect), rect);
}

TEST(PelRect, NoCornerOverflows) {
  const rzPelRect rect(kMax, kMax, kMax, kMax);
  EXPECT_EQ(rect.lr(), rzPair<rzLong>(kMax, kMax));
  EXPECT_TRUE(rect.contains(rect));
  EXPECT_EQ(rect.area(), std::int64_t{kMax} * kMax);
  EXPECT_EQ(rzPelRect(rzPair<rzLong>(kMin, 0), rzPair<rzLong>(kMax, 1)).width(), kMax);
}

TEST(Rect, EncloseCountsDegenerateOnesAsPoints) {
  const rzRect point({5.0, 6.0}, {0.0, 0.0});
  EXPECT_TRUE(point.degen());
  EXPECT_EQ(point.enclose(rzRect({7.0, 2.0}, {0.0, 0.0})), rzRect(5.0, 2.0, 2.0, 4.0));
  EXPECT_EQ(rzRect(1.0, 1.0, 1.0, 1.0).enclose(rzRect()), rzRect(0.0, 0.0, 2.0, 2.0));
}

TEST(Rect, IsDegenerateUnlessBothSidesArePositive) {
  EXPECT_FALSE(rzRect(0.0, 0.0, 1e-300, 1.0).degen());
  EXPECT_TRUE(rzRect(0.0, 0.0, 0.0, 1.0).degen());
  EXPECT_TRUE(rzRect(0.0, 0.0, -1.0, 1.0).degen());
  EXPECT_TRUE(rzRect(0.0, 0.0, 1.0, std::nan("")).degen());
}

TEST(Rect, PelsRoundItAreFoundWithoutTolerance) {
  EXPECT_EQ(rzRect(1.0, 2.0, 3.0, 4.0).enclosePelRect(), rzPelRect(1, 2, 3, 4));
  EXPECT_EQ(rzRect(-0.5, 0.25, 1.0, 0.5).enclosePelRect(), rzPelRect(-1, 0, 2, 1));
  EXPECT_EQ(rzRect(0.0, 0.0, std::nextafter(1.0, 2.0), 1.0).enclosePelRect().width(), 2);
  EXPECT_THROW(rzRect(0.0, 0.0, 3e9, 1.0).enclosePelRect(), rzMathError::Overflow);
  EXPECT_THROW(rzRect(-2e9, 0.0, 4e9, 1.0).enclosePelRect(), rzMathError::Overflow);
  EXPECT_THROW(rzRect(std::nan(""), 0.0, 1.0, 1.0).enclosePelRect(), rzMathError::Overflow);
}

TEST(Rect, MappedKeepsItsCornersNames) {
  const rzXform<2> quarter({10.0, 0.0}, 1.0, 1.0, rzRadian(0.0), rzDegree(90.0));
  const rzGenRect mapped = rzRect(1.0, 2.0, 3.0, 4.0).map(quarter);
  EXPECT_LT(mapped.ul().distance({8.0, 1.0}), 1e-12);
  EXPECT_LT(mapped.ur().distance({8.0, 4.0}), 1e-12);
  EXPECT_LT(mapped.lr().distance({4.0, 4.0}), 1e-12);
}

TEST(Range, ReversedAndNanRangesAreAllEmpty) {
  const double nan = std::nan("");
  for (const rzRange& range : {rzRange(2.0, 1.0), rzRange(nan, 1.0), rzRange(0.0, nan)}) {
    EXPECT_EQ(range, rzRange::EmptyRange());
    EXPECT_NE(range, rzRange(0.0, 1.0));
  }
  EXPECT_NE(rzRange::FullRange(), rzRange::EmptyRange());
  EXPECT_NE(rzRange(1.0, 1.0), rzRange::EmptyRange());
  EXPECT_EQ(rzRange(-HUGE_VAL, HUGE_VAL), rzRange::FullRange());
}

}  // namespace
