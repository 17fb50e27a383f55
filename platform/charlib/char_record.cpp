// SPDX-License-Identifier: Apache-2.0
#include "rz/charlib/char_record.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>

static_assert(sizeof(roc_charKey) == 16);
static_assert(offsetof(roc_charKey, characterCode) == 0 && offsetof(roc_charKey, instance) == 4);
static_assert(offsetof(roc_charKey, variant) == 8 && offsetof(roc_charKey, fontID) == 12);

static_assert(sizeof(roc_charMetrics) == 176);
static_assert(offsetof(roc_charMetrics, specifiedRects) == 0);
static_assert(offsetof(roc_charMetrics, isAdvanceSpecified) == 4);
static_assert(offsetof(roc_charMetrics, cellRectImage) == 8);
static_assert(offsetof(roc_charMetrics, markRectImage) == 24);
static_assert(offsetof(roc_charMetrics, detectedMarkRectImage) == 40);
static_assert(offsetof(roc_charMetrics, fixedPointBits) == 56);
static_assert(offsetof(roc_charMetrics, cellRect) == 64);
static_assert(offsetof(roc_charMetrics, markRect) == 96);
static_assert(offsetof(roc_charMetrics, detectedMarkRect) == 128);
static_assert(offsetof(roc_charMetrics, advance) == 160);

static_assert(sizeof(roc_char) == 448);
static_assert(offsetof(roc_char, key) == 0 && offsetof(roc_char, polarity) == 16);
static_assert(offsetof(roc_char, image) == 24 && offsetof(roc_char, mask) == 64);
static_assert(offsetof(roc_char, normalizedImage) == 104);
static_assert(offsetof(roc_char, binarizedCached) == 144);
static_assert(offsetof(roc_char, binarizedImage) == 152);
static_assert(offsetof(roc_char, hasThresholdAndInvert) == 192);
static_assert(offsetof(roc_char, threshold) == 196 && offsetof(roc_char, invert) == 200);
static_assert(offsetof(roc_char, imageArea) == 204 && offsetof(roc_char, metrics) == 240);
static_assert(offsetof(roc_char, name32) == 416 && offsetof(roc_char, description32) == 424);
static_assert(offsetof(roc_char, name) == 432 && offsetof(roc_char, description) == 440);

namespace {

constexpr std::int32_t kDefaultFractionBits = 16;

}  // namespace

rsys_result roc_char_construct(roc_char* record) {
  if (!record) return RSYS_BAD_ARGUMENT;
  *record = {};
  record->key = {ROC_UNKNOWN_CODE, ROC_UNSPECIFIED, ROC_UNSPECIFIED, ROC_UNSPECIFIED};
  record->polarity = roc_polarityUnknown;
  record->metrics.fixedPointBits = kDefaultFractionBits;
  return RSYS_SUCCESS;
}

void roc_char_destruct(roc_char* record) {
  if (!record) return;
  for (rimg_imageConst* image :
       {&record->image, &record->mask, &record->normalizedImage, &record->binarizedImage}) {
    rimg_imageConst_destruct(image);
  }
  rstd_string_release32(&record->name32);
  rstd_string_release32(&record->description32);
  rstd_string_releaseA(&record->name);
  rstd_string_releaseA(&record->description);
  roc_char_construct(record);
}
