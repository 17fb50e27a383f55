// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "rz/fit.h"
#include "rz/math_error.h"

namespace {

using Points = std::vector<rzVector<2>>;

const rzLineFitParams kAllPoints(0, 0, std::numeric_limits<double>::infinity());

rzFLine fit(const Points& points) { return rfLineFit(points, kAllPoints).line(); }

double squaredDistances(const Points& points, const rzFLine& line) {
  double sum = 0.0;
  for (const rzVector<2>& p : points) sum += std::pow(line.distanceFrom(p), 2);
  return sum;
}

Points noisyLine(std::mt19937& random, const rzVector<2>& start, const rzRadian& angle, int n) {
  std::normal_distribution<double> noise(0.0, 0.3);
  Points points;
  for (int i = 0; i < n; ++i) {
    points.push_back(start + rzVector<2>(5.0 * i, angle) +
                     rzVector<2>(noise(random), noise(random)));
  }
  return points;
}

TEST(LineFit, NoOtherLineIsNearer) {
  std::mt19937 random(5);
  for (int degrees = 0; degrees < 360; degrees += 7) {
    const Points points = noisyLine(random, {300.0, 200.0}, rzDegree(degrees), 3 + degrees % 9);
    const rzFLine line = fit(points);
    const double least = squaredDistances(points, line);
    for (double turn : {-1e-4, 0.0, 1e-4}) {
      for (double shift : {-1e-2, 0.0, 1e-2}) {
        const rzFLine other(line.angle() + rzRadian(turn), line.distance() + shift);
        EXPECT_LE(least, squaredDistances(points, other) + 1e-12);
      }
    }
  }
}

TEST(LineFit, GrowingLineCarriesItsSumsToTheSameBits) {
  std::mt19937 random(6);
  const Points points = noisyLine(random, {1234.5, -987.25}, rzDegree(33.0), 40);
  rz_LineMoments carried;
  for (std::size_t n = 1; n <= points.size(); ++n) {
    carried.add(points[n - 1]);
    if (n < 2) continue;
    const rz_LineMoments saved = carried;
    EXPECT_EQ(saved.fit(), fit(Points(points.begin(), points.begin() + std::ptrdiff_t(n)))) << n;
  }
}

TEST(LineFit, FarFromTheOriginLosesNothing) {
  const rzVector<2> shift(1048576.0, -2097152.0);  // powers of two: the shifted points are exact
  const Points points = {{0.0, 0.0}, {1.0, 0.25}, {2.0, 0.5}, {3.0, 1.0}};
  Points shifted = points;
  for (rzVector<2>& p : shifted) p += shift;
  EXPECT_EQ(fit(shifted).angle(), fit(points).angle());
}

TEST(LineFit, WithoutTwoPlacesOrFiniteNumbersIsSingular) {
  const double inf = HUGE_VAL;
  for (const Points& points :
       {Points{}, Points{{1.0, 2.0}}, Points{{1.0, 2.0}, {1.0, 2.0}, {1.0, 2.0}},
        Points{{1.0, 2.0}, {inf, 2.0}}, Points{{inf, 2.0}, {3.0, 2.0}},
        Points{{1.0, 2.0}, {3.0, std::nan("")}}, Points{{1e200, 2.0}, {-1e200, 4.0}}}) {
    EXPECT_THROW(fit(points), rzMathError::Singular);
  }
}

}  // namespace
