// SPDX-License-Identifier: Apache-2.0
//
// Box files, as text recognisers use them: one line "<char> <left> <bottom> <right> <top> <page>"
// for each character, in pels, with the origin at the lower left corner of the picture.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "rz/pel_rect.h"

namespace glyphline {

struct Box {
  char32_t character = 0;
  rzPelRect rect;  // pel coordinates of the picture, y downwards
};

/// The boxes of a picture of this size, in the order of the file. `name` is how the file is called
/// in messages. Throws Failure that names file and line: a line that is none, a box that is empty
/// or leaves the picture, a page other than 0; or a file without any box.
std::vector<Box> parseBoxes(std::istream& in, const std::string& name, rzLong width, rzLong height);

/// The same from a file, or from standard input for "-".
std::vector<Box> readBoxes(const std::string& path, rzLong width, rzLong height);

}  // namespace glyphline
