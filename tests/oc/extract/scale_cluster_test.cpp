// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/scale_cluster.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>

namespace {

constexpr double kNone = 0.0;

struct Case {
  std::string name;
  std::vector<double> samples;
  rzLong minSamples;
  double scale;  // kNone: no cluster
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

class ScaleCluster : public testing::TestWithParam<Case> {};

TEST_P(ScaleCluster, IsTheTightestRunOrNothing) {
  const Case& c = GetParam();
  double scale = -7.0;
  EXPECT_EQ(rf_FindScaleCluster(c.samples, c.minSamples, scale), c.scale != kNone);
  EXPECT_DOUBLE_EQ(scale, c.scale == kNone ? -7.0 : c.scale);
}

INSTANTIATE_TEST_SUITE_P(
    Samples, ScaleCluster,
    testing::Values(
        Case{"none", {}, 3, kNone}, Case{"too_few", {1.0, 1.0}, 3, kNone},
        Case{"just_enough", {1.0, 1.0, 1.0}, 3, 1.0},
        Case{"below_the_factor", {1.0, 1.04, 1.079}, 3, std::sqrt(1.079)},
        Case{"exactly_the_factor", {1.0, 1.04, 1.08}, 3, kNone},
        Case{"order_does_not_matter", {1.079, 1.0, 1.04}, 3, std::sqrt(1.079)},
        Case{"outliers_are_left_out", {0.5, 1.0, 2.0, 1.01, 1.02}, 3, std::sqrt(1.02)},
        Case{"later_run_is_tighter", {1.0, 1.02, 1.04, 1.5, 1.505, 1.51}, 3, std::sqrt(1.5 * 1.51)},
        Case{"later_run_is_as_tight", {1.0, 1.0, 2.0, 2.0}, 2, 1.0},
        Case{"spread_out", {0.5, 0.7, 1.0, 1.4, 2.0}, 3, kNone},
        Case{"first_is_negative", {-1.0, 1.0, 1.0, 1.0}, 3, kNone},
        Case{"later_is_negative", {1.0, 1.0, 1.0, -1.0}, 3, 1.0},
        Case{"zeros_have_no_ratio", {0.0, 0.0, 0.0}, 3, kNone}),
    [](const auto& test) { return test.param.name; });

}  // namespace
