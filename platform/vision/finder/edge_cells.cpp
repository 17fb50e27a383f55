// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/edge_cells.h"

#include <algorithm>

namespace finder {

EdgeCells::EdgeCells(int width, int height)
    : columns_((width + kCell - 1) / kCell),
      rows_((height + kCell - 1) / kCell),
      sums_(static_cast<std::size_t>(columns_ + 1) * static_cast<std::size_t>(rows_ + 1), 0) {}

void EdgeCells::sumUp() {
  for (int row = 1; row <= rows_; ++row) {
    std::uint32_t sum = 0;
    for (int column = 1; column <= columns_; ++column) {
      sum += at_(column, row);
      at_(column, row) = sum + at_(column, row - 1);
    }
  }
}

std::uint32_t EdgeCells::upTo_(int column, int row) const {
  return sums_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_ + 1) +
               static_cast<std::size_t>(column)];
}

bool EdgeCells::anyWithin(int left, int top, int right, int bottom) const {
  const int x0 = std::clamp(left, 0, columns_ * kCell) / kCell;
  const int y0 = std::clamp(top, 0, rows_ * kCell) / kCell;
  const int x1 = std::clamp(right / kCell + 1, x0, columns_);
  const int y1 = std::clamp(bottom / kCell + 1, y0, rows_);
  return upTo_(x1, y1) - upTo_(x0, y1) - upTo_(x1, y0) + upTo_(x0, y0) > 0;
}

}  // namespace finder
