// SPDX-License-Identifier: Apache-2.0
//
// The normalized image of a record and the binarized image that follows from it.
#include <algorithm>
#include <limits>

#include "platform/charlib/binarize.h"
#include "platform/charlib/image_block.h"
#include "rz/affine_rectangle.h"
#include "rz/charlib/char_record.h"
#include "rz/charlib/fixed_rect.h"
#include "rz/charlib/image_wrap.h"
#include "rz/math_error.h"
#include "rz/rect.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

bool fits(double value) {
  return value >= std::numeric_limits<rzLong>::min() && value <= std::numeric_limits<rzLong>::max();
}

bool fits(const rzRect& rect) {
  return fits(rect.ul().x()) && fits(rect.ul().y()) && fits(rect.lr().x()) && fits(rect.lr().y());
}

rzRect clientRect(const double (&r)[4], const rzXform<2>& imageFromClient) {
  const rzRect rect(r[0], r[1], r[2], r[3]);
  return rzAffineRectangle(rect.ul(), rect.ur(), rect.ll()).map(imageFromClient).encloseRect();
}

rsys_result imageRect(const std::int32_t (&fixed)[4], std::int32_t bits, rzRect& rect) {
  double r[4];
  const rsys_result result = roc_rectDInitFromRect32Fixed_(r, fixed, bits);
  if (result >= 0) rect = rzRect(r[0], r[1], r[2], r[3]);
  return result;
}

// The first specified mark rectangle, in the image's real coordinates.
rsys_result markRect(const roc_charMetrics& metrics, const Image& image, rzRect& rect) {
  const auto isSpecified = [&](std::uint32_t bit) { return (metrics.specifiedRects & bit) != 0; };
  if (isSpecified(roc_markRectImage)) {
    return imageRect(metrics.markRectImage, metrics.fixedPointBits, rect);
  }
  if (isSpecified(roc_detectedMarkRectImage)) {
    return imageRect(metrics.detectedMarkRectImage, metrics.fixedPointBits, rect);
  }
  if (isSpecified(roc_markRect)) {
    rect = clientRect(metrics.markRect, image.imageFromClientXform());
    return RSYS_SUCCESS;
  }
  if (isSpecified(roc_detectedMarkRect)) {
    rect = clientRect(metrics.detectedMarkRect, image.imageFromClientXform());
    return RSYS_SUCCESS;
  }
  return ROC_RECT_NOT_SPECIFIED;
}

// The whole pels that hold the mark.
rsys_result markPels(const roc_charMetrics& metrics, const Image& image, rzPelRect& pels) {
  rzRect rect;
  const rsys_result result = markRect(metrics, image, rect);
  if (result < 0) return result;
  if (!fits(rect)) return ROC_INTEGER_OVERFLOW;
  try {
    pels = rect.enclosePelRect();
  } catch (const rzMathError::Overflow&) {
    return ROC_INTEGER_OVERFLOW;
  }
  return RSYS_SUCCESS;
}

rsys_result binarizedImage(const roc_char& record, Image& image) {
  if (record.binarizedCached) {
    image = rfConvertImage(record.binarizedImage);
    return RSYS_SUCCESS;
  }
  image = rfConvertImage(record.normalizedImage);
  if (!image.isBound()) return RSYS_SUCCESS;
  if (record.threshold > kMaxThreshold) return ROC_THRESHOLD_OUT_OF_RANGE;
  image = binarized(image, record.threshold, record.invert != 0);
  return RSYS_SUCCESS;
}

// The answer of roc_char_getBinarizedImageMarkRect8 as a newly constructed image.
rsys_result constructMarkImage(const roc_char& record, rimg_imageConst& result) {
  const rimg_imageConst& source =
      record.binarizedCached ? record.binarizedImage : record.normalizedImage;
  rzPelRect pels;
  rsys_result code = markPels(record.metrics, rfConvertImage(source), pels);
  if (code < 0) return code;
  Image image;
  code = binarizedImage(record, image);
  if (code < 0) return code;
  if (image.isBound()) image.window(pels, true);
  constructImage(result, image);
  return RSYS_SUCCESS;
}

}  // namespace

rsys_result roc_char_setNormalizedImageThresholdAndInvert8(
    roc_char* record, const rimg_image8Const* image, std::int32_t hasThresholdAndInvert,
    std::int32_t threshold, std::int32_t invert, const std::int32_t imageArea[4]) {
  if (!record || !image || !imageArea) return RSYS_BAD_ARGUMENT;
  if (threshold < 0 || threshold > kMaxThreshold) return ROC_THRESHOLD_OUT_OF_RANGE;
  rimg_imageConst_assign(&record->normalizedImage, image);
  record->binarizedCached = 0;
  rimg_imageConst_destruct(&record->binarizedImage);
  record->hasThresholdAndInvert = hasThresholdAndInvert != 0 ? 1 : 0;
  record->threshold = threshold;
  record->invert = invert != 0 ? 1 : 0;
  std::copy_n(imageArea, 4, record->imageArea);
  record->metrics.specifiedRects &= ~std::uint32_t{roc_detectedMarkRect};
  std::ranges::fill(record->metrics.detectedMarkRect, 0.0);
  return RSYS_SUCCESS;
}

rsys_result roc_char_getBinarizedImageMarkRect8(const roc_char* record, rimg_imageConst* image) {
  if (!record || !image) return RSYS_BAD_ARGUMENT;
  if (!record->hasThresholdAndInvert) return ROC_THRESHOLD_NOT_SPECIFIED;
  rimg_imageConst found = {};
  rsys_result code = RSYS_SUCCESS;
  const rsys_result raised = resultOf([&] { code = constructMarkImage(*record, found); });
  if (raised < 0) return raised;
  if (code < 0) return code;
  rimg_imageConst_destruct(image);
  *image = found;
  return RSYS_SUCCESS;
}
