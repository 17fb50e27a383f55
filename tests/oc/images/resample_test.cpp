// SPDX-License-Identifier: Apache-2.0
#include "oc/images/resample.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "rz/pel_functions.h"
#include "support/noise.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

constexpr double kQuarter = std::numbers::pi / 2.0;
constexpr double kRounding = 1e-9;  // of coordinates of some hundreds

rzXform<2> frame(double turn, double scale, double x = 0.0, double y = 0.0) {
  return {rzMatrix<2>(rzRadian(turn), rzRadian(turn), scale, scale), rzVector<2>(x, y)};
}

Image onePel(const rzXform<2>& clientFromImage) {
  Image image = noise(rzPelRect(0, 0, 1, 1), 1);
  image.clientFromImageXform(clientFromImage);
  return image;
}

rzPelBuffer<unsigned char> runPicture(const rzXform<2>& clientFromImage) {
  rzPelBuffer<unsigned char> image = noise(rzPelRect(5, -3, 12, 8), 2);
  image.clientFromImageXform(clientFromImage);
  return image;
}

TEST(SamplingRectangle, HoldsTheRectangleAboutItsCentreForEveryTurn) {
  const rzPelRect rect(7, -9, 31, 12);
  for (int degrees = -180; degrees <= 180; degrees += 15) {
    const rzRadian turn = rzDegree(degrees);
    const rzAffineRectangle holder = rf_SamplingRectangle(rect, turn, turn);
    EXPECT_LT(holder.center().distance({22.5, -3.0}), kRounding);
    EXPECT_NEAR(std::remainder(holder.xRotation().toDouble() - turn.toDouble(), 4.0 * kQuarter),
                0.0, kRounding);
    const rzXform<2> unit = holder.affRectFromUnitSq().inverse();
    for (const rzPair<rzLong>& corner : {rect.ul(), rect.ur(), rect.ll(), rect.lr()}) {
      const rzVector<2> inside = unit * rzVector<2>(corner);
      EXPECT_GE(std::min(inside.x(), inside.y()), -kRounding) << degrees;
      EXPECT_LE(std::max(inside.x(), inside.y()), 1.0 + kRounding) << degrees;
    }
  }
  EXPECT_EQ(rf_SamplingRectangle(rect, rzRadian(0), rzRadian(0)), rzAffineRectangle(rect));
}

TEST(ResampleToMatch, GivesTheStepsOfTheTrainedImageAndKeepsTheClientFrame) {
  struct Case {
    const char* name;
    rzXform<2> train, run;
  };
  const rzXform<2> mirrored(rzMatrix<2>(1.0, 0.0, 0.0, -1.0), rzVector<2>(3, 4));
  const Case cases[] = {
      {"finer", frame(0.0, 0.5), frame(0.0, 1.0, 10, 20)},
      {"coarser", frame(0.0, 2.0), frame(0.0, 1.0)},
      {"turned", frame(0.4, 1.0), frame(-0.3, 1.5, 100, 7)},
      {"mirrored", mirrored, frame(0.2, 1.0)},
      {"sheared", {rzMatrix<2>(1.0, 0.3, 0.0, 1.2), {}}, frame(0.0, 1.0)},
  };
  for (const Case& c : cases) {
    rzPelBuffer<unsigned char> image = runPicture(c.run);
    rzPelBuffer<unsigned char> mask;
    const rzVector<2> middle = image.clientFromImageXform() * rzVector<2>(11, 1);
    rf_ResampleToMatch(onePel(c.train), image, mask);
    const rzMatrix<2> expected = c.train.matrix();
    const rzXform<2> actual = image.clientFromImageXform();
    EXPECT_TRUE(rfRealEq(rzXform<2>(actual.matrix(), {}), rzXform<2>(expected, {}), kRounding))
        << c.name;
    // The picture's middle is the middle of the grid.
    const rzVector<2> now = image.imageFromClientXform() * middle;
    EXPECT_NEAR(now.x(), 0.5 * image.width(), kRounding) << c.name;
    EXPECT_NEAR(now.y(), 0.5 * image.height(), kRounding) << c.name;
    ASSERT_TRUE(mask.isBound()) << c.name;
    EXPECT_EQ(mask.window(), image.window()) << c.name;
    EXPECT_EQ(*mask.pointToPel(image.width() / 2, image.height() / 2), 255) << c.name;
  }
}

TEST(ResampleToMatch, AGreyKeepsItsClientPlaceUnderEveryTurn) {
  // A ramp, which interpolation reproduces but for the rounding.
  rzPelBuffer<unsigned char> ramp(rzPelRect(5, -3, 12, 8), 32);
  const auto greyAt = [](const rzVector<2>& p) {
    return 10.0 * (p.x() - 5.0) + 7.0 * (p.y() + 3.0);
  };
  for (rzLong y = -3; y < 5; ++y) {
    for (rzLong x = 5; x < 17; ++x) {
      *ramp.pointToPel(x, y) = static_cast<unsigned char>(std::lround(greyAt({x + 0.5, y + 0.5})));
    }
  }
  for (const double turn : {0.0, 0.3, kQuarter, 2.0, -2.5}) {
    const rzXform<2> client = frame(turn, 1.5, 40, 30);
    rzPelBuffer<unsigned char> image = ramp;
    image.clientFromImageXform(client);
    rzPelBuffer<unsigned char> mask;
    rf_ResampleToMatch(onePel(frame(0.0, 1.0)), image, mask);
    int numCompared = 0;
    for (rzLong k = 0; k < image.width() * image.height(); ++k) {
      const rzPair<rzLong> pel(k % image.width(), k / image.width());
      const rzVector<2> place = client.inverse() * image.clientFromImageXform() *
                                (rzVector<2>(pel) + rzVector<2>(0.5, 0.5));
      if (place.x() < 7 || place.x() > 15 || place.y() < -1 || place.y() > 3) continue;
      EXPECT_NEAR(*image.pointToPel(pel.x(), pel.y()), greyAt(place), 1.5) << turn;
      EXPECT_EQ(*mask.pointToPel(pel.x(), pel.y()), 255);
      ++numCompared;
    }
    EXPECT_GT(numCompared, 50) << turn;
  }
}

TEST(ResampleToMatch, WhatTheTurnAddsAndWhatTheMaskLeavesOutIsZero) {
  rzPelBuffer<unsigned char> image = runPicture(frame(0.5, 1.0));
  rzPelBuffer<unsigned char> mask(image.window(), 32);
  rfPelSet(mask, 255);
  *mask.pointToPel(11, 1) = 0;
  const rzVector<2> hole = image.clientFromImageXform() * rzVector<2>(11.5, 1.5);
  rf_ResampleToMatch(onePel(frame(0.0, 1.0)), image, mask);
  EXPECT_EQ(*mask.pointToPel(0, 0), 0);
  const rzVector<2> now = image.imageFromClientXform() * hole;
  EXPECT_EQ(*mask.pointToPel(static_cast<rzLong>(now.x()), static_cast<rzLong>(now.y())), 0);
  for (rzLong y = 0; y < mask.height(); ++y) {
    for (rzLong x = 0; x < mask.width(); ++x) EXPECT_TRUE(*mask.pointToPel(x, y) % 255 == 0);
  }
}

}  // namespace
