// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>

#include "rz/attention.h"
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

class EdgeOfAStep : public testing::TestWithParam<double> {};

TEST_P(EdgeOfAStep, PointsWhereGreyRises) {
  const auto edges = edgesOf(step(GetParam(), 100));
  ASSERT_GT(edges.size(), 100U);
  for (const rzEdgelet& edge : edges) {
    if (edge.position().distance({20.5, 20.5}) > 6) continue;  // the border bends the rest
    EXPECT_LE(stepsApart(edge.angle(), rzAngle8(rzDegree(GetParam()))), 1) << GetParam();
  }
}

TEST_P(EdgeOfAStep, ShowsItsHeightAtItsMiddle) {
  const auto edges = edgesOf(step(GetParam(), 100));
  const auto middle = std::find_if(edges.begin(), edges.end(), [](const rzEdgelet& edge) {
    return edge.position() == rzVector<2>(20.5, 20.5);
  });
  ASSERT_NE(middle, edges.end());
  EXPECT_NEAR(middle->contrast(), 100, 2);
}

INSTANTIATE_TEST_SUITE_P(, EdgeOfAStep, testing::Values(0, 30, 45, 90, 135, 180, 225, 270, 350));

TEST(EdgeDetect, OppositeSidesOfAStrokeDifferByHalfATurn) {
  const Image image =
      drawn({0, 0, 41, 21}, [](rzLong x, rzLong) { return x >= 16 && x < 25 ? 50 : 200; });
  for (const rzEdgelet& edge : edgesOf(image, 60)) {
    EXPECT_EQ(edge.angle().plain(), edge.position().x() < 20.5 ? 128 : 0);
  }
}

TEST(EdgeDetect, StepsBelowTheContrastAreNoEdges) {
  const Image image = drawn({0, 0, 31, 31}, [](rzLong x, rzLong) { return x < 15 ? 100 : 110; });
  EXPECT_TRUE(edgesOf(image, 10.5).empty());
  EXPECT_FALSE(edgesOf(image, 9.0).empty());
  EXPECT_TRUE(edgesOf(flat({0, 0, 31, 31}, 100)).empty());
}

TEST(EdgeDetect, AddedGreyChangesNothingAndNegationTurnsAround) {
  const Image image = drawn(
      {0, 0, 31, 25}, [](rzLong x, rzLong y) { return std::hypot(x - 14, y - 12) < 7 ? 40 : 180; });
  const auto edges = edgesOf(image);
  const auto raised = edgesOf(
      drawn(image.window(), [&](rzLong x, rzLong y) { return *image.pointToPel(x, y) + 60; }));
  const auto negative = edgesOf(
      drawn(image.window(), [&](rzLong x, rzLong y) { return 255 - *image.pointToPel(x, y); }));
  ASSERT_EQ(raised.size(), edges.size());
  ASSERT_EQ(negative.size(), edges.size());
  for (std::size_t i = 0; i < edges.size(); ++i) {
    EXPECT_LE(stepsApart(raised[i].angle(), edges[i].angle()), 1);
    EXPECT_NEAR(stepsApart(negative[i].angle(), edges[i].angle()), 128, 1);
  }
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

TEST(EdgeDetect, OutermostRingHasNoEdgelets) {
  const Image image = pictures::noise({10, 20, 15, 12});
  const auto edges = edgesOf(image, 0);
  EXPECT_EQ(edges.size(), 13U * 10U);
  EXPECT_EQ(edges.front().position(), rzVector<2>(11.5, 21.5));
  EXPECT_EQ(edges.back().position(), rzVector<2>(23.5, 30.5));
  for (const rzPelRect& rect :
       {rzPelRect(0, 0, 2, 9), rzPelRect(0, 0, 9, 2), rzPelRect(0, 0, 1, 1)}) {
    EXPECT_TRUE(edgesOf(pictures::noise(rect), 0).empty());
  }
}

TEST(EdgeDetect, PelsOutsideTheWindowAreNotSeen) {
  Image image = flat({0, 0, 40, 40}, 0);
  image.window(rzPelRect(10, 10, 20, 20), false);
  rfPelSet(image, 255);
  EXPECT_TRUE(edgesOf(image).empty());
}

TEST(EdgeDetect, FailureKeepsTheOldEdgelets) {
  rzEdgeletSet edgelets;
  rfEdgeDetect(step(0, 100), rzEdgeletParams(), edgelets);
  const std::size_t before = edgelets.edges().size();
  EXPECT_THROW(rfEdgeDetect(ImageView(), rzEdgeletParams(), edgelets), rzPel::UnboundWindow);
  EXPECT_EQ(edgelets.edges().size(), before);
}

TEST(EdgeDetect, GrainsThatMeanNothingDoNoHarm) {
  for (const double grain : {0.0, -1.0, double{NAN}, HUGE_VAL}) {
    EXPECT_LE(edgesOf(pictures::noise({0, 0, 5, 5}), 0, grain).size(), 9U);
  }
}

}  // namespace
