// SPDX-License-Identifier: Apache-2.0
//
// The innermost loop of the grid search.
#pragma once

#include <cstddef>
#include <cstdint>

namespace finder {

/// Sums are made for a tile of elements in a step: so many rows of so many. Each element holds two
/// responses, in its lower and its upper four bits.
inline constexpr int kTileRows = 4;
inline constexpr int kTileColumns = 32;

/// Where to put the sums of a tile.
struct TileSums {
  std::uint8_t* lower;  // of the lower four bits
  std::uint8_t* upper;
  std::ptrdiff_t pitch;  // from row to row
};

/// Adds up `count` tiles of responses, from the addresses in `starts` plus `offset` on, rows
/// `pitch` apart. Stops early and returns false, with `sums` untouched, when no sum can reach
/// `least` any more. Sums stay below 256.
bool sumTile(const std::uint8_t* const* starts, int count, std::ptrdiff_t offset,
             std::ptrdiff_t pitch, int least, const TileSums& sums);
/// The same, written plainly, to the end in any case.
bool sumTileReference(const std::uint8_t* const* starts, int count, std::ptrdiff_t offset,
                      std::ptrdiff_t pitch, int least, const TileSums& sums);

}  // namespace finder
