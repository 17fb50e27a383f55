// SPDX-License-Identifier: Apache-2.0
#include "rz/rect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "rz/math_error.h"
#include "rz/pel_rect.h"

namespace {

constexpr rzLong kMin = std::numeric_limits<rzLong>::min();
constexpr rzLong kMax = std::numeric_limits<rzLong>::max();

TEST(PelRect, IntersectionAndContainment) {
  const rzPelRect rect(0, 0, 10, 10);
  struct {
    const char* name;
    rzPelRect other, common;
    bool contained;
  } const cases[] = {{"inside", {2, 3, 4, 5}, {2, 3, 4, 5}, true},
                     {"the same", {0, 0, 10, 10}, {0, 0, 10, 10}, true},
                     {"over a corner", {-5, 8, 10, 10}, {0, 8, 5, 2}, false},
                     {"beside", {10, 0, 5, 5}, {}, false},
                     {"from the least number", {kMin, kMin, kMax, kMax}, {}, false},
                     {"beyond the largest number", {5, 5, kMax, kMax}, {5, 5, 5, 5}, false}};
  for (const auto& c : cases) {
    EXPECT_EQ(rect.intersect(c.other), c.common) << c.name;
    EXPECT_EQ(c.other.intersect(rect), c.common) << c.name;
    EXPECT_EQ(rect.contains(c.other), c.contained) << c.name;
  }
}

TEST(PelRect, NoCornerOverflows) {
  const rzPelRect rect(kMax, kMax, kMax, kMax);
  EXPECT_EQ(rect.lr(), rzPair<rzLong>(kMax, kMax));
  EXPECT_TRUE(rect.contains(rect));
  EXPECT_EQ(rect.area(), std::int64_t{kMax} * kMax);
  EXPECT_EQ(rzPelRect(rzPair<rzLong>(kMin, 0), rzPair<rzLong>(kMax, 1)).width(), kMax);
}

TEST(Rect, PelsRoundItAreFoundWithoutTolerance) {
  EXPECT_EQ(rzRect(1.0, 2.0, 3.0, 4.0).enclosePelRect(), rzPelRect(1, 2, 3, 4));
  EXPECT_EQ(rzRect(-0.5, 0.25, 1.0, 0.5).enclosePelRect(), rzPelRect(-1, 0, 2, 1));
  EXPECT_EQ(rzRect(0.0, 0.0, std::nextafter(1.0, 2.0), 1.0).enclosePelRect().width(), 2);
  EXPECT_THROW(rzRect(0.0, 0.0, 3e9, 1.0).enclosePelRect(), rzMathError::Overflow);
  EXPECT_THROW(rzRect(-2e9, 0.0, 4e9, 1.0).enclosePelRect(), rzMathError::Overflow);
  EXPECT_THROW(rzRect(std::nan(""), 0.0, 1.0, 1.0).enclosePelRect(), rzMathError::Overflow);
}

}  // namespace
