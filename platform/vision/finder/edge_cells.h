// SPDX-License-Identifier: Apache-2.0
//
// Where in a picture there are edges at all, in squares of a few pels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace finder {

class EdgeCells {
 public:
  EdgeCells() = default;
  EdgeCells(int width, int height);

  /// Marks the edge at pel (x, y).
  void add(int x, int y) { at_(x / kCell + 1, y / kCell + 1) = 1; }
  /// Ends the marking.
  void sumUp();

  /// Whether a cell that the pels from (left, top) to (right, bottom), both included, touch has
  /// edges. They may lie outside of the picture.
  bool anyWithin(int left, int top, int right, int bottom) const;

 private:
  static constexpr int kCell = 8;  // pels

  std::uint32_t& at_(int column, int row) {
    return sums_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_ + 1) +
                 static_cast<std::size_t>(column)];
  }
  std::uint32_t upTo_(int column, int row) const;

  int columns_ = 0;
  int rows_ = 0;
  std::vector<std::uint32_t> sums_;  // of the cells above and to the left
};

}  // namespace finder
