// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>

#include "rz/edgelet.h"
#include "tests/platform/foundation/pels/pictures.h"

namespace {

using pictures::drawn;
using pictures::flat;
using pictures::Image;
using pictures::ImageView;

std::vector<rzEdgelet> edgesOf(const ImageView& image, double contrast = 10.0, double grain = 1.0) {
  rzEdgeletSet edgelets;
  rfEdgeDetect(image, rzEdgeletParams(grain, contrast, 1), edgelets);
  return edgelets.edges();
}

// A step of `height` greys across the middle of a picture of 41 by 41 pels, which rises in the
// direction `degrees`; the pel under the edge has the middle grey, roughly.
Image step(double degrees, double height) {
  const rzVector<2> rise(1.0, rzDegree(degrees));
  return drawn({0, 0, 41, 41}, [&](rzLong x, rzLong y) {
    const double distance = rise.dot(rzVector<2>(x - 20, y - 20));
    return std::lround(100 + height * (0.5 + std::clamp(distance, -0.5, 0.5)));
  });
}

double stepsApart(const rzAngle8& a, const rzAngle8& b) {
  const int difference = (a - b).plain();
  return std::min(difference, 256 - difference);
}

TEST(EdgeDetect, StepPointsWhereGreyRisesAndShowsItsHeightAtItsMiddle) {
  for (const double degrees : {0, 30, 135, 180, 225, 350}) {
    bool isMiddleSeen = false;
    for (const rzEdgelet& edge : edgesOf(step(degrees, 100))) {
      const double fromMiddle = edge.position().distance({20.5, 20.5});
      if (fromMiddle > 6) continue;  // the border bends the rest
      EXPECT_LE(stepsApart(edge.angle(), rzAngle8(rzDegree(degrees))), 1) << degrees;
      if (fromMiddle > 0) continue;
      isMiddleSeen = true;
      EXPECT_NEAR(edge.contrast(), 100, 2) << degrees;
    }
    EXPECT_TRUE(isMiddleSeen) << degrees;
  }
}

TEST(EdgeDetect, StepsBelowTheContrastAreNoEdges) {
  const Image image = drawn({0, 0, 31, 31}, [](rzLong x, rzLong) { return x < 15 ? 100 : 110; });
  EXPECT_TRUE(edgesOf(image, 10.5).empty());
  EXPECT_FALSE(edgesOf(image, 9.0).empty());
  EXPECT_TRUE(edgesOf(flat({0, 0, 31, 31}, 100)).empty());
}

TEST(EdgeDetect, SmoothingGrowsWithTheLongerSide) {
  const auto halfWidth = [](rzLong height, double grain) {
    const Image image =
        drawn({0, 0, 61, height}, [](rzLong x, rzLong) { return x < 30 ? 0 : 200; });
    double farthest = 0.0;
    for (const rzEdgelet& edge : edgesOf(image, 27, grain)) {
      farthest = std::max(farthest, std::fabs(edge.position().x() - 30));
    }
    return farthest;
  };
  // 0.135 of the height is left at two standard deviations, which are 4.88 pels for a side of 61
  // and 10 for 125; pel centres lie at halves.
  EXPECT_EQ(halfWidth(61, 1.0), 9.5);
  EXPECT_EQ(halfWidth(125, 1.0), 19.5);
  EXPECT_EQ(halfWidth(61, 0.5), 4.5);
}

TEST(EdgeDetect, WindowsOutermostRingHasNoEdgelets) {
  Image image = flat({0, 0, 40, 40}, 0);
  image.window(rzPelRect(10, 20, 15, 12), false);
  rfPelSet(image, 255);
  EXPECT_TRUE(edgesOf(image).empty()) << "pels outside the window are not seen";
  for (const double grain : {1.0, 0.0, -1.0, double{NAN}, HUGE_VAL}) {
    const auto edges = edgesOf(pictures::noise(image.window()), 0, grain);
    EXPECT_LE(edges.size(), 13U * 10U) << grain;
    if (grain != 1.0) continue;
    ASSERT_EQ(edges.size(), 13U * 10U);
    EXPECT_EQ(edges.front().position(), rzVector<2>(11.5, 21.5));
    EXPECT_EQ(edges.back().position(), rzVector<2>(23.5, 30.5));
  }
  EXPECT_TRUE(edgesOf(pictures::noise({0, 0, 2, 9}), 0).empty());
  EXPECT_TRUE(edgesOf(pictures::noise({0, 0, 9, 2}), 0).empty());
}

TEST(EdgeDetect, FailureKeepsTheOldEdgelets) {
  rzEdgeletSet edgelets;
  rfEdgeDetect(step(0, 100), rzEdgeletParams(), edgelets);
  const std::size_t before = edgelets.edges().size();
  EXPECT_THROW(rfEdgeDetect(ImageView(), rzEdgeletParams(), edgelets), rzPel::UnboundWindow);
  EXPECT_EQ(edgelets.edges().size(), before);
}

}  // namespace
