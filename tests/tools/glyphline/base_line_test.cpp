// SPDX-License-Identifier: Apache-2.0
#include "base_line.h"

#include <gtest/gtest.h>

namespace {

using glyphline::BaseLine;

TEST(BaseLine, LetsDescendersHangBelowAndDashesStandAbove) {
  // a p - x g y o on a line that falls by a pel in twenty
  std::vector<rzRect> boxes;
  const rzLong drops[] = {0, 5, -6, 0, 5, 0, 0};
  for (rzLong i = 0; i < 7; ++i) {
    const rzLong foot = 100 + i + drops[i];
    boxes.emplace_back(20 * i, foot - 12, 10, 12);
  }
  const BaseLine line = glyphline::fitBaseLine(boxes);
  EXPECT_NEAR(line.slope, 0.05, 0.005);
  EXPECT_NEAR(line.at(5.0), 100.0, 0.5);
  EXPECT_NEAR(line.at(125.0), 106.0, 0.5);
}

TEST(BaseLine, OfOneBoxIsItsFoot) {
  EXPECT_EQ(glyphline::fitBaseLine({rzRect(3, 4, 5, 6)}).at(77.0), 10.0);
}

TEST(PrintedLines, AreToldApartAndRunFromLeftToRight) {
  const std::vector<rzRect> boxes{{40, 0, 10, 20},  {0, 30, 10, 20}, {0, 1, 10, 20},
                                  {20, 32, 10, 18}, {20, 12, 4, 8},  {500, 0, 10, 20}};
  const std::vector<std::vector<std::size_t>> lines = glyphline::printedLines(boxes);
  const std::vector<std::vector<std::size_t>> expected{{1, 3}, {2, 4, 0}, {5}};
  EXPECT_EQ(lines, expected);
}

}  // namespace
