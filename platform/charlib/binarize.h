// SPDX-License-Identifier: Apache-2.0
//
// The two-valued form of a normalized image.
#pragma once

#include "rz/pel_buffer.h"
#include "rz/types.h"

/// The greatest threshold: every grey lies below it.
inline constexpr rzLong kMaxThreshold = 256;

/// A new image with the window and transforms of `image`: 0 where the grey is below `threshold`,
/// 255 elsewhere; with `invert` the other way round.
rzPelBuffer_const<unsigned char> binarized(const rzPelBuffer_const<unsigned char>& image,
                                           rzLong threshold, bool invert);
