// SPDX-License-Identifier: Apache-2.0
//
// Cutting the patch of an image in which a character must lie, in the character's own frame.
#pragma once

#include "rz/angle.h"
#include "rz/pair.h"
#include "rz/pel_buffer.h"
#include "rz/xform.h"

/// Fills `region` with the patch of `image` that holds `window` of a character (whose client
/// transform is `clientFromImage`) at `pose`, for turns of up to `rotationUncertainty` degrees and
/// changes of size of up to `scaleUncertainty`. A third is added on each side where the image has
/// the room. False, and an unbound `region`, where even the bare patch would leave the image.
bool rf_SampleCharRegion(rzPelBuffer<unsigned char>& region,
                         const rzPelBuffer_const<unsigned char>& image, const rzPelRect& window,
                         const rzXform<2>& clientFromImage, const rzXform<2>& pose,
                         double rotationUncertainty, double scaleUncertainty);

/// Box of `rect` turned about its centre by up to `rotation` either way and made larger by
/// `scaleUncertainty`, rounded outward.
rzPelRect rf_SweptRect(const rzPelRect& rect, const rzDegree& rotation, double scaleUncertainty);

/// Renumbers the pels of a buffer so that the window starts at `offset`; client coordinates stay.
void rf_SetOffset(rzPelBuffer<unsigned char>& buffer, const rzPair<rzLong>& offset);

/// Floor and ceiling that take a value a hair from a whole number for that number; `tolerance` is
/// relative.
rzLong rf_RoundDown(double value, double tolerance);
rzLong rf_RoundUp(double value, double tolerance);
