// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>

#include "platform/vision/finder/coarse_search.h"
#include "platform/vision/finder/cpu_variants.h"

namespace finder {

namespace {

constexpr int kPointsPerLook = 8;  // points summed between two looks at what can still be reached

// Bytes that are added in one step. Where the processor's vectors are shorter, the compiler takes
// several of them.
using Bytes = std::uint8_t __attribute__((vector_size(32)));
constexpr int kLanes = 32;
constexpr int kVectors = kTile / kLanes;

RZ_ALWAYS_INLINE void sumTileBody(const std::uint8_t* const* rows, int count, std::ptrdiff_t offset,
                                  int least, std::uint8_t* sums, bool& isReached) {
  Bytes sum[kVectors];
  for (Bytes& s : sum) s = Bytes{};
  isReached = false;
  for (int k = 0; k < count;) {
    const int stop = std::min(k + kPointsPerLook, count);
    for (; k < stop; ++k) {
      const std::uint8_t* row = rows[k] + offset;
      for (int v = 0; v < kVectors; ++v) {
        Bytes bytes;
        std::memcpy(&bytes, row + v * kLanes, sizeof bytes);
        sum[v] += bytes;
      }
    }
    const int missing = least - (count - k) * kBestResponse;
    if (missing <= 0) continue;
    Bytes top = sum[0];
    for (int v = 1; v < kVectors; ++v) top = top > sum[v] ? top : sum[v];
    std::uint8_t lanes[kLanes];
    std::memcpy(lanes, &top, sizeof lanes);
    std::uint8_t best = 0;
    for (const std::uint8_t lane : lanes) best = std::max(best, lane);
    if (best < missing) return;
  }
  std::memcpy(sums, sum, sizeof sum);
  isReached = true;
}

RZ_CPU_VARIANTS(sumTileBody,
                (const std::uint8_t* const* rows, int count, std::ptrdiff_t offset, int least,
                 std::uint8_t* sums, bool& isReached),
                (rows, count, offset, least, sums, isReached))

}  // namespace

bool sumTile(const std::uint8_t* const* rows, int count, std::ptrdiff_t offset, int least,
             std::uint8_t* sums) {
  bool isReached = false;
  RZ_BEST_VARIANT(sumTileBody)(rows, count, offset, least, sums, isReached);
  return isReached;
}

bool sumTileReference(const std::uint8_t* const* rows, int count, std::ptrdiff_t offset, int least,
                      std::uint8_t* sums) {
  std::fill_n(sums, kTile, std::uint8_t{0});
  for (int k = 0; k < count; ++k) {
    for (int i = 0; i < kTile; ++i) {
      sums[i] = static_cast<std::uint8_t>(sums[i] + rows[k][offset + i]);
    }
  }
  return *std::max_element(sums, sums + kTile) >= least;
}

}  // namespace finder
