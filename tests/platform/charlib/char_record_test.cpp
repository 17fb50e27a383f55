// SPDX-License-Identifier: Apache-2.0
//
// Binarized images of records; the rest of the records is tested from C.
#include "rz/charlib/char_record.h"

#include <gmock/gmock.h>

#include <cmath>
#include <vector>

#include "rz/charlib/image_wrap.h"
#include "rz/pel_functions.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;
using testing::ElementsAre;

struct Record : roc_char {
  Record() { roc_char_construct(this); }
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;
  ~Record() { roc_char_destruct(this); }

  rsys_result normalized(const Image& source, rzLong level, bool inverted = false) {
    const rz_Image wrapped(source);
    const rzLong area[4] = {0, 0, 4, 1};
    return roc_char_setNormalizedImageThresholdAndInvert8(this, wrapped, 1, level, inverted, area);
  }
  rsys_result mark(Image& answer) const {
    rimg_imageConst found;
    rimg_imageConst_constructUnbound(&found);
    const rsys_result result = roc_char_getBinarizedImageMarkRect8(this, &found);
    if (result >= 0) answer = rfConvertImage(found);
    rimg_imageConst_destruct(&found);
    return result;
  }
  void specify(std::uint32_t bit, double* rect, double x) {
    metrics.specifiedRects |= bit;
    rect[0] = x;
    rect[2] = rect[3] = 1.0;
  }
  void specify(std::uint32_t bit, std::int32_t* rect, std::int32_t x) {
    metrics.specifiedRects |= bit;
    rect[0] = x << 16;
    rect[2] = rect[3] = 1 << 16;
  }
};

Image row(const std::vector<unsigned char>& greys) {
  const auto width = static_cast<rzLong>(greys.size());
  return rfPelBufferFromPels(greys.data(), width, 1, width);
}

TEST(CharRecord, FirstSpecifiedMarkRectIsTakenThroughTheImagesTransform) {
  Image image = row({0, 255, 0, 255, 0});
  image.imageFromClientXform(rzXform<2>(rzMatrix<2>(), rzVector<2>(-7.0, 0.0)));
  Record record;
  ASSERT_EQ(record.normalized(image, 255, true), RSYS_SUCCESS);
  Image mark;
  record.metrics.specifiedRects = roc_cellRect | roc_cellRectImage;
  EXPECT_EQ(record.mark(mark), ROC_RECT_NOT_SPECIFIED);
  const auto expectMarkAt = [&](rzLong x) {
    EXPECT_EQ(record.mark(mark), RSYS_SUCCESS);
    EXPECT_EQ(mark.window(), rzPelRect(x, 0, 1, 1));
  };
  record.specify(roc_detectedMarkRect, record.metrics.detectedMarkRect, 11.0);
  expectMarkAt(4);
  record.specify(roc_markRect, record.metrics.markRect, 10.0);
  expectMarkAt(3);
  record.specify(roc_detectedMarkRectImage, record.metrics.detectedMarkRectImage, 2);
  expectMarkAt(2);
  record.specify(roc_markRectImage, record.metrics.markRectImage, 1);
  expectMarkAt(1);
  EXPECT_EQ(*mark.pointToPel(1, 0), 0) << "inverted";
}

TEST(CharRecord, MarkRectBeyondTheImageOrBeyondAllPels) {
  Record record;
  ASSERT_EQ(record.normalized(row({0, 255}), 128), RSYS_SUCCESS);
  record.specify(roc_markRect, record.metrics.markRect, 50.0);
  Image mark;
  EXPECT_EQ(record.mark(mark), RSYS_SUCCESS);
  EXPECT_TRUE(mark.isBound() && mark.window().isNull());
  for (const double x : {3e9, -3e9, std::nan("")}) {
    record.metrics.markRect[0] = x;
    EXPECT_EQ(record.mark(mark), ROC_INTEGER_OVERFLOW) << x;
  }
  record.metrics.markRect[0] = -2e9;
  record.metrics.markRect[2] = 4e9;  // the corners fit, their distance does not
  EXPECT_EQ(record.mark(mark), ROC_INTEGER_OVERFLOW);
}

TEST(CharRecord, NewNormalizedImageDropsWhatFollowedFromTheOldOne) {
  Record record;
  const rz_Image cached(row({7, 8}));
  rimg_imageConst_assign(&record.binarizedImage, cached);
  record.binarizedCached = 1;
  record.specify(roc_detectedMarkRect, record.metrics.detectedMarkRect, 4.0);
  record.specify(roc_detectedMarkRectImage, record.metrics.detectedMarkRectImage, 4);
  for (const rzLong threshold : {-1, 257}) {
    EXPECT_EQ(record.normalized(row({1}), threshold), ROC_THRESHOLD_OUT_OF_RANGE);
    EXPECT_EQ(record.binarizedCached, 1);
    EXPECT_NE(record.metrics.specifiedRects & roc_detectedMarkRect, 0u);
  }
  ASSERT_EQ(record.normalized(row({1, 2, 3, 4}), 256, true), RSYS_SUCCESS);
  EXPECT_EQ(record.binarizedCached, 0);
  EXPECT_EQ(record.binarizedImage.block, nullptr);
  EXPECT_EQ(record.metrics.specifiedRects, std::uint32_t{roc_detectedMarkRectImage});
  EXPECT_THAT(record.metrics.detectedMarkRect, ElementsAre(0.0, 0.0, 0.0, 0.0));
  EXPECT_THAT(record.imageArea, ElementsAre(0, 0, 4, 1));
  EXPECT_EQ(record.invert, 1);
}

}  // namespace
