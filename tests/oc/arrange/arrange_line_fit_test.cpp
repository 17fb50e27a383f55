// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/line_fit.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace {

using Points = std::vector<rzVector<2>>;
constexpr double kTolerance = 1e-9;  // of fits to exact points of some hundred units

double degrees(const rzRadian& angle) { return rzDegree(angle).toDouble(); }

Points onArc(double radius, const std::vector<double>& atDegrees) {
  Points points;
  for (const double a : atDegrees) {
    points.push_back(rzVector<2>(50, -20) + rzVector<2>(radius, rzDegree(a)));
  }
  return points;
}

struct StraightCase {
  const char* name;
  Points points;
  bool fits;
  double direction;  // degrees
};

class StraightLine : public testing::TestWithParam<StraightCase> {};

TEST_P(StraightLine, RunsFromTheFirstToTheLastPoint) {
  const StraightCase& c = GetParam();
  rzLine line;
  ASSERT_EQ(rf_FitStraightLine(c.points, line), c.fits);
  if (!c.fits) return;
  EXPECT_NEAR((line.angle() - rzDegree(c.direction)).signedNorm().toDouble(), 0, kTolerance);
  for (const rzVector<2>& p : c.points) {
    EXPECT_NEAR(line.nearestPoint(p).distance(p), 0, kTolerance);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Table, StraightLine,
    testing::Values(StraightCase{"none", {}, false, 0}, StraightCase{"one", {{1, 2}}, false, 0},
                    StraightCase{"equal", {{1, 2}, {1, 2}}, false, 0},
                    StraightCase{"right", {{3, 4}, {9, 4}}, true, 0},
                    StraightCase{"left", {{9, 4}, {3, 4}}, true, 180},
                    StraightCase{"down", {{5, 0}, {5, 9}}, true, 90},
                    StraightCase{"up", {{5, 9}, {5, 0}}, true, -90},
                    StraightCase{"slanted_back", {{7, 7}, {6, 6}, {1, 1}}, true, -135},
                    StraightCase{"middle_beyond", {{0, 0}, {20, 0}, {10, 0}}, false, 0},
                    StraightCase{"two_at_one_place", {{0, 0}, {5, 0}, {5, 0}, {9, 0}}, false, 0},
                    StraightCase{"back_at_start", {{0, 0}, {5, 0}, {0, 0}}, false, 0},
                    StraightCase{"not_finite", {{0, 0}, {5, std::nan("")}}, false, 0}),
    [](const auto& test) { return std::string(test.param.name); });

struct CircularCase {
  const char* name;
  std::vector<double> atDegrees;  // places on the circle, in order
  bool fits;
  double sweep;  // degrees
};

class CircularLine : public testing::TestWithParam<CircularCase> {};

TEST_P(CircularLine, FollowsTheCircle) {
  const CircularCase& c = GetParam();
  rzCircle circle;
  std::vector<rzRadian> pointAngles;
  rzRadian sweep;
  ASSERT_EQ(rf_FitCircularLine(onArc(100, c.atDegrees), circle, pointAngles, sweep), c.fits);
  if (!c.fits) return;
  EXPECT_NEAR(circle.radius(), 100, 1e-6);
  EXPECT_NEAR(degrees(sweep), c.sweep, 1e-6);
  for (std::size_t k = 0; k < pointAngles.size(); ++k) {
    EXPECT_NEAR(degrees((pointAngles[k] - rzDegree(c.atDegrees[k])).signedNorm()), 0, 1e-6);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Table, CircularLine,
    testing::Values(CircularCase{"two", {0, 20}, false, 0},
                    CircularCase{"positive", {0, 20, 40}, true, 40},
                    CircularCase{"negative", {40, 20, 0}, true, -40},
                    CircularCase{"over_the_seam", {160, 180, 200}, true, 40},
                    CircularCase{"nearly_a_turn", {0, 90, 180, 270, 350}, true, 350},
                    CircularCase{"more_than_a_turn", {0, 100, 200, 300, 400}, false, 0},
                    CircularCase{"step_above_half_a_turn", {0, 20, 210}, false, 0},
                    CircularCase{"out_of_order", {0, 30, 20, 40}, false, 0},
                    CircularCase{"arc_of_4.9", {10, 12, 14.9}, false, 0},
                    CircularCase{"arc_of_5.1", {10, 12, 15.1}, true, 5.1},
                    CircularCase{"arc_of_5.1_back", {15.1, 12, 10}, true, -5.1}),
    [](const auto& test) {
      std::string name = test.param.name;
      std::replace(name.begin(), name.end(), '.', '_');
      return name;
    });

TEST(CircularLineFit, PointsOnALineGiveNone) {
  rzCircle circle;
  std::vector<rzRadian> pointAngles;
  rzRadian sweep;
  EXPECT_FALSE(rf_FitCircularLine({{0, 0}, {5, 0}, {9, 0}}, circle, pointAngles, sweep));
}

struct AverageCase {
  const char* name;
  std::vector<double> angles;  // degrees
  std::vector<int> symmetries;
  double average;
};

class AverageOrientation : public testing::TestWithParam<AverageCase> {};

TEST_P(AverageOrientation, KnowsWhatTurnsShow) {
  const AverageCase& c = GetParam();
  std::vector<rzRadian> angles;
  for (const double a : c.angles) angles.push_back(rzDegree(a));
  std::vector<rz_OCExtractDefs::Symmetry> symmetries;
  for (const int s : c.symmetries) {
    symmetries.push_back(static_cast<rz_OCExtractDefs::Symmetry>(s));
  }
  const rzRadian off = rf_AverageOrientation(angles, symmetries) - rzDegree(c.average);
  EXPECT_NEAR(off.signedNorm().toDouble(), 0, kTolerance);
}

INSTANTIATE_TEST_SUITE_P(Table, AverageOrientation,
                         testing::Values(AverageCase{"nothing", {}, {}, 0},
                                         AverageCase{"round_characters", {30, 60}, {2, 2}, 0},
                                         AverageCase{"round_one_left_out", {30, 60}, {0, 2}, 30},
                                         AverageCase{"folded", {10, 190}, {0, 1}, 10},
                                         AverageCase{"folded_first", {190, 10}, {1, 0}, 10},
                                         AverageCase{"both_fold", {190, 10}, {1, 1}, 190},
                                         AverageCase{"over_the_seam", {170, 190}, {0, 0}, 180}),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
