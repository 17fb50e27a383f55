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

RZ_ALWAYS_INLINE void load(const std::uint8_t* from, Bytes& bytes) {
  std::memcpy(&bytes, from, sizeof bytes);
}

RZ_ALWAYS_INLINE int greatestOf(const Bytes& bytes) {
  std::uint8_t lanes[kTileColumns];
  std::memcpy(lanes, &bytes, sizeof lanes);
  std::uint8_t greatest = 0;
  for (const std::uint8_t lane : lanes) greatest = std::max(greatest, lane);
  return greatest;
}

// Sums of both responses of a row's elements, as they are: `upper` times 16 plus the lower ones,
// modulo 256; and of the upper ones alone.
struct RowSums {
  Bytes both{};
  Bytes upper{};
};

RZ_ALWAYS_INLINE void addGroup(const Bytes& group, RowSums& sums) {
  sums.both += group;
  sums.upper += group >> 4;
}

RZ_ALWAYS_INLINE void lowerOf(const RowSums& sums, Bytes& lower) {
  lower = sums.both - (sums.upper << 4);
}

RZ_ALWAYS_INLINE void sumTileBody(const std::uint8_t* const* starts, int count,
                                  std::ptrdiff_t offset, std::ptrdiff_t pitch, int least,
                                  const TileSums& sums, bool& isReached) {
  RowSums rows[kTileRows];
  isReached = false;
  int stop = count - least / kBestResponse + kGroup;
  for (int k = 0;;) {
    for (; k < stop && k + kGroup <= count; k += kGroup) {
      const std::uint8_t* a = starts[k] + offset;
      const std::uint8_t* b = starts[k + 1] + offset;
      const std::uint8_t* c = starts[k + 2] + offset;
      for (int r = 0; r < kTileRows; ++r) {
        Bytes group, more;
        load(a + r * pitch, group);
        load(b + r * pitch, more);
        group += more;
        load(c + r * pitch, more);
        group += more;
        addGroup(group, rows[r]);
      }
    }
    if (k + kGroup > count) {
      for (; k < count; ++k) {
        for (int r = 0; r < kTileRows; ++r) {
          Bytes single;
          load(starts[k] + offset + r * pitch, single);
          addGroup(single, rows[r]);
        }
      }
    }
    Bytes top{};
    for (const RowSums& row : rows) {
      Bytes lower;
      lowerOf(row, lower);
      top = top > lower ? top : lower;
      top = top > row.upper ? top : row.upper;
    }
    if (greatestOf(top) < least - (count - k) * kBestResponse) return;
    if (k == count) break;
    stop = k + kPointsPerLook;
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
