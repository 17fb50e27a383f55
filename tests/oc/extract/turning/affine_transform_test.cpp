// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/turning/affine_transform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "rz/rect.h"
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
constexpr double kRounding = 1e-9;  // of coordinates below 1000, with room

Image turned(const ImageView& image, double degrees, double scale,
             Params::Interpolation interpolation = Params::eBilinear) {
  Image out;
  rf_AffineTransform(image, rzDegree(degrees), scale, out, interpolation);
  return out;
}

// Columns (or rows) of a window as a reflection sees them: -1 is 0, -2 is 1; size is size - 1.
rzLong mirrored(rzLong index, rzLong size) {
  const rzLong inside = index < 0 ? -1 - index : index >= size ? 2 * size - 1 - index : index;
  return std::clamp(inside, rzLong{0}, size - 1);
}

TEST(AffineTransform, UnturnedAndUnscaledIsACopyInTheSameFrame) {
  for (const rzPelRect& rect : {rzPelRect(0, 0, 9, 6), rzPelRect(-7, 40, 5, 8)}) {
    Image image = noise(rect);
    image.clientFromImageXform(
        rzXform<2>(rzMatrix<2>(rzDegree(10), rzDegree(190), 2, 3), rzVector<2>(5, 6)));
    for (const auto interpolation : kAll) {
      const Image out = turned(image, 0, 1, interpolation);
      Image expected = image;
      expected.offset({0, 0});
      EXPECT_THAT(out, ShowsTheSameAs(expected));
      const rzXform<2> place = out.clientFromImageXform() * pictures::shift(-rect.x(), -rect.y()) *
                               image.imageFromClientXform();
      EXPECT_TRUE(rfRealEq(place, rzXform<2>(), kRounding));
    }
  }
}

struct TurnCase {
  const char* name;
  double degrees;
  rzLong width, height;
};

class QuarterTurn : public testing::TestWithParam<TurnCase> {};

TEST_P(QuarterTurn, CarriesThePelInTheUpperLeftCornerClockwise) {
  const double degrees = GetParam().degrees;
  const rzLong w = GetParam().width;
  const rzLong h = GetParam().height;
  const Image image = noise({3, 4, w, h});
  for (const auto interpolation : kAll) {
    const Image quarter = turned(image, degrees + 90, 1, interpolation);
    EXPECT_THAT(quarter, ShowsTheSameAs(drawn({0, 0, h, w}, [&](rzLong x, rzLong y) {
                  return *image.pointToPel(3 + y, 4 + h - 1 - x);
                })));
    const Image half = turned(image, degrees + 180, 1, interpolation);
    EXPECT_THAT(half, ShowsTheSameAs(drawn({0, 0, w, h}, [&](rzLong x, rzLong y) {
                  return *image.pointToPel(3 + w - 1 - x, 4 + h - 1 - y);
                })));
  }
}

INSTANTIATE_TEST_SUITE_P(
    , QuarterTurn,
    testing::Values(TurnCase{"odd_by_even", 0, 7, 4}, TurnCase{"even_by_even", 0, 6, 8},
                    TurnCase{"odd_by_odd", 0, 5, 3}, TurnCase{"one_pel", 0, 1, 1},
                    TurnCase{"a_turn_more", 360, 7, 4}, TurnCase{"a_turn_less", -360, 7, 4}),
    [](const auto& param) { return param.param.name; });

struct SizeCase {
  const char* name;
  rzLong width, height;
  double degrees, scale;
  rzLong outWidth, outHeight;
};

class TurnedSize : public testing::TestWithParam<SizeCase> {};

TEST_P(TurnedSize, HoldsTheTurnedWindowRoundedToWholePels) {
  const SizeCase& c = GetParam();
  const Image out = turned(noise({0, 0, c.width, c.height}), c.degrees, c.scale);
  EXPECT_EQ(out.window(), rzPelRect(0, 0, c.outWidth, c.outHeight));
}

INSTANTIATE_TEST_SUITE_P(, TurnedSize,
                         testing::Values(SizeCase{"doubled", 12, 9, 0, 2, 24, 18},
                                         SizeCase{"halved_rounds_half_up", 9, 7, 0, 0.5, 5, 4},
                                         SizeCase{"just_above_nothing", 10, 10, 0, 0.0500001, 1, 1},
                                         SizeCase{"diamond", 10, 10, 45, 1, 14, 14},
                                         SizeCase{"thirty_degrees", 20, 10, 30, 1, 22, 19},
                                         SizeCase{"thirty_degrees_back", 20, 10, -30, 1, 22, 19}),
                         [](const auto& param) { return param.param.name; });

