// SPDX-License-Identifier: Apache-2.0
//
// Characters from a font file.
#pragma once

#include <string>
#include <vector>

#include "trained_char.h"

namespace glyphline {

enum class Polarity { kDark, kLight, kAuto };

struct FontTraining {
  std::string file;
  double size = 32.0;  // pels of the em square
  std::u32string chars;
  rzLong margin = 3;                    // pels of background on each side
  Polarity polarity = Polarity::kAuto;  // dark on light, but for kLight
};

/// Height of the font's capitals and its usual spacing, for blanks. Throws Failure for a file that
/// is no font.
BlankFrame blankFrameOf(const FontTraining& training);

/// Each character, unhinted, in grey; a space becomes a blank with the font's advance. Throws
/// Failure for a file that is no font and for a character that the font lacks.
std::vector<TrainedChar> trainFromFont(const FontTraining& training);

}  // namespace glyphline
