// SPDX-License-Identifier: Apache-2.0
#include "oc/refine/char_region.h"

#include <gtest/gtest.h>

#include "support/draw.h"

namespace {

constexpr double kTolerance = 1e-11;

TEST(RoundOutward, TakesAValueAHairFromAWholeNumberForThatNumber) {
  EXPECT_EQ(rf_RoundDown(2.99999999999, kTolerance), 3);
  EXPECT_EQ(rf_RoundUp(3.00000000001, kTolerance), 3);
  EXPECT_EQ(rf_RoundDown(2.999, kTolerance), 2);
  EXPECT_EQ(rf_RoundUp(3.001, kTolerance), 4);
  EXPECT_EQ(rf_RoundDown(-3.00000000001, kTolerance), -3);
  EXPECT_EQ(rf_RoundUp(-2.99999999999, kTolerance), -3);
}

TEST(SweptRect, HoldsEveryCornerOfTheTurnedAndEnlargedRectangle) {
  const rzPelRect rect(-5, 3, 30, 40);
  const rzVector<2> centre(10.0, 23.0);
  const rzPelRect swept = rf_SweptRect(rect, rzDegree(5.0), 0.05);
  for (double degrees = -5.0; degrees <= 5.0; degrees += 0.5) {
    const rzXform<2> turn(rzVector<2>(), 1.05, 1.0, rzRadian(0.0), rzDegree(degrees));
    for (const rzVector<2> corner :
         {rzVector<2>(-15, -20), rzVector<2>(15, -20), rzVector<2>(15, 20), rzVector<2>(-15, 20)}) {
      const rzVector<2> p = centre + turn * corner;
      EXPECT_GE(p.x(), swept.ul().x());
      EXPECT_GE(p.y(), swept.ul().y());
      EXPECT_LE(p.x(), swept.lr().x());
      EXPECT_LE(p.y(), swept.lr().y());
    }
  }
}

TEST(SetOffset, RenumbersPelsAndLeavesTheirClientPlace) {
  rzPelBuffer<unsigned char> buffer = draw::paper(6, 4);
  buffer.clientFromImageXform(rzXform<2>(rzMatrix<2>(2, 0, 0, 2), rzVector<2>(7, -1)));
  const rzVector<2> before = buffer.clientFromImageXform() * rzVector<2>(2.5, 1.5);
  rf_SetOffset(buffer, {100, -30});
  EXPECT_EQ(buffer.window(), rzPelRect(100, -30, 6, 4));
  const rzVector<2> after = buffer.clientFromImageXform() * rzVector<2>(102.5, -28.5);
  EXPECT_NEAR(after.x(), before.x(), 1e-12);
  EXPECT_NEAR(after.y(), before.y(), 1e-12);
}

TEST(CharRegion, IsCutWithoutTheExtraThirdNearTheBorderAndNotAtAllOutside) {
  const rzPelBuffer<unsigned char> image = draw::paper(80, 80);
  const rzPelRect window(0, 0, 24, 24);
  const rzXform<2> clientFromImage(rzMatrix<2>(), rzVector<2>(-12, -12));
  struct Row {
    const char* name;
    double x;
    rzLong width;  // of the region; 0: none
  };
  // Grown by a third the window has 40 pels, 46 when swept; bare it has 24, 28 when swept.
  for (const Row& row :
       {Row{"middle", 40, 46}, Row{"near the border", 18, 28}, Row{"outside", 5, 0}}) {
    SCOPED_TRACE(row.name);
    rzPelBuffer<unsigned char> region;
    const rzXform<2> pose(rzMatrix<2>(), rzVector<2>(row.x, 40));
    EXPECT_EQ(rf_SampleCharRegion(region, image, window, clientFromImage, pose, 3.0, 0.05),
              row.width > 0);
    EXPECT_EQ(region.window().width(), row.width);
  }
}

}  // namespace
