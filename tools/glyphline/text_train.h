// SPDX-License-Identifier: Apache-2.0
//
// Characters from a picture that shows just a known text.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "box_train.h"
#include "text_marks.h"

namespace glyphline {

/// A picture, what was found in it, and the boxes to train from.
struct TextPicture {
  BoxedPicture boxed;               // the boxes in the order of the text
  std::vector<Mark> marks;          // one for each box
  std::vector<double> blankWidths;  // of the text's single spaces, pels
  std::size_t numLeftOut = 0;       // pieces of ink taken for dirt
};

/// The text of an option: UTF-8, in which `\n` ends a line as a line feed does and `\\` is a
/// backslash.
std::u32string textOfOption(const std::string& text, const std::string& where);

/// Throws Failure that names the picture when its marks do not fit the text.
TextPicture readTextPicture(const std::string& path, const std::string& text, Polarity polarity);

/// What was taken for what: a line for each character.
void printMarks(const TextPicture& picture, std::ostream& out);

/// How wide a space is in the pictures; 0 when their texts have none between two characters.
double blankWidthOf(const std::vector<TextPicture>& pictures);

}  // namespace glyphline
