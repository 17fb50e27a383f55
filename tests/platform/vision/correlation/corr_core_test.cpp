// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/corr_core.h"

#include <gtest/gtest.h>

#include "rz/pel_functions.h"
#include "support/noise.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;
using Model = rz_CorrelationModel<unsigned char>;

constexpr auto kSigned = rz_CorrelationDefs::eSignedCorrelation;

Image part(Image image, const rzPelRect& rect) {
  image.window(rect, false);
  return image;
}

TEST(CorrelationCore, MaskedCoreWithNothingExcludedGivesTheSumsOfTheUnmaskedOne) {
  const Image image = noise(rzPelRect(-3, 8, 21, 17), 7);
  const Image pattern = part(image, rzPelRect(2, 10, 12, 9));
  rzPelBuffer<unsigned char> nothing(rzPelRect(0, 0, 12, 9), 32);
  const Model plain(pattern);
  const Model masked(pattern, nothing);
  const rz_CorrelationTables tables = rf_corr_init(image);
  const auto plainCore = rf_correlate_core_get_func_point_no_mask_U8();
  const auto maskedCore = rf_correlate_core_get_func_point_mask_U8();
  for (std::size_t y = 0; y <= 8; ++y) {
    for (std::size_t x = 0; x <= 9; ++x) {
      const rz_CorrelationSums a = plainCore(tables, plain, x, y);
      const rz_CorrelationSums b = maskedCore(tables, masked, x, y);
      ASSERT_EQ(a.sum, b.sum);
      ASSERT_EQ(a.squares, b.squares);
      ASSERT_EQ(a.products, b.products);
    }
  }
  const rz_CorrelationSums own = plainCore(tables, plain, 5, 2);
  EXPECT_EQ(rf_corr_score(own, plain.sums(), kSigned), 1000);
}

TEST(CorrelationCore, PelsThatAreExcludedDoNotMatter) {
  rzPelBuffer<unsigned char> image = noise(rzPelRect(0, 0, 15, 15), 8);
  const Image pattern = rfPelCopy(part(image, rzPelRect(3, 4, 8, 8)));
  rzPelBuffer<unsigned char> exclusion(pattern.window(), 32);
  *exclusion.pointToPel(5, 6) = 1;
  *image.pointToPel(5, 6) = static_cast<unsigned char>(*image.pointToPel(5, 6) ^ 0x80);
  const rz_CorrelationTables tables = rf_corr_init(image);
  const Model masked(pattern, exclusion);
  const auto sums = rf_correlate_core_get_func_point_mask_U8()(tables, masked, 3, 4);
  EXPECT_EQ(rf_corr_score(sums, masked.sums(), kSigned), 1000);
  const Model plain(pattern);
  const auto all = rf_correlate_core_get_func_point_no_mask_U8()(tables, plain, 3, 4);
  EXPECT_LT(rf_corr_score(all, plain.sums(), kSigned), 1000);
}

}  // namespace
