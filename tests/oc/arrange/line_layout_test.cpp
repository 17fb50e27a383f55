// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/line_layout.h"

#include <gmock/gmock.h>

#include "scene.h"

namespace {

constexpr double kTolerance = 1e-12;
const rzRadian kUnturned(0.0);

rz_CharData box(double width, double height) {
  rz_CharData data;
  data.imageArea(
      rzAffineRectangle(rzVector<2>(0, 0), rzVector<2>(width, 0), rzVector<2>(0, height)));
  return data;
}

// Free space before each box but the first, when the boxes stand upright on the x axis.
std::vector<double> freeSpaces(const std::vector<double>& coords,
                               const std::vector<double>& widths) {
  std::vector<double> spaces;
  for (std::size_t k = 1; k < coords.size(); ++k) {
    spaces.push_back(coords[k] - coords[k - 1] - 0.5 * (widths[k] + widths[k - 1]));
  }
  return spaces;
}

TEST(StraightLayout, KeepsTheEndsAndEvensTheFreeSpace) {
  const std::vector<rz_CharData> chars = {box(1, 1), box(10, 20), box(4, 20), box(30, 20),
                                          box(6, 20)};
  const std::vector<double> widths = {10, 4, 30, 6};
  std::vector<double> coords;
  // Positions 1 to 4, the third of them unmatched; the middle one stands off its place.
  rf_LayOutStraightLine(rzLine(kUnturned, {100, 5}), {{110, 5}, {150, 9}, {190, 5}},
                        {kUnturned, kUnturned, kUnturned}, true, kUnturned, chars,
                        {kUnmatched, 0, 0, kUnmatched, 0}, 1, 4, coords);
  ASSERT_EQ(coords.size(), 4u);
  EXPECT_EQ(coords.front(), 10);
  EXPECT_EQ(coords.back(), 90);
  for (const double space : freeSpaces(coords, widths)) EXPECT_NEAR(space, 38.0 / 3, kTolerance);
}

// On a line that runs down, an unmatched character lies across it when the average of the others
// is taken in the client frame, and stands upright when it is taken against the line.
TEST(StraightLayout, UnmatchedCharactersTurnWithTheAverage) {
  const rzLine down(rzDegree(90), {0, 0});
  const std::vector<rz_CharData> chars(4, box(10, 20));
  for (const bool isRelative : {true, false}) {
    std::vector<double> coords;
    rf_LayOutStraightLine(down, {{0, 0}, {0, 40}, {0, 100}}, {kUnturned, kUnturned, kUnturned},
                          isRelative, kUnturned, chars, {0, 0, kUnmatched, 0}, 0, 3, coords);
    const double third = isRelative ? 10 : 20;
    for (const double space : freeSpaces(coords, {20, 20, third, 20})) {
      EXPECT_NEAR(space, (100 - 40 - third) / 3, kTolerance);
    }
  }
}

TEST(CircularLayout, WideCharactersTakeMoreOfTheArc) {
  const std::vector<rz_CharData> chars = {box(10, 20), box(30, 20), box(10, 20), box(10, 20)};
  const std::vector<rzRadian> angles = {rzDegree(90), rzDegree(110), rzDegree(130), rzDegree(150)};
  std::vector<double> coords;
  rf_LayOutCircularLine(rzCircle({0, 0}, 100), kUnturned, rzDegree(60), std::vector<rzVector<2>>(4),
                        angles, true, kUnturned, chars, {0, 0, 0, 0}, 0, 3, coords);
  EXPECT_EQ(coords.front(), 0);
  EXPECT_EQ(coords.back(), rzRadian(rzDegree(60)).toDouble());
  // Steps are half of both widths and an equal share of what is left.
  EXPECT_NEAR(coords[1] - coords[2] + (coords[3] - coords[2]), -0.1, 1e-9);
}

}  // namespace
