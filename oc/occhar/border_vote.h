// SPDX-License-Identifier: Apache-2.0
//
// Which side of a threshold is the background: the side that most of the border shows.
#pragma once

#include "oc/oc_defs.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"

/// Looks at the outermost pels of each row and column of `rect`, with a bound mask at the outermost
/// care pels. `rect` must lie in the windows of image and mask. Unknown when the votes are equal.
rzOCDefs::Polarity borderVote(const rzPelBuffer_const<unsigned char>& image,
                              const rzPelBuffer_const<unsigned char>& mask, const rzPelRect& rect,
                              rzLong threshold);
