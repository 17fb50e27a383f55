// SPDX-License-Identifier: Apache-2.0
#include "rz/sampling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "rz/math_error.h"
#include "rz/xform_radial.h"
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

Image renumbered(Image image, rzLong x, rzLong y) {
  image.offset({x, y});
  return image;
}

// The corners of a window in a cyclic order, from any of them.
rzAffineRectangle fromCorner(const rzPelRect& rect, int corner) {
  const rzVector<2> corners[] = {rect.ul(), rect.ur(), rect.lr(), rect.ll()};
  return {corners[corner], corners[(corner + 1) % 4], corners[(corner + 3) % 4]};
}

class SamplingOfAWindow : public testing::TestWithParam<rzPelRect> {};

TEST_P(SamplingOfAWindow, GivesTheWindowAgainAndDoesNotClip) {
  const Image image = noise(GetParam());
  for (const auto interpolation : kAll) {
    const Params params(rzAffineRectangle(GetParam()), image.width(), image.height(),
                        interpolation);
    EXPECT_FALSE(params.willClip(image));
    EXPECT_THAT(rfAffineTransformImage(image, params), ShowsTheSameAs(renumbered(image, 0, 0)));
  }
}

TEST_P(SamplingOfAWindow, TurnedByQuartersMovesPelsAndChangesNone) {
  const Image image = noise(GetParam());
  const rzPelRect window = GetParam();
  const rzLong w = window.width();
  const rzLong h = window.height();
  for (const auto interpolation : kAll) {
    const auto sampledFrom = [&](int corner, rzLong nx, rzLong ny) {
      return rfAffineTransformImage(image,
                                    Params(fromCorner(window, corner), nx, ny, interpolation));
    };
    const auto pel = [&](rzLong x, rzLong y) {
      return *image.pointToPel(window.x() + x, window.y() + y);
    };
    EXPECT_THAT(
        sampledFrom(1, h, w),
        ShowsTheSameAs(drawn({0, 0, h, w}, [&](rzLong x, rzLong y) { return pel(w - 1 - y, x); })));
    EXPECT_THAT(sampledFrom(2, w, h), ShowsTheSameAs(drawn({0, 0, w, h}, [&](rzLong x, rzLong y) {
                  return pel(w - 1 - x, h - 1 - y);
                })));
    EXPECT_THAT(
        sampledFrom(3, h, w),
        ShowsTheSameAs(drawn({0, 0, h, w}, [&](rzLong x, rzLong y) { return pel(y, h - 1 - x); })));
  }
}

INSTANTIATE_TEST_SUITE_P(, SamplingOfAWindow,
                         testing::Values(rzPelRect(0, 0, 8, 6), rzPelRect(0, 0, 7, 5),
                                         rzPelRect(-31, 1003, 9, 12), rzPelRect(5, 5, 1, 1),
                                         rzPelRect(3, 0, 113, 1)));

