// SPDX-License-Identifier: Apache-2.0
//
// Pictures of results: the image with each character's box, coloured by status, its score, and the
// fitted lines. PNG, SVG or PDF by the file's ending.
#pragma once

#include <string>

#include "report.h"
#include "rz/pel_buffer.h"

namespace glyphline {

/// Throws Failure for an ending other than .png, .svg and .pdf, without looking at anything else.
void requireDrawable(const std::string& path);

/// Draws and writes the file whole or not at all. Throws Failure naming the file.
void writeOverlay(const std::string& path, const rzPelBuffer<unsigned char>& picture,
                  const ArrangeReport& report);
void writeOverlay(const std::string& path, const rzPelBuffer<unsigned char>& picture,
                  const FindReport& report);

}  // namespace glyphline
