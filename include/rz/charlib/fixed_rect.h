// SPDX-License-Identifier: Apache-2.0
//
// Rectangles in fixed point: x, y, width and height as 32-bit numbers, each the real number times
// 2 to the power of `bits`. `bits` may be any number, also a negative one.
#pragma once

#include "rz/charlib/result.h"
#include "rz/export.h"

#ifdef __cplusplus
extern "C" {
#endif

// To fixed point, rounded to the nearest number and halves away from zero. NaN and what does not
// fit into 32 bits: ROC_FIXED_POINT_OVERFLOW.
RZ_API rsys_result roc_rect32FixedInitFromRectD_(int32_t fixedRect[4], int32_t bits,
                                                 const double rect[4]);

// From fixed point, exactly. A result that is not finite: ROC_INTEGER_OVERFLOW.
RZ_API rsys_result roc_rectDInitFromRect32Fixed_(double rect[4], const int32_t fixedRect[4],
                                                 int32_t bits);

#ifdef __cplusplus
}
#endif
