// SPDX-License-Identifier: Apache-2.0
#include "rz/sampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "rz/math_error.h"
#include "tests/platform/foundation/pels/pictures.h"

namespace {

using pictures::drawn;
using pictures::flat;
using pictures::Image;
using pictures::ImageView;
using pictures::noise;
using pictures::ShowsTheSameAs;
using Params = rzAffineSamplingParams;

constexpr Params::Interpolation kAll[] = {Params::eNearest, Params::eBilinear, Params::eBicubic};

// The corners of a window in a cyclic order, from any of them.
rzAffineRectangle fromCorner(const rzPelRect& rect, int corner) {
  const rzVector<2> corners[] = {rect.ul(), rect.ur(), rect.lr(), rect.ll()};
  return {corners[corner], corners[(corner + 1) % 4], corners[(corner + 3) % 4]};
}

constexpr rzPelRect kWindows[] = {{0, 0, 8, 6}, {-31, 1003, 9, 12}, {5, 5, 1, 1}, {3, 0, 113, 1}};

TEST(Sampling, WindowTurnedByQuartersMovesPelsAndChangesNone) {
  for (const rzPelRect& window : kWindows) {
    const Image image = noise(window);
    const rzLong w = window.width();
    const rzLong h = window.height();
    const auto pel = [&](rzLong x, rzLong y) {
      return *image.pointToPel(window.x() + x, window.y() + y);
    };
    const Image turned[] = {
        drawn({0, 0, w, h}, pel),
        drawn({0, 0, h, w}, [&](rzLong x, rzLong y) { return pel(w - 1 - y, x); }),
        drawn({0, 0, w, h}, [&](rzLong x, rzLong y) { return pel(w - 1 - x, h - 1 - y); }),
        drawn({0, 0, h, w}, [&](rzLong x, rzLong y) { return pel(y, h - 1 - x); })};
    for (const auto interpolation : kAll) {
      for (int corner = 0; corner < 4; ++corner) {
        const Image& expected = turned[corner];
        const Params params(fromCorner(window, corner), expected.width(), expected.height(),
                            interpolation);
        EXPECT_FALSE(params.willClip(image));
        EXPECT_THAT(rfAffineTransformImage(image, params), ShowsTheSameAs(expected));
      }
    }
  }
}

// A plane of grey is reproduced by bilinear and bicubic interpolation, so the grey of each sample
// tells where it was taken.
TEST(Sampling, WhatIsSeenKeepsItsClientCoordinates) {
  Image image = drawn({0, 0, 60, 50}, [](rzLong x, rzLong y) { return 2 * x + y; });
  image.clientFromImageXform(
      rzXform<2>(rzMatrix<2>(rzDegree(20), rzDegree(25), 3.0, 2.0), rzVector<2>(7, -9)));
  const rzAffineRectangle rectangle =
      rzAffineRectangle(rzVector<2>(20, 15), 24, 20, rzDegree(30), rzDegree(-8))
          .map(image.clientFromImageXform());
  for (const auto interpolation : {Params::eBilinear, Params::eBicubic}) {
    const Params params(rectangle, 17, 13, interpolation);
    ASSERT_FALSE(params.willClip(image));
    const Image sampled = rfAffineTransformImage(image, params);
    const rzXform<2> imageFromSamples =
        image.imageFromClientXform() * sampled.clientFromImageXform();
    for (rzLong y = 0; y < 13; ++y) {
      for (rzLong x = 0; x < 17; ++x) {
        const rzVector<2> place = imageFromSamples * rzVector<2>(x + 0.5, y + 0.5);
        const double expected = 2 * (place.x() - 0.5) + (place.y() - 0.5);
        EXPECT_NEAR(*sampled.pointToPel(x, y), expected, 0.5 + 1e-6);
      }
    }
  }
}

TEST(Sampling, HalvesAreRoundedUpAndBicubicOvershootIsCut) {
  const Image pair = drawn({0, 0, 2, 1}, [](rzLong x, rzLong) { return x == 0 ? 10 : 11; });
  const Params params(rzAffineRectangle(rzVector<2>(0.5, 0), 1, 1, rzRadian(0), rzRadian(0)), 1, 1);
  EXPECT_EQ(*rfAffineTransformImage(pair, params).pointToPel(0, 0), 11);

  const Image image = drawn({0, 0, 12, 4}, [](rzLong x, rzLong) { return x < 6 ? 0 : 255; });
  const Params finer(rzAffineRectangle(image.window()), 36, 4, Params::eBicubic);
  const Image sampled = rfAffineTransformImage(image, finer);
  // 1/3 pel outside the two pels of the step a plain sum would give -19 and 274.
  EXPECT_EQ(*sampled.pointToPel(15, 1), 0);
  EXPECT_EQ(*sampled.pointToPel(20, 1), 255);
}

// Samples on pel centres are those pels, however they are interpolated.
TEST(Sampling, BeyondTheWindowTheNearestPelIsRepeatedThoughTheRootGoesOn) {
  Image image = noise({0, 0, 9, 9});
  image.window(rzPelRect(3, 3, 3, 3), false);
  const Image expected = drawn({0, 0, 9, 9}, [&](rzLong x, rzLong y) {
    return *image.pointToPel(std::clamp(x, 3, 5), std::clamp(y, 3, 5));
  });
  for (const auto interpolation : kAll) {
    const Params params(rzAffineRectangle(rzPelRect(0, 0, 9, 9)), 9, 9, interpolation);
    EXPECT_TRUE(params.willClip(image));
    EXPECT_THAT(rfAffineTransformImage(image, params), ShowsTheSameAs(expected));
  }
}

// The window goes from 0 to 10; samples of a rectangle of 6 units at x lie at x + 0.5 to x + 5.5.
TEST(Sampling, ClippingTellsWhetherAPelOutsideIsNeeded) {
  struct {
    const char* name;
    Params::Interpolation interpolation;
    double x;
    bool clips;
  } const cases[] = {{"nearest on the left border", Params::eNearest, -0.5, false},
                     {"nearest beyond the left border", Params::eNearest, -0.50001, true},
                     {"nearest before the right border", Params::eNearest, 4.49999, false},
                     {"nearest on the right border", Params::eNearest, 4.5, true},
                     {"bilinear within tolerance", Params::eBilinear, -9e-7, false},
                     {"bilinear beyond tolerance", Params::eBilinear, -2e-6, true},
                     {"bilinear on the last centre", Params::eBilinear, 4, false},
                     {"bicubic on the first centre", Params::eBicubic, 0, false},
                     {"bicubic between the first two", Params::eBicubic, 0.5, true},
                     {"far out", Params::eBilinear, 1e12, true}};
  const Image image(rzPelRect(0, 0, 10, 10), 32);
  for (const auto& c : cases) {
    const rzAffineRectangle across(rzVector<2>(c.x, 3), 6, 4, rzRadian(0), rzRadian(0));
    EXPECT_EQ(Params(across, 6, 4, c.interpolation).willClip(image), c.clips) << c.name;
    const rzAffineRectangle down({3, c.x}, {7, c.x}, {3, c.x + 6});
    EXPECT_EQ(Params(down, 4, 6, c.interpolation).willClip(image), c.clips) << c.name;
  }
}

// The quick answer from the corners against the plain rule, sample by sample.
TEST(Sampling, ClippingAgreesWithThePelsThatEachSampleNeeds) {
  const Image image(rzPelRect(-4, 6, 24, 20), 32);
  const auto needs = [&](const rzAffineRectangle& r, rzLong nx, rzLong ny, double below,
                         double above) {
    for (rzLong j = 0; j < ny; ++j) {
      for (rzLong i = 0; i < nx; ++i) {
        const rzVector<2> p = r.affRectFromUnitSq() * rzVector<2>((i + 0.5) / nx, (j + 0.5) / ny);
        const double x = std::floor(p.x() - 0.5);
        const double y = std::floor(p.y() - 0.5);
        if (x - below < -4 || x + above > 19 || y - below < 6 || y + above > 25) return true;
      }
    }
    return false;
  };
  std::mt19937 random(7);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  int clipped = 0;
  for (int k = 0; k < 2000; ++k) {
    rzAffineRectangle rectangle(rzVector<2>(), 8 + 10 * unit(random), 8 + 8 * unit(random),
                                rzRadian(7 * unit(random)), rzRadian(unit(random) - 0.5));
    rectangle.center({8 + 4 * (unit(random) - 0.5), 16 + 4 * (unit(random) - 0.5)});
    const bool bilinear = needs(rectangle, 9, 8, 0, 1);
    EXPECT_EQ(Params(rectangle, 9, 8, Params::eBilinear).willClip(image), bilinear);
    EXPECT_EQ(Params(rectangle, 9, 8, Params::eBicubic).willClip(image),
              needs(rectangle, 9, 8, 1, 2));
    clipped += bilinear ? 1 : 0;
  }
  EXPECT_GT(clipped, 200);
  EXPECT_LT(clipped, 1800);
}

TEST(Sampling, ImpossibleRequestsAreRefusedWithoutChange) {
  const rzAffineRectangle rectangle(rzPelRect(0, 0, 4, 4));
  const rzAffineRectangle endless(rzVector<2>(), rzVector<2>(NAN, 0), rzVector<2>(0, 1));
  EXPECT_THROW(Params(rectangle, 0, 4), rzAffineSamplingDefs::BadParams);
  EXPECT_THROW(Params(rectangle, 4, -1), rzAffineSamplingDefs::BadParams);
  EXPECT_THROW(Params(endless, 4, 4), rzAffineSamplingDefs::BadParams);
  EXPECT_THROW(Params(rectangle, 4, 4, static_cast<Params::Interpolation>(4)),
               rzAffineSamplingDefs::BadParams);
  Params params(rectangle, 4, 4, Params::eBicubic);
  EXPECT_THROW(params.willClip(ImageView()), rzPel::UnboundWindow);
  EXPECT_THROW(rfAffineTransformImage(ImageView(), params), rzPel::UnboundWindow);
  Image out = flat({0, 0, 2, 2}, 5);
  const Image before = out;
  const Params noArea(rzAffineRectangle(rzVector<2>(), 4, 0, rzRadian(0), rzRadian(0)), 4, 4);
  EXPECT_THROW(rfAffineTransformImage(noise({0, 0, 4, 4}), out, noArea), rzMathError::Singular);
  EXPECT_TRUE(out.sharesRoot(before));
}

}  // namespace
