// SPDX-License-Identifier: Apache-2.0
#include "rz/threshold.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "rz/pel_error.h"
#include "rz/pel_functions.h"

namespace {

using Greys = std::vector<unsigned char>;
using Image = rzPelBuffer_const<unsigned char>;

Image row(const Greys& greys) {
  const auto width = static_cast<rzLong>(greys.size());
  return rfPelBufferFromPels(greys.data(), width, 1, width);
}

rzThresholdResult threshold(const Image& image, const Image& mask = Image()) {
  rzThresholdResult result(-1, -1.0);
  rfThresholdWGV(image, mask, result);
  return result;
}

TEST(Threshold, LevelsOfSmallPictures) {
  struct {
    const char* name;
    Greys greys;
    rzLong threshold;
    double score;
  } const cases[] = {
      {"flat", {77, 77, 77}, 77, 0.0},
      {"two greys: middle of 11 to 100", {10, 100, 100}, 55, 1.0},
      {"neighbouring greys", {7, 8}, 8, 1.0},
      {"three greys, two equal splits: middle of both", {0, 100, 200}, 100, 0.75},
      {"two clusters", {0, 2, 10, 12}, 6, 1.0 - 4.0 / 104.0},
  };
  for (const auto& c : cases) {
    const rzThresholdResult result = threshold(row(c.greys));
    EXPECT_EQ(result.threshold(), c.threshold) << c.name;
    EXPECT_DOUBLE_EQ(result.score(), c.score) << c.name;
  }
}

TEST(Threshold, PelsOfTheWindowUnderAMaskOf128OrMoreCountByNumber) {
  const Image image = row({0, 50, 90, 255});
  EXPECT_EQ(threshold(image, row({127, 128, 255, 0})).threshold(), 70);
  EXPECT_EQ(threshold(image, row({0, 1, 64, 127})).threshold(), 0);
  EXPECT_EQ(threshold(image, row({0, 1, 64, 127})).score(), 0.0);
  Image mask = row({255, 255});
  mask.offset(rzPair<rzLong>(1, 0));
  EXPECT_EQ(threshold(image, mask).threshold(), 70);
  mask.offset(rzPair<rzLong>(3, 0));
  EXPECT_EQ(threshold(image, mask).threshold(), 255);
  Image nothing = image;
  nothing.window(rzPelRect(9, 9, 1, 1), true);
  EXPECT_EQ(threshold(nothing, row({255, 255, 255})).threshold(), 0);
  EXPECT_THROW(threshold(Image(), row({1, 2})), rzPel::UnboundWindow);
}

// Within-group variance of the split at `t`, straight from its definition.
double withinVariance(const Greys& greys, rzLong t) {
  double sum[2] = {}, n[2] = {}, within = 0.0;
  for (const unsigned char g : greys) {
    sum[g >= t] += g;
    n[g >= t] += 1.0;
  }
  if (n[0] == 0.0 || n[1] == 0.0) return std::numeric_limits<double>::infinity();
  for (const unsigned char g : greys) {
    const double d = g - sum[g >= t] / n[g >= t];
    within += d * d;
  }
  return within / static_cast<double>(greys.size());
}

TEST(Threshold, NoOtherLevelDividesRandomPicturesBetter) {
  std::mt19937 random(4711);
  for (int trial = 0; trial < 200; ++trial) {
    std::normal_distribution<double> dark(60.0, 1.0 + trial % 40), light(170.0, 25.0);
    Greys greys;
    for (int i = 0; i < 90; ++i) {
      const double g = i % 3 == 0 ? dark(random) : light(random);
      greys.push_back(static_cast<unsigned char>(std::clamp(g, 0.0, 255.0)));
    }
    const double found = withinVariance(greys, threshold(row(greys)).threshold());
    for (rzLong t = 0; t <= 256; ++t) EXPECT_LE(found, withinVariance(greys, t) + 1e-9) << trial;
  }
}

}  // namespace
