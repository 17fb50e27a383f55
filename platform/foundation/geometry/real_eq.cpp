// SPDX-License-Identifier: Apache-2.0
#include "rz/real_eq.h"

#include <limits>

#include "rz/math_error.h"

namespace {

rzLong narrow(double whole) {
  constexpr double kLowest = std::numeric_limits<rzLong>::min();
  constexpr double kHighest = std::numeric_limits<rzLong>::max();
  if (!(whole >= kLowest && whole <= kHighest)) {
    throw rzMathError::Overflow("Number does not fit into 32 bits");
  }
  return static_cast<rzLong>(whole);
}

}  // namespace

rzLong rfIFloor(double value) { return narrow(std::floor(value)); }

rzLong rfICeil(double value) { return narrow(std::ceil(value)); }
