// SPDX-License-Identifier: Apache-2.0
//
// The extreme rows and columns of the pels whose grey is marked in a table.
#pragma once

#include <array>
#include <optional>

#include "rz/pair.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"

using MarkTable = std::array<unsigned char, 256>;  // 1 for a grey of the marks

struct MarkCorners {
  rzPair<rzLong> lowerLeft;   // one past the last row
  rzPair<rzLong> upperRight;  // one past the last column
};

/// The corners of the marks in `rect`, which must lie in the windows of image and mask; nothing
/// when there is no mark. With a bound mask only its care pels count. Scans run inward from each
/// side and stop at the first mark.
std::optional<MarkCorners> markCorners(const rzPelBuffer_const<unsigned char>& image,
                                       const rzPelBuffer_const<unsigned char>& mask,
                                       const rzPelRect& rect, const MarkTable& isMark);
