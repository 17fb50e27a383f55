// SPDX-License-Identifier: Apache-2.0
//
// Reading pictures: PNG, JPEG, TIFF, BMP, PNM and WebP, 8 or 16 bit, grey or colour. Colour becomes
// grey by luminance, transparency is laid over white.
#pragma once

#include <string>

#include "rz/pel_buffer.h"

namespace glyphline {

/// The picture in the file, or on standard input for "-". Throws Failure that names the file and
/// the option that it came with, if any.
rzPelBuffer<unsigned char> readPicture(const std::string& path, const std::string& option = {});

/// The mask in the file; unbound for an empty name.
rzPelBuffer_const<unsigned char> readMask(const std::string& path);

/// Throws Failure unless the mask is unbound or of the size of the picture.
void requireFit(const rzPelBuffer_const<unsigned char>& mask, const std::string& maskPath,
                const rzPelBuffer<unsigned char>& picture, const std::string& picturePath);

}  // namespace glyphline
