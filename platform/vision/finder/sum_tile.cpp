// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/sum_tile.h"

#include <algorithm>
#include <cstring>

#include "platform/vision/finder/cpu_variants.h"
#include "platform/vision/finder/picture_features.h"

namespace finder {

namespace {

// So many responses add up in four bits.
constexpr int kGroup = 3;
static_assert(kGroup * kBestResponse < 16);
// What can still be reached is looked at when it might first be too little, and again after so many
// points.
constexpr int kPointsPerLook = 3 * kGroup;

// A row of a tile. Where the processor's vectors are shorter, the compiler takes several of them.
using Bytes = std::uint8_t __attribute__((vector_size(kTileColumns)));

// Sums of both responses of a row's elements, as they are: `upper` times 16 plus the lower ones,
// modulo 256; and of the upper ones alone.
struct RowSums {
  Bytes both{};
  Bytes upper{};
};

// Adds the tiles of so many points, no more than a group.
template <int kPoints>
RZ_ALWAYS_INLINE void addTiles(const std::uint8_t* const* starts, std::ptrdiff_t offset,
                               std::ptrdiff_t pitch, RowSums* rows) {
  static_assert(kPoints <= kGroup);
  for (int r = 0; r < kTileRows; ++r) {
    Bytes group{};
    for (int i = 0; i < kPoints; ++i) {
      Bytes bytes;
      std::memcpy(&bytes, starts[i] + offset + r * pitch, sizeof bytes);
      group += bytes;
    }
    rows[r].both += group;
    rows[r].upper += group >> 4;
  }
}

RZ_ALWAYS_INLINE void lowerOf(const RowSums& sums, Bytes& lower) {
  lower = sums.both - (sums.upper << 4);
}

RZ_ALWAYS_INLINE int greatestOf(const RowSums* rows) {
  Bytes top{};
  for (int r = 0; r < kTileRows; ++r) {
    Bytes lower;
    lowerOf(rows[r], lower);
    top = top > lower ? top : lower;
    top = top > rows[r].upper ? top : rows[r].upper;
  }
  std::uint8_t lanes[kTileColumns];
  std::memcpy(lanes, &top, sizeof lanes);
  std::uint8_t greatest = 0;
  for (const std::uint8_t lane : lanes) greatest = std::max(greatest, lane);
  return greatest;
}

RZ_ALWAYS_INLINE void sumTileBody(const std::uint8_t* const* starts, int count,
                                  std::ptrdiff_t offset, std::ptrdiff_t pitch, int least,
                                  const TileSums& sums, bool& isReached) {
  RowSums rows[kTileRows];
  isReached = false;
  int stop = count - least / kBestResponse + kGroup;
  for (int k = 0; k < count; stop = k + kPointsPerLook) {
    for (; k < stop && k + kGroup <= count; k += kGroup) {
      addTiles<kGroup>(starts + k, offset, pitch, rows);
    }
    if (k + kGroup > count) {
      for (; k < count; ++k) addTiles<1>(starts + k, offset, pitch, rows);
    }
    if (greatestOf(rows) < least - (count - k) * kBestResponse) return;
  }
  for (int r = 0; r < kTileRows; ++r) {
    Bytes lower;
    lowerOf(rows[r], lower);
    std::memcpy(sums.lower + r * sums.pitch, &lower, sizeof lower);
    std::memcpy(sums.upper + r * sums.pitch, &rows[r].upper, sizeof rows[r].upper);
  }
  isReached = true;
}

RZ_CPU_VARIANTS(sumTileBody,
                (const std::uint8_t* const* starts, int count, std::ptrdiff_t offset,
                 std::ptrdiff_t pitch, int least, const TileSums& sums, bool& isReached),
                (starts, count, offset, pitch, least, sums, isReached))

}  // namespace

bool sumTile(const std::uint8_t* const* starts, int count, std::ptrdiff_t offset,
             std::ptrdiff_t pitch, int least, const TileSums& sums) {
  bool isReached = false;
  RZ_BEST_VARIANT(sumTileBody)(starts, count, offset, pitch, least, sums, isReached);
  return isReached;
}

bool sumTileReference(const std::uint8_t* const* starts, int count, std::ptrdiff_t offset,
                      std::ptrdiff_t pitch, int least, const TileSums& sums) {
  int best = 0;
  for (int r = 0; r < kTileRows; ++r) {
    for (int c = 0; c < kTileColumns; ++c) {
      int lower = 0;
      int upper = 0;
      for (int k = 0; k < count; ++k) {
        const std::uint8_t both = starts[k][offset + r * pitch + c];
        lower += both & 15;
        upper += both >> 4;
      }
      sums.lower[r * sums.pitch + c] = static_cast<std::uint8_t>(lower);
      sums.upper[r * sums.pitch + c] = static_cast<std::uint8_t>(upper);
      best = std::max({best, lower, upper});
    }
  }
  return best >= least;
}

}  // namespace finder
