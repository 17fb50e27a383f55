// SPDX-License-Identifier: Apache-2.0
#include "rz/charlib/image.h"

#include <gmock/gmock.h>

#include "rz/charlib/image_wrap.h"
#include "rz/pel_functions.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

Image ramp() {
  rzPelBuffer<unsigned char> image(rzPelRect(-2, 3, 6, 5), 32);
  for (rzLong y = 3; y < 8; ++y) {
    for (rzLong x = -2; x < 4; ++x) {
      *image.pointToPel(x, y) = static_cast<unsigned char>(10 * y + x + 2);
    }
  }
  image.window(rzPelRect(0, 4, 3, 2), false);
  image.clientFromImageXform(rzXform<2>(rzMatrix<2>(3.0, 0.0, 0.0, 7.0), rzVector<2>(1.0, 2.0)));
  return image;
}

TEST(CImage, WrappingKeepsPelsWindowRootAndTransforms) {
  const Image image = ramp();
  const rz_Image wrapped(image);
  const rimg_image8Const& record = *wrapped.imageConst();
  EXPECT_EQ(record.pels, image.pointToPel(0, 4));
  EXPECT_EQ(record.rowStep, image.rowUpdate());
  EXPECT_EQ(rzPelRect(record.x, record.y, record.width, record.height), image.window());
  const Image back = rfConvertImage(record);
  EXPECT_TRUE(back.sharesRoot(image));
  EXPECT_EQ(back.window(), image.window());
  EXPECT_EQ(back.entire(), image.entire());
  EXPECT_EQ(back.clientFromImageXform(), image.clientFromImageXform());
  EXPECT_EQ(back.imageFromClientXform(), image.imageFromClientXform());
  Image nothing = image;
  nothing.window(rzPelRect(50, 50, 2, 2), true);
  const rz_Image empty(nothing);
  EXPECT_EQ(empty.imageConst()->pels, nullptr);
  EXPECT_TRUE(rfConvertImage(*empty).isBound());
}

TEST(CImage, AssignedImageOutlivesItsSource) {
  rimg_imageConst kept;
  rimg_imageConst_constructUnbound(&kept);
  {
    const rz_Image first(ramp());
    EXPECT_EQ(rimg_imageConst_assign(&kept, first.imageConst()), RSYS_SUCCESS);
    EXPECT_EQ(rimg_imageConst_assign(&kept, &kept), RSYS_SUCCESS);
  }
  EXPECT_TRUE(rfPelEqual(rfConvertImage(kept), ramp()));
  rimg_imageConst_destruct(&kept);
  EXPECT_FALSE(rfConvertImage(kept).isBound());
}

TEST(CImage, CopiedPelsAreNumberedAsAskedAndBadSizesAreRefused) {
  unsigned char pels[] = {1, 2, 3, 4, 5, 6};
  rimg_imageConst image;
  ASSERT_EQ(rimg_imageConst_constructCopy(&image, pels, 3, 10, 20, 2, 2), RSYS_SUCCESS);
  pels[0] = 99;
  const Image back = rfConvertImage(image);
  EXPECT_EQ(back.window(), rzPelRect(10, 20, 2, 2));
  EXPECT_EQ(*back.pointToPel(10, 20), 1);
  EXPECT_EQ(*back.pointToPel(11, 21), 5);
  rimg_imageConst_destruct(&image);
  EXPECT_LT(rimg_imageConst_constructCopy(&image, pels, 3, 0, 0, 4, 1), 0);
  EXPECT_LT(rimg_imageConst_constructCopy(&image, pels, 3, 0, 0, 0, 1), 0);
  EXPECT_LT(rimg_imageConst_constructCopy(&image, nullptr, 3, 0, 0, 2, 1), 0);
  EXPECT_LT(rimg_imageConst_constructCopy(&image, pels, 3, 0x7FFFFFFF, 0, 2, 1), 0);
}

}  // namespace
