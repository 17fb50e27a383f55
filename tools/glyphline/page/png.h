// SPDX-License-Identifier: Apache-2.0
//
// Grey pels in the form in which a page embeds them.
#pragma once

#include <string>
#include <string_view>

#include "rz/pel_buffer.h"

namespace glyphline {

/// The window's pels as an 8-bit grey PNG file. Throws Failure when that cannot be made.
std::string pngOf(const rzPelBuffer_const<unsigned char>& image);

/// The base 64 form (RFC 4648, with padding) of any bytes.
std::string base64Of(std::string_view bytes);

}  // namespace glyphline
