// SPDX-License-Identifier: Apache-2.0
//
// Cutting one character out of a picture.
#pragma once

#include "font_train.h"
#include "rz/pel_buffer.h"

namespace glyphline {

struct CutOut {
  rzPelBuffer<unsigned char> image;  // ink box and margin, offset (0, 0)
  rzPelRect ink;                     // the ink box, in pels of the picture
};

/// The character in `box` with `margin` pels around its ink. The box is drawn in to the ink that it
/// holds. What stands in the margin from neighbouring print is replaced by background, and so is
/// what lies outside the picture. Ink is dark or light as `polarity` says; kAuto takes as background
/// what is more common just around the box.
CutOut cutOut(const rzPelBuffer<unsigned char>& picture, const rzPelRect& box, rzLong margin,
              Polarity polarity);

}  // namespace glyphline
