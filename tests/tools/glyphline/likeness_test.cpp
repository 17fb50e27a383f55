// SPDX-License-Identifier: Apache-2.0
#include "likeness.h"

#include <gtest/gtest.h>

#include "support/draw.h"

namespace {

using glyphline::likeness;
using glyphline::mostTypical;
using Picture = rzPelBuffer<unsigned char>;

// An upright bar and a foot, `x` pels to the right, `foot` pels wide.
Picture print(double x, double foot, unsigned char paper = 200, unsigned char ink = 40) {
  Picture picture = draw::paper(24, 30, paper);
  draw::fill(picture, draw::stroke(10 + x, 5, 10 + x, 25, 4.0), rzXform<2>(), ink);
  draw::fill(picture, draw::stroke(8 + x, 23, 8 + x + foot, 23, 4.0), rzXform<2>(), ink);
  return picture;
}

TEST(Likeness, IsOneForPrintsThatDifferInLightOrByAPel) {
  EXPECT_NEAR(likeness(print(0, 8), print(0, 8)), 1.0, 1e-9);
  EXPECT_NEAR(likeness(print(0, 8), print(0, 8, 150, 70)), 1.0, 1e-9);
  EXPECT_NEAR(likeness(print(0, 8), print(1, 8)), 1.0, 1e-9);
  EXPECT_LT(likeness(print(0, 8), print(3, 8)), 0.8);
  EXPECT_LT(likeness(print(0, 8), print(0, 8, 40, 200)), 0.5);
}

TEST(Likeness, IsZeroBesideAFlatPicture) {
  EXPECT_EQ(likeness(print(0, 8), draw::paper(24, 30, 90)), 0.0);
}

TEST(MostTypical, IsTheOneThatMostOthersLookLike) {
  EXPECT_EQ(mostTypical({print(0, 2), print(0, 8), print(0, 9), print(0, 14)}), 1u);
  EXPECT_EQ(mostTypical({draw::paper(24, 30, 90), print(0, 8), print(0, 8)}), 1u);
  EXPECT_EQ(mostTypical({print(0, 8), print(0, 2)}), 0u);
  EXPECT_EQ(mostTypical({print(0, 8)}), 0u);
}

}  // namespace
