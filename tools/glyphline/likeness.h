// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "rz/pel_buffer.h"

namespace glyphline {

/// Normalised correlation of two small pictures laid on each other by their middles, over what both
/// have, at the best of the shifts up to one pel. -1 to 1; 0 when one of them is flat.
double likeness(const rzPelBuffer<unsigned char>& a, const rzPelBuffer<unsigned char>& b);

/// Which of the pictures is most like the others; of two or one, the first.
std::size_t mostTypical(const std::vector<rzPelBuffer<unsigned char>>& pictures);

}  // namespace glyphline
