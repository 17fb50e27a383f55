// SPDX-License-Identifier: Apache-2.0
#include "rz/pel_functions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "rz/histogram.h"
#include "rz/xform_radial.h"
#include "tests/platform/foundation/pels/pictures.h"

namespace {

using pictures::drawn;
using pictures::flat;
using pictures::Image;
using pictures::ImageView;
using pictures::noise;
using pictures::ShowsTheSameAs;

TEST(PelFunctions, ForeignPelsAreCopiedRowByRow) {
  const unsigned char pels[] = {1, 2, 9, 3, 4, 9};
  const Image image = rfPelBufferFromPels(pels, 2, 2, 3);
  EXPECT_THAT(
      image, ShowsTheSameAs(drawn({0, 0, 2, 2}, [](rzLong x, rzLong y) { return 1 + x + 2 * y; })));
}

TEST(PelFunctions, BottomUpPicturesAreTurnedOver) {
  const unsigned char pels[] = {3, 4, 1, 2};
  const Image image = rfPelBufferFromPels(pels + 2, 2, 2, -2);
  EXPECT_EQ(*image.pointToPel(0, 0), 1);
  EXPECT_EQ(*image.pointToPel(1, 1), 4);
  EXPECT_THROW(rfPelBufferFromPels(pels, 2, 2, 1), rzPel::BadSize);
  EXPECT_THROW(rfPelBufferFromPels(nullptr, 2, 2, 2), rzPel::BadSize);
}

TEST(PelFunctions, CopyHasItsOwnRootOfTheWindowAndTheSameFrame) {
  Image image = noise({0, 0, 20, 20});
  image.imageFromClientXform(rzXform<2>(rzMatrix<2>(0.1, 0, 0, 0.3), rzVector<2>(5, 1)));
  image.window(rzPelRect(3, 4, 7, 8), false);
  const Image copy = rfPelCopy(image);
  EXPECT_THAT(copy, ShowsTheSameAs(image));
  EXPECT_EQ(copy.entire(), rzPelRect(3, 4, 7, 8));
  EXPECT_FALSE(copy.sharesRoot(image));
  EXPECT_EQ(copy.clientFromImageXform(), image.clientFromImageXform());
  EXPECT_EQ(copy.imageFromClientXform(), image.imageFromClientXform());
}

TEST(PelFunctions, CopyOfABentFrameIsBentAlike) {
  Image image = noise({0, 0, 4, 4});
  image.clientFromImageXformBase(new rz2XformRadial(rzVector<2>(2, 2), 1e-3), true);
  EXPECT_TRUE(rfPelCopy(image).clientFromImageXformBase() == image.clientFromImageXformBase());
}

TEST(PelFunctions, CopyIntoABufferTakesCommonPelsAndLeavesItsFrame) {
  const Image source = noise({0, 0, 10, 10});
  Image target = flat({6, -4, 8, 8}, 200);
  target.clientFromImageXform(pictures::shift(1, 2));
  rfPelCopy(source, target);
  EXPECT_THAT(target, ShowsTheSameAs(drawn({6, -4, 8, 8}, [&](rzLong x, rzLong y) {
                return x < 10 && y >= 0 ? *source.pointToPel(x, y) : 200;
              })));
  EXPECT_EQ(target.clientFromImageXform(), pictures::shift(1, 2));
  Image unbound;
  rfPelCopy(source, unbound);
  EXPECT_THAT(unbound, ShowsTheSameAs(source));
}

TEST(PelFunctions, CopyBetweenRenumberedViewsOfOneRootMovesThePels) {
  Image target = noise({0, 0, 9, 9});
  const Image before = rfPelCopy(target);
  Image source = target;
  source.offset({2, 1});
  rfPelCopy(source, target);
  EXPECT_THAT(target, ShowsTheSameAs(drawn({0, 0, 9, 9}, [&](rzLong x, rzLong y) {
                return x >= 2 && y >= 1 ? *before.pointToPel(x - 2, y - 1)
                                        : *before.pointToPel(x, y);
              })));
}

TEST(PelFunctions, FillStopsAtTheWindow) {
  rzPelBuffer<std::int16_t> image(rzPelRect(0, 0, 5, 5), 32);
  rzPelBuffer<std::int16_t> middle = image;
  middle.window(rzPelRect(1, 1, 3, 3), false);
  rfPelSet(middle, -300);
  for (rzLong y = 0; y < 5; ++y) {
    for (rzLong x = 0; x < 5; ++x) {
      const bool inside = x >= 1 && x <= 3 && y >= 1 && y <= 3;
      EXPECT_EQ(*image.pointToPel(x, y), inside ? -300 : 0);
    }
  }
}

TEST(PelFunctions, MapLooksEachPelUpAndKeepsTheFrame) {
  std::array<unsigned char, 256> table{};
  for (std::size_t i = 0; i < 256; ++i) table[i] = static_cast<unsigned char>(255 - i);
  Image image = noise({4, 5, 6, 7});
  image.clientFromImageXform(pictures::shift(9, 9));
  const Image result = rfPelMap(image, table);
  EXPECT_THAT(result, ShowsTheSameAs(drawn(image.window(), [&](rzLong x, rzLong y) {
                return 255 - *image.pointToPel(x, y);
              })));
  EXPECT_EQ(result.clientFromImageXform(), pictures::shift(9, 9));
}

TEST(PelFunctions, MinimumPairsUpperLeftCornersWhateverTheirNumbers) {
  const Image a = noise({10, 20, 5, 4}, 1);
  const Image b = noise({0, 0, 5, 4}, 2);
  EXPECT_THAT(rfPelMin(a, b), ShowsTheSameAs(drawn(a.window(), [&](rzLong x, rzLong y) {
                return std::min(*a.pointToPel(x, y), *b.pointToPel(x - 10, y - 20));
              })));
  EXPECT_THROW(rfPelMin(a, noise({0, 0, 4, 5})), rzPel::BadWindow);
}

TEST(PelFunctions, ExtremesSeeTheWindowOnly) {
  Image image = flat({0, 0, 6, 6}, 100);
  *image.pointToPel(0, 0) = 0;
  *image.pointToPel(5, 5) = 255;
  EXPECT_EQ(rfPelMin(image), 0);
  EXPECT_EQ(rfPelMax(image), 255);
  image.window(rzPelRect(1, 1, 4, 4), false);
  EXPECT_EQ(rfPelMin(image), 100);
  EXPECT_EQ(rfPelMax(image), 100);
}

TEST(PelFunctions, EqualMeansSamePlaceAndSamePels) {
  const Image image = noise({0, 0, 6, 6});
  Image other = rfPelCopy(image);
  other.clientFromImageXform(pictures::shift(1, 1));
  EXPECT_TRUE(rfPelEqual(image, other));
  *other.pointToPel(5, 5) ^= 1;
  EXPECT_FALSE(rfPelEqual(image, other));
  *other.pointToPel(5, 5) ^= 1;
  other.offset({1, 0});
  EXPECT_FALSE(rfPelEqual(image, other));
  EXPECT_THROW(rfPelEqual(image, ImageView()), rzPel::UnboundWindow);
  EXPECT_THROW(rfPelEqual(ImageView(), ImageView()), rzPel::UnboundWindow);
}

TEST(PelFunctions, HistogramCountsEveryPelOfTheWindowOnce) {
  Image image = drawn({0, 0, 16, 16}, [](rzLong x, rzLong y) { return x + 16 * y; });
  EXPECT_THAT(rfPelHistogram(image), testing::AllOf(testing::SizeIs(256), testing::Each(1)));
  image.window(rzPelRect(0, 0, 1, 2), false);
  const std::vector<rzLong> histogram = rfPelHistogram(image);
  EXPECT_EQ(histogram[0], 1);
  EXPECT_EQ(histogram[16], 1);
  EXPECT_EQ(histogram[1], 0);
}

TEST(PelFunctions, UnboundBuffersHaveNoPels) {
  Image target = flat({0, 0, 2, 2}, 1);
  const Image image = target;
  const std::array<unsigned char, 256> table{};
  EXPECT_THROW(rfPelCopy(ImageView()), rzPel::UnboundWindow);
  EXPECT_THROW(rfPelCopy(ImageView(), target), rzPel::UnboundWindow);
  EXPECT_THROW(rfPelSet(Image(), 1), rzPel::UnboundWindow);
  EXPECT_THROW(rfPelMap(ImageView(), table), rzPel::UnboundWindow);
  EXPECT_THROW(rfPelMin(image, ImageView()), rzPel::UnboundWindow);
  EXPECT_THROW(rfPelMax(ImageView()), rzPel::UnboundWindow);
  EXPECT_THROW(rfPelHistogram(ImageView()), rzPel::UnboundWindow);
}

struct MedianCase {
  const char* name;
  std::vector<std::pair<std::size_t, rzLong>> counts;
  rzLong median;
};

class Median : public testing::TestWithParam<MedianCase> {};

TEST_P(Median, IsTheSmallestGreyThatHalfOfAllReach) {
  std::vector<rzLong> histogram(256);
  for (const auto& [grey, count] : GetParam().counts) histogram[grey] = count;
  EXPECT_EQ(rzHistoStats(histogram, false).median(), GetParam().median);
}

INSTANTIATE_TEST_SUITE_P(
    , Median,
    testing::Values(MedianCase{"no_pels", {}, 0}, MedianCase{"one_pel", {{200, 1}}, 200},
                    MedianCase{"even_split_gives_the_lower", {{10, 5}, {20, 5}}, 10},
                    MedianCase{"one_more_above", {{10, 5}, {20, 6}}, 20},
                    MedianCase{"sum_beyond_32_bits",
                               {{10, 2000000000}, {20, 2000000000}, {30, 2000000000}},
                               20}),
    [](const auto& param) { return param.param.name; });

}  // namespace
