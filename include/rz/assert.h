// SPDX-License-Identifier: Apache-2.0
//
// The guard for broken invariants: faults of the program that no input, file or parameter can
// cause. What a caller or a file can cause is an exception instead.
#pragma once

#include "rz/export.h"

/// Prints source and line to the standard error stream and ends the process.
[[noreturn]] RZ_API void rf_AssertionFailed(const char* source, int line) noexcept;

/// Ends the process when `condition` does not hold: `rstd_assert_(first < last, __LINE__);`
inline void rstd_assert_(bool condition, int line, const char* source = __builtin_FILE()) {
  if (!condition) rf_AssertionFailed(source, line);
}
