// SPDX-License-Identifier: Apache-2.0
#include "line_shape.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace {

using glyphline::LineShape;
using glyphline::shapeOf;
using Points = std::vector<rzVector<2>>;

// Places on a circle of this radius, every `step` radians from `start`, off by `off` in turn.
Points onCircle(int count, double radius, double start, double step, double off = 0.0) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double r = radius + (i % 2 == 0 ? off : -off);
    points.push_back(rzVector<2>(200, 150) + rzVector<2>(r, rzRadian(start + step * i)));
  }
  return points;
}

TEST(LineShape, IsCircularOnlyWhenACircleIsClearlyBetter) {
  struct Row {
    const char* name;
    Points places;
    bool isCircular;
  };
  for (const Row& row : {
           Row{"two places", {{0, 0}, {30, 9}}, false},
           Row{"straight, trembling", {{0, 0}, {30, 0.6}, {60, -0.5}, {90, 0.4}, {120, 0}}, false},
           Row{"straight, torn", {{0, 0}, {30, 6}, {60, -5}, {90, 6}, {120, -6}}, false},
           Row{"clockwise", onCircle(6, 100, -2.5, 0.3), true},
           Row{"counter-clockwise", onCircle(6, 100, 2.5, -0.3), true},
           Row{"a whole turn", onCircle(12, 80, 3.0, 0.5), true},
           Row{"trembling circle", onCircle(8, 100, 0.0, 0.3, 0.4), true},
           Row{"so wide that it is straight", onCircle(6, 20000, 1.0, 0.0015), false},
       }) {
    EXPECT_EQ(shapeOf(row.places).isCircular, row.isCircular) << row.name;
  }
}

TEST(LineShape, ArcsRunThroughThePlacesInTheirSense) {
  for (const double step : {0.4, -0.4}) {
    const Points places = onCircle(10, 90, 2.9, step);  // across the angle at which atan2 wraps
    const LineShape shape = shapeOf(places);
    ASSERT_GE(shape.curve.size(), places.size());
    EXPECT_NEAR(shape.curve.front().distance(places.front()), 0.0, 1e-6);
    EXPECT_NEAR(shape.curve.back().distance(places.back()), 0.0, 1e-6);
    double length = 0.0;
    for (std::size_t i = 1; i < shape.curve.size(); ++i) {
      length += shape.curve[i].distance(shape.curve[i - 1]);
    }
    EXPECT_NEAR(length, 90 * 0.4 * 9, 0.5);
  }
}

TEST(LineShape, HasNoCurveWithoutTwoDifferentPlaces) {
  EXPECT_TRUE(shapeOf({}).curve.empty());
  EXPECT_TRUE(shapeOf({{3, 4}}).curve.empty());
  for (const rzVector<2>& p : shapeOf({{3, 4}, {3, 4}, {3, 4}}).curve) {
    EXPECT_TRUE(std::isfinite(p.x()) && std::isfinite(p.y()));
  }
}

}  // namespace
