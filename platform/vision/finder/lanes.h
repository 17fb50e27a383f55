// SPDX-License-Identifier: Apache-2.0
//
// Four numbers side by side: the compiler's vectors, as every processor of today has them. Loops
// over a pattern's points take four of them in a step.
#pragma once

#include <cmath>
#include <cstdint>

#include "platform/vision/finder/cpu_variants.h"
#include "platform/vision/finder/geometry.h"

namespace finder {

inline constexpr int kLanes = 4;
using Floats = float __attribute__((vector_size(4 * kLanes)));
/// What comparisons of Floats give: -1 where they hold, else 0.
using Ints = std::int32_t __attribute__((vector_size(4 * kLanes)));

// For Floats, and for single numbers too.
template <class Value>
RZ_ALWAYS_INLINE Value lesser(Value a, Value b) {
  return a < b ? a : b;
}
template <class Value>
RZ_ALWAYS_INLINE Value greater(Value a, Value b) {
  return a > b ? a : b;
}
/// Brought into 0 to 1.
template <class Value>
RZ_ALWAYS_INLINE Value unitClamped(Value a) {
  return lesser(greater(a, Value{}), Value{} + 1.0F);
}

RZ_ALWAYS_INLINE Floats absolute(Floats a) { return a < 0.0F ? -a : a; }

RZ_ALWAYS_INLINE Floats rootOf(Floats a) {
  for (int l = 0; l < kLanes; ++l) a[l] = std::sqrt(a[l]);
  return a;
}

RZ_ALWAYS_INLINE double sumOf(Floats a) {
  double sum = 0.0;
  for (int l = 0; l < kLanes; ++l) sum += static_cast<double>(a[l]);
  return sum;
}

/// A linear map with numbers as the lanes have them.
struct FloatMap {
  explicit FloatMap(const Mat2& m)
      : xx(static_cast<float>(m.xx)),
        xy(static_cast<float>(m.xy)),
        yx(static_cast<float>(m.yx)),
        yy(static_cast<float>(m.yy)) {}

  float xx, xy, yx, yy;
};

}  // namespace finder
