// SPDX-License-Identifier: Apache-2.0
//
// Small helpers on doubles: comparison with a tolerance, and rounding into a 32-bit integer that
// refuses what does not fit.
#pragma once

#include <cmath>

#include "rz/export.h"
#include "rz/types.h"

/// The absolute difference is at most `epsilon`. False when a number is NaN, and for infinities.
inline bool rfRealEq(double a, double b, double epsilon) { return std::fabs(a - b) <= epsilon; }

/// Largest integer that is not above `value`. Throws rzMathError::Overflow when it is out of the
/// range of rzLong or `value` is NaN.
RZ_API rzLong rfIFloor(double value);

/// Smallest integer that is not below `value`. Throws rzMathError::Overflow as rfIFloor does.
RZ_API rzLong rfICeil(double value);
