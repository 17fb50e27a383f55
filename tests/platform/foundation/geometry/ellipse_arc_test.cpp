// SPDX-License-Identifier: Apache-2.0
#include "rz/ellipse_arc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

rzRect sampledBox(const rzEllipseArc2& arc) {
  constexpr int kSamples = 4000;
  rzVector<2> low = arc.p1();
  rzVector<2> high = low;
  for (int i = 1; i <= kSamples; ++i) {
    const rzVector<2> p = arc.point(arc.start() + arc.span() * (double{1} * i / kSamples));
    low = {std::min(low.x(), p.x()), std::min(low.y(), p.y())};
    high = {std::max(high.x(), p.x()), std::max(high.y(), p.y())};
  }
  return {low, high - low};
}

TEST(EllipseArc, BoxIsThatOfDenselySampledPoints) {
  // Samples are at most 2 pi / 4000 apart and miss an extreme by radius * (that / 2)^2 / 2.
  constexpr double kMissed = 10.0 * 4e-7;
  std::mt19937 random(4);
  std::uniform_real_distribution<double> radius(0.0, 10.0), turn(-7.0, 7.0), span(-6.28, 6.28);
  for (int i = 0; i < 300; ++i) {
    const rzEllipseArc2 arc({turn(random), turn(random)}, radius(random), radius(random),
                            rzRadian(turn(random)), rzRadian(turn(random)), rzRadian(span(random)));
    const rzRect box = arc.encloseRect();
    const rzRect sampled = sampledBox(arc);
    EXPECT_LT(box.ul().distance(sampled.ul()), kMissed) << i;
    EXPECT_LT(box.lr().distance(sampled.lr()), kMissed) << i;
  }
}

TEST(EllipseArc, SpanOfZeroIsAPoint) {
  const rzEllipseArc2 arc(rzCircle({1.0, 2.0}, 5.0), rzDegree(33.0), rzRadian(0.0));
  EXPECT_EQ(arc.encloseRect(), rzRect(arc.p1(), {0.0, 0.0}));
}

TEST(EllipseArc, QuarterCircleEndsAtItsExtremes) {
  for (double direction : {1.0, -1.0}) {
    const rzRadian start = direction > 0 ? rzRadian(0.0) : rzRadian(rzDegree(90.0));
    const rzEllipseArc2 arc(rzCircle({0.0, 0.0}, 2.0), start, rzDegree(90.0 * direction));
    const rzRect box = arc.encloseRect();
    EXPECT_NEAR(box.x(), 0.0, 1e-12);
    EXPECT_NEAR(box.y(), 0.0, 1e-12);
    EXPECT_NEAR(box.width(), 2.0, 1e-12);
    EXPECT_NEAR(box.height(), 2.0, 1e-12);
  }
}

TEST(EllipseArc, MoreThanATurnIsTheWholeEllipse) {
  const rzEllipseArc2 arc({0.0, 0.0}, 3.0, 2.0, rzRadian(0.0), rzRadian(1.0), rzRadian(-7.0));
  EXPECT_EQ(arc.encloseRect(), rzRect(-3.0, -2.0, 6.0, 4.0));
}

}  // namespace
