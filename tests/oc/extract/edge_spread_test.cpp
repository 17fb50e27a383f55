// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/edge_spread.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>
#include <string>
#include <utility>

#include "support/draw.h"

namespace {

// Directions of 256 to the turn, each with how many edgelets have it.
using Counts = std::initializer_list<std::pair<int, int>>;

std::vector<unsigned char> directions(Counts counts) {
  std::vector<unsigned char> all;
  for (const auto& [direction, count] : counts) {
    all.insert(all.end(), static_cast<std::size_t>(count), static_cast<unsigned char>(direction));
  }
  return all;
}

struct Case {
  std::string name;
  std::vector<unsigned char> directions;
  EdgeVerdict verdict;
  double spread;
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

class EdgeDirections : public testing::TestWithParam<Case> {};

TEST_P(EdgeDirections, AreJudgedByCountAndDominantWindow) {
  const EdgeSpread edges = judgeDirections(GetParam().directions);
  EXPECT_EQ(edges.verdict, GetParam().verdict);
  EXPECT_EQ(edges.spread, GetParam().spread);
}

constexpr EdgeVerdict kUsable = EdgeVerdict::kUsable;
constexpr EdgeVerdict kTooParallel = EdgeVerdict::kTooParallel;

INSTANTIATE_TEST_SUITE_P(
    Tables, EdgeDirections,
    testing::Values(
        Case{"nothing", {}, EdgeVerdict::kTooFew, 0.0},
        Case{"one_below_the_fewest", directions({{0, 8}, {40, 8}, {80, 8}}), EdgeVerdict::kTooFew,
             0.0},
        Case{"just_the_fewest", directions({{0, 9}, {40, 8}, {80, 8}}), kUsable, 16.0},
        Case{"exactly_half_in_one_direction", directions({{60, 20}, {0, 10}, {90, 10}}), kUsable,
             20.0},
        Case{"one_more_than_half", directions({{60, 21}, {0, 10}, {90, 9}}), kTooParallel, 0.0},
        Case{"more_than_half_in_the_first_window", directions({{7, 21}, {60, 10}, {90, 9}}),
             kTooParallel, 0.0},
        Case{"opposite_directions_are_one", directions({{10, 11}, {138, 11}, {60, 9}, {90, 9}}),
             kTooParallel, 0.0},
        Case{"window_of_fifteen_steps", directions({{20, 15}, {34, 15}, {90, 20}}), kTooParallel,
             0.0},
        Case{"sixteen_steps_are_two_windows", directions({{20, 15}, {35, 15}, {90, 20}}), kUsable,
             30.0},
        Case{"window_wraps_around", directions({{120, 15}, {6, 15}, {60, 20}}), kTooParallel, 0.0},
        Case{"wrapping_window_has_fifteen_steps_too", directions({{119, 15}, {6, 15}, {60, 20}}),
             kUsable, 30.0},
        Case{"last_window_starts_at_the_last_bin", directions({{127, 15}, {13, 15}, {60, 20}}),
             kTooParallel, 0.0}),
    [](const auto& test) { return test.param.name; });

struct Drawn {
  std::string name;
  draw::Shape shape;
  EdgeVerdict verdict;
};

void PrintTo(const Drawn& c, std::ostream* os) { *os << c.name; }

class DrawnEdges : public testing::TestWithParam<Drawn> {};

TEST_P(DrawnEdges, TellHowWellTheShapeIsPinnedDown) {
  rzPelBuffer<unsigned char> image = draw::paper(40, 50);
  draw::fill(image, GetParam().shape, rzXform<2>({}, rzVector<2>(20, 25)));
  EXPECT_EQ(judgeEdges(image).verdict, GetParam().verdict);

  double spread = -1.0;
  const bool isPoor = rf_HasPoorEdgeSpread(image, nullptr, 0, &spread);
  EXPECT_EQ(isPoor, GetParam().verdict != kUsable);
  EXPECT_EQ(spread > 0.0, !isPoor);
}

INSTANTIATE_TEST_SUITE_P(Shapes, DrawnEdges,
                         testing::Values(Drawn{"nothing", draw::together({}), EdgeVerdict::kTooFew},
                                         Drawn{"bar", draw::bar(), kTooParallel},
                                         Drawn{"ring", draw::letterO(), kUsable},
                                         Drawn{"K", draw::letterK(), kUsable},
                                         Drawn{"R", draw::letterR(), kUsable}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
