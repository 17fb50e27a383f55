// SPDX-License-Identifier: Apache-2.0
#include "rz/enclose_rect.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "rz/math_error.h"

namespace {

struct Case {
  const char* name;
  std::vector<rzVector<2>> vertices;
  rzXform<2> composed;
  rzXform<2> target;
  double xUncertainty;
  double yUncertainty;
  double turn;
  double scale;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

rzRect enclose(const Case& c) {
  return rfEncloseRect(rzPolygon(c.vertices), c.composed, c.target, c.xUncertainty, c.yUncertainty,
                       rzRadian(c.turn), c.scale, 0.0, 0.0, 0.0, 1);
}

struct Box {
  double left = std::numeric_limits<double>::infinity();
  double top = std::numeric_limits<double>::infinity();
  double right = -std::numeric_limits<double>::infinity();
  double bottom = -std::numeric_limits<double>::infinity();

  void add(const rzVector<2>& p) {
    left = std::min(left, p.x());
    top = std::min(top, p.y());
    right = std::max(right, p.x());
    bottom = std::max(bottom, p.y());
  }
};

// Points of the polygon: its corners, and mixtures of them towards their mean.
std::vector<rzVector<2>> pointsOf(const std::vector<rzVector<2>>& vertices) {
  rzVector<2> mean;
  for (const auto& v : vertices) mean += v / static_cast<double>(vertices.size());
  std::vector<rzVector<2>> points;
  for (const auto& v : vertices) {
    for (const double share : {0.0, 0.4, 0.8, 1.0}) points.push_back(mean + (v - mean) * share);
  }
  return points;
}

// The definition, tried out: every sampled point, turn, factor and extreme shift.
Box sampledBox(const Case& c) {
  constexpr int kTurnSteps = 2000;
  const rzXform<2> targetFromClient = c.target.inverse();
  const double smallest = std::max(0.0, 1.0 - c.scale);
  Box box;
  for (int step = 0; step <= kTurnSteps; ++step) {
    const rzRadian turn(c.turn * (2.0 * step / kTurnSteps - 1.0));
    const rzMatrix<2> rotation(turn, turn, 1.0, 1.0);
    for (const double factor : {smallest, 0.5 * (smallest + 1.0), 1.0, 1.0 + c.scale}) {
      for (const auto& p : pointsOf(c.vertices)) {
        const rzVector<2> placed = c.composed * ((rotation * p) * factor);
        for (const double tx : {-c.xUncertainty, c.xUncertainty}) {
          for (const double ty : {-c.yUncertainty, c.yUncertainty}) {
            box.add(targetFromClient * (placed + rzVector<2>(tx, ty)));
          }
        }
      }
    }
  }
  return box;
}

const std::vector<rzVector<2>> kCentred = {{-3, -4}, {3, -4}, {3, 4}, {-3, 4}};
const std::vector<rzVector<2>> kAside = {{10, 5}, {16, 5}, {16, 13}, {10, 13}};
const std::vector<rzVector<2>> kTriangle = {{-2, 1}, {7, 0}, {1, 6}};
const rzXform<2> kIdentity;
const rzXform<2> kTurned(rzVector<2>(4, -7), 1.5, 1.0, rzRadian(0.0), rzRadian(0.7));
const rzXform<2> kMirrored(rzMatrix<2>(-1.2, 0.3, 0.1, 0.9), rzVector<2>(-5, 2));
const rzXform<2> kHalf(rzMatrix<2>(0.5, 0, 0, 0.25), rzVector<2>(1, 1));
const rzXform<2> kSheared(rzMatrix<2>(1.0, 0.6, -0.2, 1.3), rzVector<2>(9, 3));

class EncloseRect : public testing::TestWithParam<Case> {};

TEST_P(EncloseRect, IsTheBoxOfAllThatDenseSamplingReaches) {
  constexpr double kRounding = 1e-9;
  constexpr double kSamplingGap = 2e-4;  // a turn of 0.0016 beside the extreme one, 50 units out
  const rzRect rect = enclose(GetParam());
  const Box box = sampledBox(GetParam());
  EXPECT_LE(rect.ul().x(), box.left + kRounding);
  EXPECT_LE(rect.ul().y(), box.top + kRounding);
  EXPECT_GE(rect.lr().x(), box.right - kRounding);
  EXPECT_GE(rect.lr().y(), box.bottom - kRounding);
  EXPECT_NEAR(rect.ul().x(), box.left, kSamplingGap);
  EXPECT_NEAR(rect.ul().y(), box.top, kSamplingGap);
  EXPECT_NEAR(rect.lr().x(), box.right, kSamplingGap);
  EXPECT_NEAR(rect.lr().y(), box.bottom, kSamplingGap);
}

INSTANTIATE_TEST_SUITE_P(
    Placements, EncloseRect,
    testing::Values(Case{"nothing_uncertain", kAside, kTurned, kSheared, 0, 0, 0, 0},
                    Case{"shift", kCentred, kIdentity, kIdentity, 2, 5, 0, 0},
                    Case{"shift_in_sheared_target", kCentred, kTurned, kSheared, 2, 5, 0, 0},
                    Case{"small_turn", kCentred, kIdentity, kIdentity, 0, 0, 0.05, 0},
                    Case{"small_turn_far_out", kAside, kTurned, kIdentity, 0, 0, 0.1, 0},
                    Case{"quarter_turn", kAside, kIdentity, kHalf, 0, 0, kRzHalfPi, 0},
                    Case{"half_turn", kTriangle, kMirrored, kIdentity, 0, 0, kRzPi, 0},
                    Case{"more_than_a_turn", kAside, kIdentity, kIdentity, 0, 0, 7.0, 0},
                    Case{"scale", kCentred, kIdentity, kIdentity, 0, 0, 0, 0.2},
                    Case{"scale_one_side_of_origin", kAside, kIdentity, kIdentity, 0, 0, 0, 0.2},
                    Case{"scale_down_to_nothing", kAside, kTurned, kIdentity, 0, 0, 0, 1.0},
                    Case{"scale_never_negative", kAside, kIdentity, kIdentity, 0, 0, 0, 1.5},
                    Case{"turn_and_scale", kAside, kMirrored, kSheared, 0, 0, 0.8, 0.3},
                    Case{"all", kTriangle, kMirrored, kSheared, 1.5, 0.5, 0.4, 0.25},
                    Case{"all_far_out", kAside, kTurned, kHalf, 0.2, 0.1, 2.0, 0.4},
                    Case{"one_point_at_origin", {{0, 0}}, kTurned, kHalf, 1, 2, 3, 0.5}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(EncloseRectExact, NoUncertaintyGivesTheBoxOfTheMappedCornersToTheBit) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> number(-20, 20);
  const auto xform = [&] {
    return rzXform<2>(rzMatrix<2>(number(random), number(random), number(random), number(random)),
                      rzVector<2>(number(random), number(random)));
  };
  for (int trial = 0; trial < 1000; ++trial) {
    const Case c{"", kAside, xform(), xform(), 0, 0, 0, 0};
    Box box;
    for (const auto& v : c.vertices) box.add(c.target.inverse() * c.composed * v);
    EXPECT_EQ(enclose(c), rzRect(box.left, box.top, box.right - box.left, box.bottom - box.top));
  }
}

TEST(EncloseRectExact, TargetTransformGivesClientFromTarget) {
  // Four target units to the client unit: the box is four times as large.
  const rzXform<2> target(rzMatrix<2>(0.25, 0, 0, 0.25), rzVector<2>());
  EXPECT_EQ(enclose({"", kCentred, kIdentity, target, 0, 0, 0, 0}), rzRect(-12, -16, 24, 32));
}

TEST(EncloseRectExact, UnlimitedShiftOfOneAxisLeavesTheOtherFinite) {
  const double unlimited = std::numeric_limits<double>::infinity();
  const rzRect rect = enclose({"", kCentred, kIdentity, kIdentity, unlimited, 0, 0, 0});
  EXPECT_EQ(rect.ul().x(), -unlimited);
  EXPECT_EQ(rect.ul().y(), -4);
  EXPECT_EQ(rect.height(), 8);
}

TEST(EncloseRectExact, TargetWithoutInverseIsRefused) {
  const rzXform<2> flat(rzMatrix<2>(1, 1, 1, 1), rzVector<2>());
  EXPECT_THROW(enclose({"", kCentred, kIdentity, flat, 0, 0, 0, 0}), rzMathError::Singular);
}

}  // namespace