TEST(AffineTransform, SidesThatCannotBeBuiltEndTheProcess) {
  const Image image = noise({0, 0, 10, 10});
  EXPECT_DEATH(turned(image, 0, 0.049), "affine_transform");
  EXPECT_DEATH(turned(image, 0, 3276.7), "affine_transform");
}

// On a slope of grey each pel of the result tells where it was taken.
TEST(AffineTransform, WhatIsSeenKeepsItsClientCoordinates) {
  Image whole = drawn({0, 0, 50, 40}, [](rzLong x, rzLong y) { return 2 * x + 3 * y; });
  whole.clientFromImageXform(
      rzXform<2>(rzMatrix<2>(rzDegree(70), rzDegree(60), 0.5, 1.5), rzVector<2>(-3, 8)));
  Image image = whole;
  image.window(rzPelRect(12, 10, 25, 18), false);
  for (const double degrees : {0.0, 17.0, -100.0, 180.0}) {
    const Image out = turned(image, degrees, 1.7);
    const rzXform<2> imageFromOut = image.imageFromClientXform() * out.clientFromImageXform();
    int compared = 0;
    for (rzLong y = 0; y < out.height(); ++y) {
      for (rzLong x = 0; x < out.width(); ++x) {
        const rzVector<2> p = imageFromOut * rzVector<2>(x + 0.5, y + 0.5);
        if (p.x() < 12 || p.x() > 37 || p.y() < 10 || p.y() > 28) continue;
        EXPECT_NEAR(*out.pointToPel(x, y), 2 * (p.x() - 0.5) + 3 * (p.y() - 0.5), 0.5 + 1e-6);
        ++compared;
      }
    }
    EXPECT_GT(compared, 1000);
    const rzVector<2> centre = imageFromOut * rzVector<2>(out.width() / 2.0, out.height() / 2.0);
    EXPECT_LT(centre.distance({24.5, 19}), kRounding);
  }
}

TEST(AffineTransform, FrameComesFromTheParentWhereItHasPels) {
  Image image = flat({0, 0, 30, 30}, 50);
  image.window(rzPelRect(10, 10, 8, 8), false);
  rfPelSet(image, 150);
  // At twice the size the outermost samples are a quarter of a pel from the window's border: a
  // quarter of the parent's grey, and none of a reflection's.
  EXPECT_EQ(*turned(image, 0, 2).pointToPel(0, 8), 125);
  EXPECT_EQ(*turned(rfPelCopy(image), 0, 2).pointToPel(0, 8), 150);
}

TEST(AffineTransform, WithoutAMaskTheTurnedWindowIsCaredForAndNothingElse) {
  const Image image = flat({5, 5, 20, 12}, 80);
  Image out;
  Image mask;
  rf_AffineTransform(image, ImageView(), rzDegree(30), 1.5, out, mask, Params::eBilinear,
                     Params::eBilinear);
  ASSERT_EQ(mask.window(), out.window());
  const rzXform<2> imageFromOut = out.clientFromImageXform();
  int inside = 0;
  for (rzLong y = 0; y < mask.height(); ++y) {
    for (rzLong x = 0; x < mask.width(); ++x) {
      const rzVector<2> p = imageFromOut * rzVector<2>(x + 0.5, y + 0.5);
      const double depth = std::min({p.x() - 5, 25 - p.x(), p.y() - 5, 17 - p.y()});
      if (std::fabs(depth) < 0.5) continue;  // the border itself, and rounding at its corners
      EXPECT_EQ(*mask.pointToPel(x, y), depth > 0 ? 0 : 255) << x << ", " << y;
      inside += depth > 0 ? 1 : 0;
    }
  }
  EXPECT_GT(inside, 400);
}

TEST(AffineTransform, GivenMaskIsTurnedWithTheImageAndCutAtTheMiddleOfGrey) {
  const Image image = noise({0, 0, 6, 4});
  const Image mask = drawn({0, 0, 6, 4}, [](rzLong x, rzLong y) { return 125 + x - y; });
  Image out;
  Image outMask;
  rf_AffineTransform(image, mask, rzDegree(180), 1, out, outMask, Params::eBicubic,
                     Params::eNearest);
  EXPECT_THAT(outMask, ShowsTheSameAs(drawn({0, 0, 6, 4}, [&](rzLong x, rzLong y) {
                return *mask.pointToPel(5 - x, 3 - y) >= 128 ? 255 : 0;
              })));
  EXPECT_THAT(out, ShowsTheSameAs(turned(image, 180, 1)));
}

