// SPDX-License-Identifier: Apache-2.0
//
// What a character usually looks like: of how many parts it is, and whether it is small.
#pragma once

namespace glyphline {

struct CharParts {
  int count = 1;            // separate pieces of ink in solid print
  bool sideBySide = false;  // parts that do not stand above each other
};

/// For Latin, Greek and Cyrillic letters, digits and punctuation; one part for what is not known.
CharParts partsOf(char32_t character);

/// Full stops, quotes, dashes and their like, which are much lower than letters and digits.
bool isSmall(char32_t character);

/// Letters and digits; of what is beyond Latin, Greek and Cyrillic, none.
bool isLetterOrDigit(char32_t character);

}  // namespace glyphline