TEST(Sampling, FrameOfTheSourceIsCarriedBack) {
  Image image = noise({10, 20, 9, 7});
  image.clientFromImageXform(
      rzXform<2>(rzMatrix<2>(rzDegree(33), rzDegree(37), 2.5, 0.7), rzVector<2>(-100, 40)));
  const Params params(rzAffineRectangle(image.window()).map(image.clientFromImageXform()), 9, 7);
  EXPECT_FALSE(params.willClip(image));
  EXPECT_THAT(rfAffineTransformImage(image, params), ShowsTheSameAs(renumbered(image, 0, 0)));
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

TEST(Sampling, BentFrameIsFollowedPointByPoint) {
  Image image = drawn({0, 0, 60, 50}, [](rzLong x, rzLong y) { return 2 * x + y; });
  image.clientFromImageXformBase(new rz2XformRadial(rzVector<2>(30, 25), 1e-4), true);
  const Params params(rzAffineRectangle(rzVector<2>(10, 8), 40, 34, rzRadian(0), rzRadian(0)), 20,
                      17);
  ASSERT_FALSE(params.willClip(image));
  const Image sampled = rfAffineTransformImage(image, params);
  const auto imageFromClient = image.imageFromClientXformBase();
  for (rzLong y = 0; y < 17; ++y) {
    for (rzLong x = 0; x < 20; ++x) {
      const rzVector<2> client(10 + 2 * (x + 0.5), 8 + 2 * (y + 0.5));
      const rzVector<2> place = imageFromClient->mapPoint(client);
      EXPECT_NEAR(*sampled.pointToPel(x, y), 2 * (place.x() - 0.5) + place.y() - 0.5, 0.5 + 1e-6);
    }
  }
  EXPECT_EQ(sampled.clientFromImageXform() * rzVector<2>(20, 17), rzVector<2>(50, 42));
}

TEST(Sampling, HalvesAreRoundedUp) {
  const Image image = drawn({0, 0, 2, 1}, [](rzLong x, rzLong) { return x == 0 ? 10 : 11; });
  const Params params(rzAffineRectangle(rzVector<2>(0.5, 0), 1, 1, rzRadian(0), rzRadian(0)), 1, 1);
  EXPECT_EQ(*rfAffineTransformImage(image, params).pointToPel(0, 0), 11);
}

TEST(Sampling, BicubicOvershootIsCutAtBothEnds) {
  const Image image = drawn({0, 0, 12, 4}, [](rzLong x, rzLong) { return x < 6 ? 0 : 255; });
  const Params params(rzAffineRectangle(image.window()), 36, 4, Params::eBicubic);
  const Image sampled = rfAffineTransformImage(image, params);
  // 1/3 pel outside the two pels of the step a plain sum would give -19 and 274.
  EXPECT_EQ(*sampled.pointToPel(15, 1), 0);
  EXPECT_EQ(*sampled.pointToPel(20, 1), 255);
}

TEST(Sampling, ConstantPicturesStayConstantAlsoBeyondTheirBorder) {
  const Image image = flat({0, 0, 5, 5}, 137);
  const rzAffineRectangle rectangle(rzVector<2>(-4, 2), 11, 13, rzDegree(-27), rzDegree(12));
  for (const auto interpolation : kAll) {
    const Image sampled = rfAffineTransformImage(image, Params(rectangle, 19, 23, interpolation));
    EXPECT_EQ(rfPelMin(sampled), 137);
    EXPECT_EQ(rfPelMax(sampled), 137);
  }
}

TEST(Sampling, BeyondTheWindowTheNearestPelIsRepeatedThoughTheRootGoesOn) {
  Image image = noise({0, 0, 9, 9});
  image.window(rzPelRect(3, 3, 3, 3), false);
  const Params params(rzAffineRectangle(rzPelRect(0, 0, 9, 9)), 9, 9, Params::eNearest);
  EXPECT_TRUE(params.willClip(image));
  EXPECT_THAT(rfAffineTransformImage(image, params),
              ShowsTheSameAs(drawn({0, 0, 9, 9}, [&](rzLong x, rzLong y) {
                return *image.pointToPel(std::clamp(x, 3, 5), std::clamp(y, 3, 5));
              })));
}

struct ClipCase {
  const char* name;
  Params::Interpolation interpolation;
  double x;  // of a rectangle of 6 by 4 units at y = 3, sampled once to the unit
  bool clips;
};

class Clipping : public testing::TestWithParam<ClipCase> {};

// The window goes from 0 to 10. Samples lie at x + 0.5 to x + 5.5.
TEST_P(Clipping, TellsWhetherAPelOutsideIsNeeded) {
  const Image image(rzPelRect(0, 0, 10, 10), 32);
  const rzAffineRectangle rectangle(rzVector<2>(GetParam().x, 3), 6, 4, rzRadian(0), rzRadian(0));
  EXPECT_EQ(Params(rectangle, 6, 4, GetParam().interpolation).willClip(image), GetParam().clips);
  // The same, mirrored at the diagonal.
  const rzAffineRectangle turned(rzVector<2>(3, GetParam().x), rzVector<2>(7, GetParam().x),
                                 rzVector<2>(3, GetParam().x + 6));
  EXPECT_EQ(Params(turned, 4, 6, GetParam().interpolation).willClip(image), GetParam().clips);
}

INSTANTIATE_TEST_SUITE_P(
    , Clipping,
    testing::Values(ClipCase{"nearest_on_the_left_border", Params::eNearest, -0.5, false},
                    ClipCase{"nearest_beyond_the_left_border", Params::eNearest, -0.50001, true},
                    ClipCase{"nearest_before_the_right_border", Params::eNearest, 4.49999, false},
                    ClipCase{"nearest_on_the_right_border", Params::eNearest, 4.5, true},
                    ClipCase{"bilinear_on_the_first_centre", Params::eBilinear, 0, false},
                    ClipCase{"bilinear_within_tolerance", Params::eBilinear, -9e-7, false},
                    ClipCase{"bilinear_beyond_tolerance", Params::eBilinear, -2e-6, true},
                    ClipCase{"bilinear_on_the_last_centre", Params::eBilinear, 4, false},
                    ClipCase{"bilinear_past_the_last_centre", Params::eBilinear, 4.01, true},
                    ClipCase{"bicubic_on_the_first_centre", Params::eBicubic, 0, false},
                    ClipCase{"bicubic_between_the_first_two", Params::eBicubic, 0.5, true},
                    ClipCase{"bicubic_between_second_and_third", Params::eBicubic, 1.5, false},
                    ClipCase{"bicubic_before_the_last_two", Params::eBicubic, 2.9, false},
                    ClipCase{"bicubic_between_the_last_two", Params::eBicubic, 3.5, true},
                    ClipCase{"far_out", Params::eBilinear, 1e12, true}),
    [](const auto& param) { return param.param.name; });

// Corner samples on the outermost centres need one pel each; those between them need four.
TEST(Sampling, BicubicClipsByInnerSamplesToo) {
  const Image image(rzPelRect(0, 0, 10, 10), 32);
  const rzAffineRectangle rectangle(rzVector<2>(0.25, 0.25), 9.5, 9.5, rzRadian(0), rzRadian(0));
  EXPECT_TRUE(Params(rectangle, 19, 19, Params::eBicubic).willClip(image));
  EXPECT_FALSE(Params(rectangle, 19, 19, Params::eBilinear).willClip(image));
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

TEST(Sampling, ImpossibleRequestsAreRefused) {
  const rzAffineRectangle rectangle(rzPelRect(0, 0, 4, 4));
  const rzAffineRectangle endless(rzVector<2>(), rzVector<2>(NAN, 0), rzVector<2>(0, 1));
  EXPECT_THROW(Params(rectangle, 0, 4), rzAffineSamplingDefs::BadParams);
  EXPECT_THROW(Params(rectangle, 4, -1), rzAffineSamplingDefs::BadParams);
  EXPECT_THROW(Params(endless, 4, 4), rzAffineSamplingDefs::BadParams);
  EXPECT_THROW(Params(rectangle, 4, 4, static_cast<Params::Interpolation>(4)),
               rzAffineSamplingDefs::BadParams);
  Params params(rectangle, 4, 4, Params::eBicubic);
  EXPECT_THROW(params.interpolation(static_cast<Params::Interpolation>(0)),
               rzAffineSamplingDefs::BadParams);
  EXPECT_EQ(params.interpolation(), Params::eBicubic);
  EXPECT_THROW(params.willClip(ImageView()), rzPel::UnboundWindow);
  EXPECT_THROW(rfAffineTransformImage(ImageView(), params), rzPel::UnboundWindow);
}

TEST(Sampling, OutputStaysWhenTheRectangleHasNoArea) {
  const Image image = noise({0, 0, 4, 4});
  Image out = flat({0, 0, 2, 2}, 5);
  const Image before = out;
  const Params params(rzAffineRectangle(rzVector<2>(), 4, 0, rzRadian(0), rzRadian(0)), 4, 4);
  EXPECT_THROW(rfAffineTransformImage(image, out, params), rzMathError::Singular);
  EXPECT_TRUE(out.sharesRoot(before));
}

}  // namespace
