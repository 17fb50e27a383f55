// SPDX-License-Identifier: Apache-2.0
#include "char_parts.h"

#include <string_view>

namespace glyphline {
namespace {

bool isIn(std::u32string_view list, char32_t character) {
  return list.find(character) != std::u32string_view::npos;
}

// Letters from U+00C0 to U+017F that are whole in spite of their place among the accented ones, or
// whose sign grows out of them.
constexpr std::u32string_view kWholeLetters =
    U"\u00C6\u00C7\u00D0\u00D7\u00D8\u00DE\u00DF\u00E6\u00E7\u00F0\u00F8\u00FE\u0104\u0105\u0110"
    U"\u0111\u0118\u0119\u0126\u0127\u012E\u0131\u0138\u0141\u0142\u0152\u0153\u0166\u0167\u0172"
    U"\u0173\u017F";
constexpr std::u32string_view kThreeStacked =
    U"\u00C4\u00CB\u00CF\u00D6\u00DC\u00E4\u00EB\u00EF\u00F6\u00FC\u00FF\u00F7\u0178\u0150\u0151"
    U"\u0170\u0171\u0401\u0451\u0407\u0457\u2261";
constexpr std::u32string_view kTwoStacked =
    U"ij:;!?=\u00A1\u00BF\u00B1\u0419\u0439\u0456\u0458\u0386\u038C\u03AC\u03AD\u03AE\u03AF\u03CC"
    U"\u03CD\u03CE\u2264\u2265";
constexpr std::u32string_view kTwoBeside =
    U"\"\u00A8\u00AB\u00BB\u201C\u201D\u201E\u2016\u042B\u044B";
constexpr std::u32string_view kThreeBeside = U"%\u2026\u00BC\u00BD\u00BE";
constexpr std::u32string_view kSmall =
    U".,'\"-_~^`"
    U"\u00A8\u00AF\u00B4\u00B7\u00B8\u2010\u2011\u2012\u2013\u2014\u2015\u2018\u2019\u201A\u201C"
    U"\u201D"
    U"\u201E\u2022\u2026";
constexpr char32_t kPerMille = U'\u2030';

}  // namespace

CharParts partsOf(char32_t character) {
  if (character == kPerMille) return {4, true};
  if (isIn(kThreeBeside, character)) return {3, true};
  if (isIn(kTwoBeside, character)) return {2, true};
  if (isIn(kThreeStacked, character)) return {3, false};
  if (isIn(kTwoStacked, character)) return {2, false};
  const bool isAccented = character >= 0xC0 && character <= 0x17F;
  return isAccented && !isIn(kWholeLetters, character) ? CharParts{2, false} : CharParts{};
}

bool isSmall(char32_t character) { return isIn(kSmall, character); }

bool isLetterOrDigit(char32_t character) {
  const auto isBetween = [character](char32_t a, char32_t b) {
    return character >= a && character <= b;
  };
  constexpr std::u32string_view kNone = U"\u00D7\u00F7\u037E\u0387";
  return isBetween(U'0', U'9') || isBetween(U'A', U'Z') || isBetween(U'a', U'z') ||
         (isBetween(0xC0, 0x24F) && !isIn(kNone, character)) ||
         (isBetween(0x370, 0x3FF) && !isIn(kNone, character)) || isBetween(0x400, 0x481) ||
         isBetween(0x48A, 0x52F);
}

}  // namespace glyphline
