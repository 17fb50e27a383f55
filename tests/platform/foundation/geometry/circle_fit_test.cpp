// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "rz/fit.h"
#include "rz/math_error.h"

namespace {

using Points = std::vector<rzVector<2>>;

const rzCircleFitParams kAllPoints(0, 1.0, 0, std::numeric_limits<double>::infinity());

rzCircle fit(const Points& points) { return rfCircleFit(points, kAllPoints).circle(); }

Points arcPoints(const rzCircle& circle, double startDegrees, double sweepDegrees, int n) {
  Points points;
  for (int i = 0; i < n; ++i) {
    const rzDegree angle(startDegrees + sweepDegrees * i / (n - 1));
    points.push_back(circle.center() + rzVector<2>(circle.radius(), angle));
  }
  return points;
}

double squaredDistances(const Points& points, const rzCircle& circle) {
  double sum = 0.0;
  for (const rzVector<2>& p : points) {
    sum += std::pow(p.distance(circle.center()) - circle.radius(), 2);
  }
  return sum;
}

rzVector<2> randomPoint(std::mt19937& random) {
  std::uniform_real_distribution<double> place(0.0, 1000.0);
  const double x = place(random);
  return {x, place(random)};
}

TEST(CircleFit, FindsExactArcsOfAllSweepsAndSenses) {
  const rzCircle circle({400.0, -300.0}, 250.0);
  // Coordinates are rounded to about 1e-13; for a flat arc the centre is less sure by the square
  // of the radius over the length, here at most 500.
  constexpr double kTolerance = 1e-8;
  for (double sweep : {0.5, 4.9, 5.0, 5.1, 30.0, 90.0, 180.0, 270.0, 350.0}) {
    for (double sense : {1.0, -1.0}) {
      for (double start : {0.0, 37.0, 90.0, 200.0}) {
        for (int n : {3, 4, 5, 20}) {
          const rzCircle found = fit(arcPoints(circle, start, sense * sweep, n));
          EXPECT_LT(found.center().distance(circle.center()), kTolerance) << sweep << " " << n;
          EXPECT_NEAR(found.radius(), circle.radius(), kTolerance) << sweep << " " << n;
        }
      }
    }
  }
}

TEST(CircleFit, NoCircleNearbyIsNearer) {
  std::mt19937 random(8);
  std::normal_distribution<double> noise(0.0, 0.5);
  for (double sweep : {15.0, 40.0, 90.0, 180.0, 330.0}) {
    for (int n : {4, 5, 8, 20}) {
      Points points = arcPoints(rzCircle({50.0, 60.0}, 100.0), 70.0, sweep, n);
      for (rzVector<2>& p : points) p += rzVector<2>(noise(random), noise(random));
      const rzCircle circle = fit(points);
      const double least = squaredDistances(points, circle);
      for (int direction = 0; direction < 8; ++direction) {
        for (double shift : {1e-3, 1e-1}) {
          // The best radius for a centre is the mean distance from it.
          const rzVector<2> center =
              circle.center() + rzVector<2>(shift, rzDegree(45. * direction));
          double radius = 0.0;
          for (const rzVector<2>& p : points) radius += p.distance(center) / n;
          EXPECT_LE(least, squaredDistances(points, rzCircle(center, radius)) * (1 + 1e-9))
              << sweep << " " << n;
        }
      }
    }
  }
}

TEST(CircleFit, CollinearToWithinRoundingIsSingular) {
  std::mt19937 random(9);
  std::uniform_real_distribution<double> place(-100.0, 100.0);
  for (int i = 0; i < 2000; ++i) {
    const rzVector<2> start = randomPoint(random);
    const rzVector<2> step = randomPoint(random) / 50.0;
    Points points;
    for (int k = 0; k < 3 + i % 5; ++k) points.push_back(start + place(random) * step);
    EXPECT_THROW(fit(points), rzMathError::Singular) << i;
  }
}

TEST(CircleFit, WithoutThreePlacesOrFiniteNumbersIsSingularAndLeavesTheCircle) {
  const rzVector<2> a(1.0, 2.0), b(3.0, 5.0), c(7.0, 1.0);
  const double inf = HUGE_VAL;
  for (const Points& points : {Points{}, Points{a}, Points{a, b}, Points{a, a, a}, Points{a, b, a},
                               Points{a, b, b, a}, Points{a, b, {inf, 0.0}},
                               Points{a, b, c, {0.0, std::nan("")}}, Points{a, b, {1e200, 0.0}}}) {
    EXPECT_THROW(fit(points), rzMathError::Singular);
    rzCircle circle(a, 3.0);
    EXPECT_FALSE(rf_FitCircle(points, circle));
    EXPECT_EQ(circle, rzCircle(a, 3.0));
  }
}

}  // namespace
