// SPDX-License-Identifier: Apache-2.0
#include "rz/pel_buffer.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "rz/math_error.h"
#include "rz/xform_linear.h"
#include "rz/xform_radial.h"
#include "tests/platform/foundation/pels/pictures.h"

namespace {

using pictures::Image;
using pictures::ImageView;
using pictures::shift;

constexpr rzLong kMax = std::numeric_limits<rzLong>::max();

rzPtrHandle_const<rz2XformBase> bent() { return new rz2XformRadial(rzVector<2>(5, 5), 1e-4); }

TEST(PelBuffer, UnboundAnswersWindowAndTransformAndNothingElse) {
  ImageView image;
  EXPECT_FALSE(image.isBound());
  EXPECT_EQ(image.window(), rzPelRect());
  EXPECT_EQ(image.clientFromImageXform(), rzXform<2>());
  EXPECT_THROW(image.pointToPel(0, 0), rzPel::UnboundWindow);
  EXPECT_THROW(image.rowUpdate(), rzPel::UnboundWindow);
  EXPECT_THROW(image.window(rzPelRect(0, 0, 1, 1), false), rzPel::UnboundWindow);
  EXPECT_THROW(image.window(rzPelRect(0, 0, 1, 1), true), rzPel::UnboundWindow);
  EXPECT_THROW(image.setEntire(), rzPel::UnboundWindow);
  EXPECT_THROW(image.offset({1, 1}), rzPel::UnboundWindow);
}

TEST(PelBuffer, UnbindingForgetsThePelsAndTheTransform) {
  Image image(rzPelRect(2, 3, 4, 5), 32);
  image.clientFromImageXform(shift(1, 1));
  image.setUnbound();
  EXPECT_FALSE(image.isBound());
  EXPECT_EQ(image.window(), rzPelRect());
  EXPECT_EQ(image.clientFromImageXform(), rzXform<2>());
}

struct SizeCase {
  const char* name;
  rzPelRect rect;
  rzLong align;
};

class PelBufferBadSize : public testing::TestWithParam<SizeCase> {};

TEST_P(PelBufferBadSize, IsRefused) {
  EXPECT_THROW(Image(GetParam().rect, GetParam().align), rzPel::BadSize);
}

INSTANTIATE_TEST_SUITE_P(
    , PelBufferBadSize,
    testing::Values(SizeCase{"no_width", {0, 0, 0, 5}, 32},
                    SizeCase{"negative_height", {0, 0, 5, -1}, 32},
                    SizeCase{"two_to_the_31_pels", {0, 0, 1 << 16, 1 << 15}, 32},
                    SizeCase{"product_wraps_in_32_bits", {0, 0, 1 << 17, 1 << 17}, 32},
                    SizeCase{"corner_out_of_range", {kMax - 3, 0, 5, 1}, 32},
                    SizeCase{"alignment_zero", {0, 0, 5, 5}, 0},
                    SizeCase{"alignment_no_power", {0, 0, 5, 5}, 24}),
    [](const auto& param) { return param.param.name; });

TEST(PelBuffer, NewPelsAreZeroAndRowsAligned) {
  const Image image(rzPelRect(-5, 7, 33, 3), 32);
  for (rzLong y = 7; y < 10; ++y) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image.pointToPel(-5, y)) % 32, 0U);
    for (rzLong x = -5; x < 28; ++x) EXPECT_EQ(*image.pointToPel(x, y), 0);
  }
  EXPECT_EQ(image.pointToPel(-5, 8) - image.pointToPel(-5, 7), image.rowUpdate());
  EXPECT_GE(image.rowUpdate(), 33);
}

TEST(PelBuffer, CopiesSharePelsButNotWindows) {
  Image image(rzPelRect(0, 0, 8, 8), 32);
  Image narrow = image;
  narrow.window(rzPelRect(2, 2, 3, 3), false);
  *narrow.pointToPel(3, 4) = 77;
  const ImageView view = image;
  EXPECT_EQ(*view.pointToPel(3, 4), 77);
  EXPECT_EQ(view.window(), rzPelRect(0, 0, 8, 8));
  EXPECT_TRUE(view.sharesRoot(narrow));
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
}

TEST(PelBuffer, OffsetKeepsTheWholeRootInTheRangeOfNumbers) {
  Image image(rzPelRect(0, 0, 10, 10), 32);
  image.window(rzPelRect(0, 0, 2, 2), false);
  EXPECT_THROW(image.offset({kMax - 5, 0}), rzPel::BadWindow);
  EXPECT_EQ(image.window(), rzPelRect(0, 0, 2, 2));
  image.offset({kMax - 10, 0});
  EXPECT_EQ(image.entire().lr().x(), kMax);
}

TEST(PelBuffer, SettingOneDirectionSetsTheOther) {
  const rzXform<2> xform(rzMatrix<2>(2, 0, 0, 4), rzVector<2>(6, 8));
  Image image;
  image.clientFromImageXform(xform);
  EXPECT_EQ(image.imageFromClientXform(), xform.inverse());
  image.imageFromClientXform(xform);
  EXPECT_EQ(image.clientFromImageXform(), xform.inverse());
  const rzPtrHandle_const<rz2XformBase> handle(new rz2XformLinear(xform));
  image.clientFromImageXformBase(handle, true);
  EXPECT_EQ(image.clientFromImageXform(), xform);
  EXPECT_EQ(image.imageFromClientXform(), xform.inverse());
  EXPECT_TRUE(image.clientFromImageXformBase() == handle);
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

TEST(PelBuffer, BentTransformAnswersThroughItsHandlesOnly) {
  Image image;
  image.clientFromImageXformBase(bent(), true);
  EXPECT_FALSE(image.clientFromImageXformBase()->isLinear());
  EXPECT_THROW(image.clientFromImageXform(), rz2XformBase::NotLinear);
  EXPECT_THROW(image.imageFromClientXform(), rz2XformBase::NotLinear);
  const rzVector<2> there = image.clientFromImageXformBase()->mapPoint({20, 9});
  const rzVector<2> back = image.imageFromClientXformBase()->mapPoint(there);
  EXPECT_LT(back.distance({20, 9}), 1e-9);
  image.clientFromImageXform(shift(1, 0));
  EXPECT_EQ(image.imageFromClientXform(), shift(-1, 0));
}

TEST(PelBuffer, CopiedTransformsAreTheSameToTheBit) {
  Image image;
  image.imageFromClientXform(rzXform<2>(rzMatrix<2>(0.1, 0.7, -0.3, 1.1), rzVector<2>(1 / 3.0, 7)));
  Image other(rzPelRect(0, 0, 2, 2), 32);
  other.copyXforms(image);
  EXPECT_EQ(other.clientFromImageXform(), image.clientFromImageXform());
  EXPECT_EQ(other.imageFromClientXform(), image.imageFromClientXform());
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

TEST(PelBuffer, BorrowingRefusesWhatIsNoPicture) {
  const unsigned char pels[12] = {};
  EXPECT_THROW(ImageView::borrow(nullptr, 3, 2, 3), rzPel::BadSize);
  EXPECT_THROW(ImageView::borrow(pels, 3, 0, 3), rzPel::BadSize);
  EXPECT_THROW(ImageView::borrow(pels, 3, 2, 2), rzPel::BadSize);
}

}  // namespace
