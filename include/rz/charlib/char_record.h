// SPDX-License-Identifier: Apache-2.0
//
// roc_char: one character as a plain C record: key, polarity, images, threshold, metrics and
// names. C++ programs use rzOCChar (oc/char.h), whose setCharacter and getCharacter exchange it.
//
//     roc_char record;
//     if (roc_char_construct(&record) < 0) return 1;
//     ...
//     roc_char_destruct(&record);
//
// A record owns its strings, which come from rstd_string_cloneA and rstd_string_clone32, and its
// references to pels. Do not copy it by plain assignment. It belongs to one thread at a time.
//
// Client rectangles are in the character's own coordinates, image rectangles in pel coordinates
// (the pel in column x and row y covers [x, x + 1) by [y, y + 1)) as fixed-point numbers.
#pragma once

#include "rz/charlib/image.h"
#include "rz/charlib/result.h"
#include "rz/charlib/string.h"
#include "rz/export.h"

#ifdef __cplusplus
extern "C" {
#endif

// Which character it is. -1 in one of the three last fields means "not specified".
typedef struct roc_charKey {
  uint32_t characterCode;  // ROC_UNKNOWN_CODE when unknown
  int32_t instance;
  int32_t variant;
  int32_t fontID;
} roc_charKey;

#define ROC_UNKNOWN_CODE 0xF800u
#define ROC_UNSPECIFIED (-1)

// How a mark differs from its background; a 32-bit number that may hold other values as well.
typedef int32_t roc_charPolarity;
enum { roc_darkOnLight = 1, roc_lightOnDark = 2, roc_polarityUnknown = 4 };

// The bits of roc_charMetrics.specifiedRects.
enum {
  roc_cellRect = 1,
  roc_cellRectImage = 2,
  roc_markRect = 4,
  roc_markRectImage = 8,
  roc_detectedMarkRect = 16,
  roc_detectedMarkRectImage = 32
};

// Rectangles are x, y, width, height.
typedef struct roc_charMetrics {
  uint32_t specifiedRects;
  int32_t isAdvanceSpecified;
  int32_t cellRectImage[4];
  int32_t markRectImage[4];
  int32_t detectedMarkRectImage[4];
  int32_t fixedPointBits;  // fraction bits of the three rectangles above
  int32_t reserved;
  double cellRect[4];
  double markRect[4];
  double detectedMarkRect[4];
  double advance[2];  // displacement to the next character
} roc_charMetrics;

typedef struct roc_char {
  roc_charKey key;
  roc_charPolarity polarity;
  int32_t reserved0;
  rimg_imageConst image;
  rimg_imageConst mask;
  rimg_imageConst normalizedImage;
  int32_t binarizedCached;  // not 0: binarizedImage belongs to normalizedImage and threshold
  int32_t reserved1;
  rimg_imageConst binarizedImage;
  int32_t hasThresholdAndInvert;
  int32_t threshold;  // 0 to 256: greys below it are one value, the others the other
  int32_t invert;
  int32_t imageArea[4];  // pels: x, y, width, height
  int32_t reserved2[5];
  roc_charMetrics metrics;
  rstd_char32* name32;  // each string may be null
  rstd_char32* description32;
  char* name;
  char* description;
} roc_char;

// Makes an empty record of raw memory: the key unset, polarity unknown, 16 fraction bits, unbound
// images, no strings, and 0 elsewhere.
RZ_API rsys_result roc_char_construct(roc_char* record);

// Releases strings and images and leaves an empty record; a second call does no harm.
RZ_API void roc_char_destruct(roc_char* record);

// Gives the record another normalized image with its threshold, inversion and area (x, y, width,
// height). The binarized image and the detected mark rectangle of before are dropped. A threshold
// outside 0 to 256: ROC_THRESHOLD_OUT_OF_RANGE, whatever `hasThresholdAndInvert` says.
RZ_API rsys_result roc_char_setNormalizedImageThresholdAndInvert8(roc_char* record,
                                                                  const rimg_image8Const* image,
                                                                  int32_t hasThresholdAndInvert,
                                                                  int32_t threshold, int32_t invert,
                                                                  const int32_t imageArea[4]);

// Fills the constructed `image` with the binarized image cut to the first specified rectangle of
// markRectImage, detectedMarkRectImage, markRect and detectedMarkRect. Without a normalized image
// it becomes unbound. Failures: ROC_THRESHOLD_NOT_SPECIFIED, ROC_THRESHOLD_OUT_OF_RANGE,
// ROC_RECT_NOT_SPECIFIED, ROC_INTEGER_OVERFLOW.
RZ_API rsys_result roc_char_getBinarizedImageMarkRect8(const roc_char* record,
                                                       rimg_imageConst* image);

#ifdef __cplusplus
}
#endif