struct EncloseCase {
  double degrees;
  double skew;
};

class EncloseRotated : public testing::TestWithParam<EncloseCase> {};

TEST_P(EncloseRotated, HoldsEveryCornerAndTouchesEachSide) {
  const rzPelRect rect(10, -20, 30, 12);
  const rzRadian xRot = rzDegree(GetParam().degrees);
  const rzRadian yRot = rzDegree(GetParam().degrees + GetParam().skew);
  const rzAffineRectangle box = rf_EncloseRotated(rect, xRot, yRot);
  const rzXform<2> unitFromClient = box.affRectFromUnitSq().inverse();
  double low[] = {1.0, 1.0};
  double high[] = {0.0, 0.0};
  for (const rzVector<2> corner : {rzVector<2>(rect.ul()), rzVector<2>(rect.ur()),
                                   rzVector<2>(rect.ll()), rzVector<2>(rect.lr())}) {
    const rzVector<2> p = unitFromClient * corner;
    low[0] = std::min(low[0], p.x());
    low[1] = std::min(low[1], p.y());
    high[0] = std::max(high[0], p.x());
    high[1] = std::max(high[1], p.y());
  }
  for (int axis = 0; axis < 2; ++axis) {
    EXPECT_NEAR(low[axis], 0.0, kRounding);
    EXPECT_NEAR(high[axis], 1.0, kRounding);
  }
  EXPECT_LT(box.center().distance({25, -14}), kRounding);
  EXPECT_NEAR(rzRadian(box.xRotation() - xRot).signedNorm().toDouble(), 0.0, kRounding);
}

INSTANTIATE_TEST_SUITE_P(, EncloseRotated,
                         testing::Values(EncloseCase{0, 0}, EncloseCase{45, 0}, EncloseCase{90, 0},
                                         EncloseCase{-170, 0}, EncloseCase{33, 0}));

// One row of pels and its frame, written out: where the frame is wider than the row, its far pel is
// repeated on the left, and on the right the filled left frame is read on.
TEST(MirrorBorders, FrameWiderThanTheRowFollowsTheRule) {
  struct Row {
    std::vector<int> inner;
    rzLong left, right;
    std::vector<int> expected;
  };
  const Row rows[] = {
      {{1, 2, 3, 4}, 3, 3, {3, 2, 1, 1, 2, 3, 4, 4, 3, 2}},
      {{1, 2}, 4, 0, {2, 2, 2, 1, 1, 2}},
      {{7}, 2, 3, {7, 7, 7, 7, 7, 7}},
      {{1, 2}, 1, 5, {1, 1, 2, 2, 1, 1, 1, 1}},
      {{1, 2}, 3, 5, {2, 2, 1, 1, 2, 2, 1, 1, 2, 2}},
  };
  for (const Row& row : rows) {
    const rzLong size = rf_Count(row.inner.size());
    const rzPelRect window(-row.left, 0, row.left + size + row.right, 1);
    Image buffer = drawn(window, [&](rzLong x, rzLong) {
      return x >= 0 && x < size ? row.inner[static_cast<std::size_t>(x)] : 99;
    });
    rf_MirrorBorders(buffer, rzPelRect(0, 0, size, 1));
    EXPECT_THAT(buffer, ShowsTheSameAs(drawn(window, [&](rzLong x, rzLong) {
                  return row.expected[static_cast<std::size_t>(x + row.left)];
                })));
  }
}

TEST(CopyWithBorder, InsideTheRootNothingIsReflected) {
  Image image = noise({0, 0, 20, 20});
  image.window(rzPelRect(8, 8, 2, 2), false);
  ImageView out;
  rf_CopyWithBorder(image, image.entire(), rzPelRect(5, 5, 8, 8), out);
  Image expected = image;
  expected.setEntire();
  expected.window(rzPelRect(5, 5, 8, 8), false);
  EXPECT_THAT(out, ShowsTheSameAs(expected));
}

TEST(CopyWithBorder, BeyondTheRootPelsAreReflectedAtItsBorder) {
  const Image image = noise({0, 0, 9, 9});
  ImageView out;
  rf_CopyWithBorder(image, image.window(), rzPelRect(-3, 4, 9, 8), out);
  EXPECT_THAT(out, ShowsTheSameAs(drawn({-3, 4, 9, 8}, [&](rzLong x, rzLong y) {
                return *image.pointToPel(mirrored(x, 9), mirrored(y, 9));
              })));
}

}  // namespace
