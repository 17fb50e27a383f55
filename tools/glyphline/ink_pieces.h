// SPDX-License-Identifier: Apache-2.0
//
// The connected pieces of ink of a whole picture.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "font_train.h"
#include "rz/pel_buffer.h"

namespace glyphline {

/// A connected piece of ink; pels that touch at a corner are connected.
struct InkPiece {
  rzPelRect box;
  rzLong numPels = 0;

  rzLong size() const { return std::max(box.width(), box.height()); }
};

struct InkPieces {
  static constexpr int kNone = -1;

  rzPelRect window;      // of the picture
  bool isLight = false;  // ink is lighter than paper
  std::vector<InkPiece> pieces;
  std::vector<int> labels;  // of each pel, row by row, the index of its piece, or kNone

  int at(rzLong x, rzLong y) const {
    return labels[static_cast<std::size_t>(y - window.y()) *
                      static_cast<std::size_t>(window.width()) +
                  static_cast<std::size_t>(x - window.x())];
  }
};

/// Ink is what differs from the paper around it by more than the level that divides the picture's
/// differences best (rfThresholdWGV). For kAuto the picture's border votes: what most of it shows
/// is paper. No pieces when nothing differs from the paper by a contrast worth the name.
InkPieces findInkPieces(const rzPelBuffer<unsigned char>& picture, Polarity polarity);

}  // namespace glyphline
