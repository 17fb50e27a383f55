// SPDX-License-Identifier: Apache-2.0
#include "rz/pel_functions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "rz/histogram.h"
#include "tests/platform/foundation/pels/pictures.h"

namespace {

using pictures::drawn;
using pictures::flat;
using pictures::Image;
using pictures::noise;
using pictures::ShowsTheSameAs;

TEST(PelFunctions, ForeignPelsAreCopiedRowByRowAlsoBottomUp) {
  const unsigned char pels[] = {1, 2, 9, 3, 4, 9};
  const Image image = rfPelBufferFromPels(pels, 2, 2, 3);
  EXPECT_THAT(
      image, ShowsTheSameAs(drawn({0, 0, 2, 2}, [](rzLong x, rzLong y) { return 1 + x + 2 * y; })));
  const Image turned = rfPelBufferFromPels(pels + 3, 2, 2, -3);
  EXPECT_EQ(*turned.pointToPel(0, 0), 3);
  EXPECT_EQ(*turned.pointToPel(1, 1), 2);
  EXPECT_THROW(rfPelBufferFromPels(pels, 2, 2, 1), rzPel::BadSize);
  EXPECT_THROW(rfPelBufferFromPels(nullptr, 2, 2, 2), rzPel::BadSize);
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

TEST(Histogram, MedianIsTheSmallestGreyThatHalfOfAllReach) {
  struct {
    const char* name;
    std::vector<std::pair<std::size_t, rzLong>> counts;
    rzLong median;
  } const cases[] = {
      {"no pels", {}, 0},
      {"even split gives the lower", {{10, 5}, {20, 5}}, 10},
      {"one more above", {{10, 5}, {20, 6}}, 20},
      {"sum beyond 32 bits", {{10, 2000000000}, {20, 2000000000}, {30, 2000000000}}, 20}};
  for (const auto& c : cases) {
    std::vector<rzLong> histogram(256);
    for (const auto& [grey, count] : c.counts) histogram[grey] = count;
    EXPECT_EQ(rzHistoStats(histogram, false).median(), c.median) << c.name;
  }
}

}  // namespace
