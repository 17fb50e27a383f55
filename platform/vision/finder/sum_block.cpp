// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/sum_block.h"

#include <algorithm>
#include <cmath>

namespace finder {

SumBlock::SumBlock(const ResponseMaps& maps, int x, int y, double radius)
    : maps_(maps), firstColumn_(x), firstRow_(y) {
  halves_[0].firstRow = y;
  halves_[0].endRow = maps.foldedRows;
  halves_[1].firstRow = y + maps.foldedRows;
  halves_[1].endRow = maps.pictureRows;
  // Points are rounded to pels, and edges respond at a distance.
  const int reach = static_cast<int>(std::ceil(radius)) + 1 + kSpread;
  for (int dy = 0; dy < std::min(kBlockRows, maps.foldedRows - y); dy += kTileRows) {
    for (int dx = 0; dx < std::min(kBlockColumns, maps.pictureColumns - x); dx += kTileColumns) {
      const Place tile{dx, dy};
      if (isNearEdges_(tile, halves_[0], reach) || isNearEdges_(tile, halves_[1], reach)) {
        tiles_.push_back(tile);
      }
    }
  }
}

bool SumBlock::isNearEdges_(Place tile, const Half& half, int reach) const {
  const int left = kStride * (firstColumn_ + tile.x);
  const int top = kStride * (half.firstRow + tile.y);
  const int right = left + kStride * (kTileColumns - 1);
  const int bottom = top + kStride * (kTileRows - 1);
  return maps_.edges.anyWithin(left - reach, top - reach, right + reach, bottom + reach);
}

void SumBlock::collect(const std::vector<const std::uint8_t*>& starts, int turn, int least,
                       std::vector<Peak>& peaks) {
  const auto count = static_cast<int>(starts.size());
  for (const Place tile : tiles_) {
    const std::ptrdiff_t at = maps_.placeIndex(firstColumn_ + tile.x, firstRow_ + tile.y);
    const TileSums sums{&halves_[0].at(tile.x, tile.y), &halves_[1].at(tile.x, tile.y),
                        kBlockColumns};
    if (sumTile(starts.data(), count, at, maps_.columns, least, sums)) used_.push_back(tile);
  }
  if (used_.empty()) return;
  for (Half& half : halves_) {
    collect_(half, starts, turn, least, peaks);
    for (const Place tile : used_) {
      for (int y = tile.y; y < tile.y + kTileRows; ++y) {
        std::fill_n(&half.at(tile.x, y), kTileColumns, std::uint8_t{0});
      }
    }
  }
  used_.clear();
}

void SumBlock::collect_(Half& half, const std::vector<const std::uint8_t*>& starts, int turn,
                        int least, std::vector<Peak>& peaks) {
  for (const Place tile : used_) {
    const int right = std::min(tile.x + kTileColumns, maps_.pictureColumns - firstColumn_);
    const int bottom = std::min(tile.y + kTileRows, half.endRow - half.firstRow);
    for (int y = tile.y; y < bottom; ++y) {
      for (int x = tile.x; x < right; ++x) {
        if (half.at(x, y) < least || !isPeak_(half, starts, x, y)) continue;
        peaks.push_back({firstColumn_ + x, half.firstRow + y, turn, half.at(x, y)});
      }
    }
  }
}

bool SumBlock::isPeak_(Half& half, const std::vector<const std::uint8_t*>& starts, int x,
                       int y) const {
  const int here = half.at(x, y);
  // Among equals the first one counts.
  const auto isBelow = [here](int sum, int dx, int dy) {
    return dy < 0 || (dy == 0 && dx < 0) ? sum < here : sum <= here;
  };
  const int columns = std::min(kBlockColumns, maps_.pictureColumns - firstColumn_);
  const int rows = std::min(kBlockRows, half.endRow - half.firstRow);
  const auto isInBlock = [&](int dx, int dy) {
    return x + dx >= 0 && x + dx < columns && y + dy >= 0 && y + dy < rows;
  };
  for (int dy = -1; dy <= 1; ++dy) {
    for (int dx = -1; dx <= 1; ++dx) {
      if ((dx == 0 && dy == 0) || !isInBlock(dx, dy)) continue;
      if (!isBelow(half.at(x + dx, y + dy), dx, dy)) return false;
    }
  }
  // At the block's rim, what lies beyond it.
  for (int dy = -1; dy <= 1; ++dy) {
    for (int dx = -1; dx <= 1; ++dx) {
      if (isInBlock(dx, dy)) continue;
      if (!isBelow(sumAt_(starts, firstColumn_ + x + dx, half.firstRow + y + dy), dx, dy)) {
        return false;
      }
    }
  }
  return true;
}

// 0 outside of the picture.
int SumBlock::sumAt_(const std::vector<const std::uint8_t*>& starts, int x, int y) const {
  if (x < 0 || y < 0 || x >= maps_.pictureColumns || y >= maps_.pictureRows) return 0;
  const bool isUpper = y >= maps_.foldedRows;
  const std::ptrdiff_t at = maps_.placeIndex(x, isUpper ? y - maps_.foldedRows : y);
  int sum = 0;
  for (const std::uint8_t* start : starts) sum += isUpper ? start[at] >> 4 : start[at] & 15;
  return sum;
}

}  // namespace finder
