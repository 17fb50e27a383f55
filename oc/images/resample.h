// SPDX-License-Identifier: Apache-2.0
//
// Bringing an image to the pel grid of another, so that the two can be compared by shifts alone.
#pragma once

#include "rz/affine_rectangle.h"
#include "rz/angle.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"

/// A rectangle with axes turned by `xRot` and `yRot`, about the centre of `rect`, that holds it.
rzAffineRectangle rf_SamplingRectangle(const rzPelRect& rect, const rzRadian& xRot,
                                       const rzRadian& yRot);

/// Replaces `runImage` by itself sampled with the steps of `trainImage`: after it the matrix parts
/// of both client transforms agree. `runMask` is sampled with it and becomes 0 or 255; an unbound
/// one stands for a mask that is 255 everywhere. Its pels are 0 where nothing was seen.
void rf_ResampleToMatch(const rzPelBuffer_const<unsigned char>& trainImage,
                        rzPelBuffer<unsigned char>& runImage, rzPelBuffer<unsigned char>& runMask);
