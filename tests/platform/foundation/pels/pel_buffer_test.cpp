// SPDX-License-Identifier: Apache-2.0
#include "rz/pel_buffer.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "rz/math_error.h"
#include "rz/xform_linear.h"
#include "tests/platform/foundation/pels/pictures.h"

namespace {

using pictures::Image;
using pictures::ImageView;
using pictures::shift;

constexpr rzLong kMax = std::numeric_limits<rzLong>::max();

TEST(PelBuffer, SizesThatAreNoPictureAreRefused) {
  struct {
    const char* name;
    rzPelRect rect;
    rzLong align;
  } const cases[] = {{"no width", {0, 0, 0, 5}, 32},
                     {"negative height", {0, 0, 5, -1}, 32},
                     {"two to the 31 pels", {0, 0, 1 << 16, 1 << 15}, 32},
                     {"product wraps in 32 bits", {0, 0, 1 << 17, 1 << 17}, 32},
                     {"corner out of range", {kMax - 3, 0, 5, 1}, 32},
                     {"alignment zero", {0, 0, 5, 5}, 0},
                     {"alignment no power", {0, 0, 5, 5}, 24}};
  for (const auto& c : cases) EXPECT_THROW(Image(c.rect, c.align), rzPel::BadSize) << c.name;
  const unsigned char pels[12] = {};
  EXPECT_THROW(ImageView::borrow(nullptr, 3, 2, 3), rzPel::BadSize);
  EXPECT_THROW(ImageView::borrow(pels, 3, 0, 3), rzPel::BadSize);
  EXPECT_THROW(ImageView::borrow(pels, 3, 2, 2), rzPel::BadSize);
}

TEST(PelBuffer, NewPelsAreZeroAndRowsAligned) {
  const Image image(rzPelRect(-5, 7, 33, 3), 32);
  for (rzLong y = 7; y < 10; ++y) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image.pointToPel(-5, y)) % 32, 0U);
    for (rzLong x = -5; x < 28; ++x) EXPECT_EQ(*image.pointToPel(x, y), 0);
  }
  EXPECT_EQ(image.pointToPel(-5, 8) - image.pointToPel(-5, 7), image.rowUpdate());
  EXPECT_GE(image.rowUpdate(), 33);
}

TEST(PelBuffer, NarrowingIsMeasuredAgainstTheWindowAndNotTheRoot) {
  Image image(rzPelRect(0, 0, 10, 10), 32);
  image.window(rzPelRect(2, 2, 6, 6), false);
  for (const rzPelRect& rect : {rzPelRect(1, 2, 6, 6), rzPelRect(2, 2, 7, 6), rzPelRect(3, 3, 0, 2),
                                rzPelRect(5, 5, -2, 1), rzPelRect(2, 2, kMax, kMax)}) {
    EXPECT_THROW(image.window(rect, false), rzPel::BadWindow);
    EXPECT_EQ(image.window(), rzPelRect(2, 2, 6, 6));
  }
  image.window(rzPelRect(2, 2, 6, 6), false);
  image.setEntire();
  EXPECT_EQ(image.window(), rzPelRect(0, 0, 10, 10));
}

TEST(PelBuffer, ClippingTakesTheCommonPartWhichMayBeEmpty) {
  Image image(rzPelRect(0, 0, 10, 10), 32);
  image.window(rzPelRect(6, -3, 10, 8), true);
  EXPECT_EQ(image.window(), rzPelRect(6, 0, 4, 5));
  image.window(rzPelRect(0, 8, 5, 5), true);
  EXPECT_TRUE(image.isBound());
  EXPECT_TRUE(image.window().isNull());
  rfPelSet(image, 9);
  image.setEntire();
  EXPECT_EQ(rfPelMax(image), 0);
}

TEST(PelBuffer, OffsetRenumbersThisViewOnly) {
  Image image = pictures::noise(rzPelRect(0, 0, 10, 10));
  image.clientFromImageXform(shift(100, 100));
  Image view = image;
  view.window(rzPelRect(4, 5, 3, 3), false);
  view.offset({20, -30});
  EXPECT_EQ(view.window(), rzPelRect(20, -30, 3, 3));
  EXPECT_EQ(view.entire(), rzPelRect(16, -35, 10, 10));
  EXPECT_EQ(view.pointToPel(20, -30), image.pointToPel(4, 5));
  EXPECT_EQ(view.clientFromImageXform(), shift(100, 100));
  EXPECT_EQ(image.window(), rzPelRect(0, 0, 10, 10));
  EXPECT_THROW(view.offset({kMax - 5, 0}), rzPel::BadWindow) << "the root would not fit";
  EXPECT_EQ(view.window(), rzPelRect(20, -30, 3, 3));
  view.offset({kMax - 6, 0});
  EXPECT_EQ(view.entire().lr().x(), kMax);
}

TEST(PelBuffer, TransformWithoutInverseChangesNothing) {
  const rzXform<2> flatXform(rzMatrix<2>(1, 2, 2, 4), rzVector<2>());
  Image image;
  image.clientFromImageXform(shift(3, 4));
  EXPECT_THROW(image.clientFromImageXform(flatXform), rzMathError::Singular);
  EXPECT_THROW(image.imageFromClientXform(flatXform), rzMathError::Singular);
  EXPECT_THROW(image.imageFromClientXformBase(new rz2XformLinear(flatXform), true),
               rzMathError::Singular);
  EXPECT_EQ(image.clientFromImageXform(), shift(3, 4));
  EXPECT_EQ(image.imageFromClientXform(), shift(-3, -4));
}

TEST(PelBuffer, BorrowedPelsAreReadInPlaceAndTheirOwnerIsKept) {
  auto pels = std::make_shared<std::vector<unsigned char>>(
      std::vector<unsigned char>{1, 2, 3, 99, 4, 5, 6, 99});
  ImageView image = ImageView::borrow(pels->data(), 3, 2, 4, pels);
  EXPECT_EQ(image.pointToPel(0, 0), pels->data());
  EXPECT_EQ(*image.pointToPel(2, 1), 6);
  const std::weak_ptr<std::vector<unsigned char>> watch = pels;
  pels.reset();
  EXPECT_FALSE(watch.expired());
  image.setUnbound();
  EXPECT_TRUE(watch.expired());
}

}  // namespace
