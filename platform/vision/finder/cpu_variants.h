// SPDX-License-Identifier: Apache-2.0
//
// Hot loops are written once, as an inline function without special instructions, and compiled
// twice: for every processor of the kind, and for those with 256-bit integer vectors. The choice is
// made when the loop is called. All loops give the same bits in both variants.
//
//   RZ_ALWAYS_INLINE void scale(float* p, int n) { ... }
//   RZ_CPU_VARIANTS(scale, (float* p, int n), (p, n))
//   RZ_BEST_VARIANT(scale)(p, n);
//
// makes scalePlain and scaleWide and calls one of them.
#pragma once

#include <atomic>

#define RZ_ALWAYS_INLINE inline __attribute__((always_inline))

#if defined(__x86_64__)

#define RZ_CPU_VARIANTS(name, parameters, arguments) \
  void name##Plain parameters { name arguments; }    \
  __attribute__((target("avx2"))) void name##Wide parameters { name arguments; }
#define RZ_BEST_VARIANT(name) (finder::hasWideVectors() ? name##Wide : name##Plain)

#else

#define RZ_CPU_VARIANTS(name, parameters, arguments) \
  void name##Plain parameters { name arguments; }
#define RZ_BEST_VARIANT(name) (name##Plain)

#endif

namespace finder {

/// For tests and measurements: false makes all loops run as on a processor without wide vectors.
inline std::atomic<bool> wideVectorsAllowed{true};

inline bool hasWideVectors() {
#if defined(__x86_64__)
  static const bool has = __builtin_cpu_supports("avx2") != 0;
  return has && wideVectorsAllowed.load(std::memory_order_relaxed);
#else
  return false;
#endif
}

}  // namespace finder
