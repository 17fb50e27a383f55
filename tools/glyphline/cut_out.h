// SPDX-License-Identifier: Apache-2.0
//
// Cutting one character out of a picture.
#pragma once

#include "font_train.h"
#include "rz/pel_buffer.h"
#include "rz/rect.h"

namespace glyphline {

struct CutOut {
  rzPelBuffer<unsigned char> image;  // ink box and margin, offset (0, 0)
  rzVector<2> corner;                // of the image, upper left, in pels of the picture
  rzRect ink;                        // the ink box, in pels of the picture
};

/// The character in `box` with `margin` pels around its ink, which lies in the very middle of the
/// image: the picture is shifted for that by a part of a pel, a quarter at most. Given boxes may
/// hold more than the ink or cut its rim. What neighbouring print leaves in the image is replaced
/// by paper, and so is what lies outside the picture. Ink is dark or light as `polarity` says;
/// kAuto takes as paper what is more common just around the box.
CutOut cutOut(const rzPelBuffer<unsigned char>& picture, const rzPelRect& box, rzLong margin,
              Polarity polarity);

}  // namespace glyphline
