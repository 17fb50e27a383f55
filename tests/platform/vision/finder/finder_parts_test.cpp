// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

#include "platform/vision/finder/edge_points.h"
#include "platform/vision/finder/gradient.h"
#include "platform/vision/finder/model.h"
#include "platform/vision/finder/overlap.h"
#include "tests/platform/vision/finder/letters.h"

namespace {

using finder::PelView;
using finder::Vec2;

PelView viewOf(const letters::Image& image) {
  return {image.pointToPel(0, 0), image.width(), image.height(), image.rowUpdate(), nullptr, 0};
}

TEST(Gradient, OfARampIsTheSameEverywhereInside) {
  letters::Image image = draw::paper(20, 16);
  for (rzLong y = 0; y < 16; ++y) {
    for (rzLong x = 0; x < 20; ++x) {
      *image.pointToPel(x, y) = static_cast<unsigned char>(10 + 6 * x + 3 * y);
    }
  }
  const finder::GradientMap map = finder::gradientsOf(viewOf(image), finder::kGradientReach);
  const finder::Gradient middle = map.row(8)[10];
  EXPECT_NEAR(static_cast<double>(middle.x()) / middle.y(), 2.0, 0.02);
  for (int y = 2; y < 14; ++y) {
    for (int x = 2; x < 18; ++x) {
      EXPECT_EQ(map.row(y)[x].x(), middle.x());
      EXPECT_EQ(map.row(y)[x].y(), middle.y());
    }
  }
}

TEST(Gradient, IsNullWithinReachOfMaskedPels) {
  letters::Image image = letters::trainImage(draw::letterR());
  letters::Image mask = draw::paper(image.width(), image.height(), 255);
  *mask.pointToPel(12, 20) = 127;
  PelView view = viewOf(image);
  const finder::GradientMap open = finder::gradientsOf(view, finder::kGradientReach);
  view.mask = mask.pointToPel(0, 0);
  view.maskStride = mask.rowUpdate();
  const finder::GradientMap map = finder::gradientsOf(view, finder::kGradientReach);
  for (int y = 0; y < map.height; ++y) {
    for (int x = 0; x < map.width; ++x) {
      const bool isNear = std::abs(x - 12) <= 2 && std::abs(y - 20) <= 2;
      EXPECT_EQ(map.row(y)[x].x(), isNear ? 0 : open.row(y)[x].x());
    }
  }
}

TEST(EdgePoints, OfADiskLieOnItsCircle) {
  letters::Image image = draw::paper(50, 50);
  draw::fill(image, draw::ring(0, 0, 0, 14), letters::pose(24.3, 25.6));
  const auto points = finder::edgePointsOf(viewOf(image), 1.1);
  EXPECT_GT(points.size(), 60U);
  double length = 0.0;
  for (const finder::EdgePoint& p : points) {
    const Vec2 arm = p.place - Vec2{24.3, 25.6};
    EXPECT_NEAR(finder::length(arm), 14.0, 0.14);  // a bent edge is drawn inwards a little
    EXPECT_GT(dot(arm, p.gradient) / (finder::length(arm) * finder::length(p.gradient)), 0.99);
    length += p.length;
  }
  EXPECT_NEAR(length, 2 * std::numbers::pi * 14.0, 6.0);
}

TEST(Model, FirstPointsCoverTheWholeOutline) {
  const letters::Image image = letters::trainImage(draw::letterR());
  const finder::TrainingImage training{viewOf(image), {}};
  const std::vector<finder::EdgePoint> outline = finder::outlineOf(training, 1.0);
  const finder::PatternFrame frame = finder::measurePattern(outline);
  EXPECT_NEAR(frame.halfSize.y, 15.0, 0.5);
  const finder::Model model = finder::makeModel(outline, frame, {}, 1.0, 100);
  ASSERT_EQ(model.points.size(), 100U);
  for (const finder::ModelPoint& p : model.points) {
    double nearest = 1e9;
    for (std::size_t i = 0; i < 30; ++i) {
      nearest = std::min(nearest, finder::length(model.points[i].place - p.place));
    }
    EXPECT_LT(nearest, 7.0);
  }
}

std::vector<Vec2> rectangle(double x, double y, double width, double height) {
  return {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}};
}

TEST(OverlapShare, IsOfTheSmallerOne) {
  const auto square = rectangle(0, 0, 10, 10);
  EXPECT_NEAR(finder::overlapShare(square, rectangle(5, 0, 10, 10)), 0.5, 1e-12);
  EXPECT_NEAR(finder::overlapShare(square, rectangle(2, 2, 4, 5)), 1.0, 1e-12);
  EXPECT_NEAR(finder::overlapShare(rectangle(2, 2, 4, 5), square), 1.0, 1e-12);
  EXPECT_EQ(finder::overlapShare(square, rectangle(11, 0, 10, 10)), 0.0);
  // A square on its corner inside, and either sense of the corners.
  const std::vector<Vec2> diamond = {{5, 0}, {10, 5}, {5, 10}, {0, 5}};
  const std::vector<Vec2> other(diamond.rbegin(), diamond.rend());
  EXPECT_NEAR(finder::overlapShare(square, diamond), 1.0, 1e-12);
  EXPECT_NEAR(finder::overlapShare(rectangle(5, 0, 10, 10), other), 0.5, 1e-12);
}

}  // namespace
