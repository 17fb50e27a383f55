// SPDX-License-Identifier: Apache-2.0
//
// Reading pictures: PNG, JPEG, TIFF, BMP, PNM and WebP, 8 or 16 bit, grey or colour. Colour becomes
// grey by luminance, transparency is laid over white.
#pragma once

#include <string>

#include "rz/pel_buffer.h"

namespace glyphline {

/// The picture in the file, or on standard input for "-". Throws Failure naming the file.
rzPelBuffer<unsigned char> readPicture(const std::string& path);

}  // namespace glyphline
