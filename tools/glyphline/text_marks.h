// SPDX-License-Identifier: Apache-2.0
//
// Which marks of a picture are which characters of a known text.
#pragma once

#include <string>
#include <vector>

#include "ink_pieces.h"

namespace glyphline {

/// The ink of one character.
struct Mark {
  char32_t character = 0;
  std::size_t line = 0;   // printed line, from the top
  std::size_t place = 0;  // in the text, spaces and line feeds counted
  rzPelRect box;
  std::vector<int> pieces;
};

/// The marks in the order of the text, one for each character that is neither a space nor a line
/// feed. A text with line feeds is told line by line, one without runs on over the printed lines.
///
/// A mark is a set of pieces that stand above each other. Where the count of marks does not fit the
/// text, the text decides what else is one mark, within what its characters can look like: the
/// parts of `"` or `%` stand side by side, a `.` may lie under the arm of a `T`. When there are
/// many more pieces than characters, pieces close to each other are first joined, since the print
/// may be made of dots. Lone specks much smaller than the print are dirt.
///
/// Throws Failure ("NAME: --text: ...") when no reading fits.
std::vector<Mark> marksOfText(const InkPieces& ink, const std::u32string& text,
                              const std::string& name);

}  // namespace glyphline
