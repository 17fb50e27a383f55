// SPDX-License-Identifier: Apache-2.0
//
// The steps of rf_AffineTransform.
#pragma once

#include "oc/affine_transform.h"
#include "rz/affine_rectangle.h"
#include "rz/angle.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"
#include "rz/xform.h"

/// Half the sum of the upper left and the lower right corner.
rzVector<2> rf_CenterOf(const rzPelRect& rect);

/// The rectangle through the images of upper left, upper right and lower left corner; a null
/// `xform` leaves them as they are.
rzAffineRectangle rf_MapRect(const rzPelRect& rect, const rzXform<2>* xform);

/// The smallest rectangle with axes turned by `xRot` and `yRot` that holds `rect`.
rzAffineRectangle rf_EncloseRotated(const rzPelRect& rect, const rzRadian& xRot,
                                    const rzRadian& yRot);

/// `out` becomes a new buffer on `outer`: the pels of `source` from `inner`, a part of its whole
/// root, and round about their reflection. The two rectangles have pels in common.
void rf_CopyWithBorder(const rzPelBuffer_const<unsigned char>& source, const rzPelRect& inner,
                       const rzPelRect& outer, rzPelBuffer_const<unsigned char>& out);

/// Fills the window round `inner`, a part of it, by reflection: first above and below, then to the
/// left and right over all rows. The border pels of `inner` come twice; where `inner` is narrower
/// than the frame its farthest pels are repeated.
void rf_MirrorBorders(rzPelBuffer<unsigned char>& buffer, const rzPelRect& inner);
