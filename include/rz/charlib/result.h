// SPDX-License-Identifier: Apache-2.0
//
// Result codes of the C-level character library. Each of its operations answers a signed 32-bit
// number: 0 or more is success, a negative number names the failure, and on failure nothing that
// the operation was given has changed. No operation throws, and none prints or ends the process.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "rz/export.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef int32_t rsys_result;

// The codes are written as 32-bit patterns; the cast gives the negative number of that pattern.
#define RSYS_SUCCESS ((rsys_result)0)
// A pointer that must not be null is null, or a size cannot be.
#define RSYS_BAD_ARGUMENT ((rsys_result)0x80000021)
#define RSYS_NO_MEMORY ((rsys_result)0x80000022)
// A threshold is not in 0 to 256.
#define ROC_THRESHOLD_OUT_OF_RANGE ((rsys_result)0x800013EC)
// The binarized image needs threshold and invert, and the record has none.
#define ROC_THRESHOLD_NOT_SPECIFIED ((rsys_result)0x800013ED)
// No mark rectangle is marked as specified.
#define ROC_RECT_NOT_SPECIFIED ((rsys_result)0x800013EF)
// A number has no fixed-point form in 32 bits.
#define ROC_FIXED_POINT_OVERFLOW ((rsys_result)0x800013F0)
// A coordinate is not finite or does not fit into 32 bits.
#define ROC_INTEGER_OVERFLOW ((rsys_result)0x800013F1)

// Copies `length` bytes; the two places must not overlap.
RZ_API rsys_result rsys_memory_copy(size_t length, const void* source, void* destination);

#ifdef __cplusplus
}
#endif
