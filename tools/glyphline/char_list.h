// SPDX-License-Identifier: Apache-2.0
//
// Text as code points, and lists of characters with ranges.
#pragma once

#include <string>
#include <vector>

namespace glyphline {

/// The code points of a UTF-8 text. Throws Failure ("WHERE: not valid UTF-8 at byte N").
std::u32string codePointsOf(const std::string& utf8, const std::string& where);

std::string utf8Of(char32_t codePoint);

/// The characters of a list such as "A-Z0-9 -": a `-` between two characters makes a range, a `-`
/// that stands first or last is itself. Each character once, in the order of the list. Throws
/// Failure for a range that runs backwards.
std::u32string expandedChars(const std::string& list, const std::string& where);

}  // namespace glyphline
