// SPDX-License-Identifier: Apache-2.0
//
// Which pels around one character are its own ink, which are a neighbour's, and which are paper.
#pragma once

#include <vector>

#include "font_train.h"
#include "rz/pel_buffer.h"
#include "rz/rect.h"

namespace glyphline {

/// What a grey value means near one character.
struct InkScale {
  double paper = 255.0;
  double level = 128.0;  // half way between paper and ink: where an outline runs
  bool isLight = false;  // ink is lighter than paper

  bool isInk(double grey) const { return isLight ? grey > level : grey < level; }
  /// Less than half of it ink, but more than a quarter: the blurred rim of a stroke.
  bool isTinged(double grey) const {
    const double limit = 0.5 * (paper + level);
    return isLight ? grey > limit : grey < limit;
  }
};

enum class PelKind : unsigned char { kPaper, kOwn, kForeign, kOutside };

struct InkMap {
  rzPelRect region;  // pels of the picture; what lies outside the picture is kOutside
  InkScale scale;
  std::vector<PelKind> kinds;  // row by row

  PelKind at(rzLong x, rzLong y) const;
  /// Whether a pel of that kind is at most `reach` columns and rows away.
  bool isNear(rzLong x, rzLong y, PelKind kind, rzLong reach) const;
};

/// Ink is what lies beyond the middle between the two groups of greys around the box (N. Otsu, IEEE
/// Trans. SMC 9, 1979, for the groups). Pieces of ink that lie mostly in the box are the
/// character's own, and so is the largest piece in it; a piece that runs on past the pels next to
/// the box is cut off at the box. `reach` is how far around the box the map goes.
InkMap mapInk(const rzPelBuffer<unsigned char>& picture, const rzPelRect& box, rzLong reach,
              Polarity polarity);

/// The smallest rectangle round the character's own ink, its sides where the greys next to them
/// cross the level; `box` when there is no ink.
rzRect inkBox(const rzPelBuffer<unsigned char>& picture, const InkMap& map, const rzPelRect& box);

}  // namespace glyphline
