// SPDX-License-Identifier: Apache-2.0
//
// Strings of the C-level character library, ended by a zero character: plain C strings ("A"), and
// strings of 32-bit characters ("32"). What is made here is given back here, not to free().
#pragma once

#include "rz/charlib/result.h"
#include "rz/export.h"

#ifdef __cplusplus
extern "C" {
typedef char32_t rstd_char32;
#else
typedef uint_least32_t rstd_char32;
#endif

// Make a new copy of `string` and store its address in `*copy`, whose former value is not looked
// at. An empty string gives a new empty string.
RZ_API rsys_result rstd_string_cloneA(const char* string, char** copy);
RZ_API rsys_result rstd_string_clone32(const rstd_char32* string, rstd_char32** copy);

// Give a copy back and set the pointer to null; null does no harm.
RZ_API void rstd_string_releaseA(char** copy);
RZ_API void rstd_string_release32(rstd_char32** copy);

#ifdef __cplusplus
}
#endif
