// SPDX-License-Identifier: Apache-2.0
#include "rz/char_code.h"

#include <algorithm>
#include <array>

namespace {

constexpr rzULong kLastCodePoint = 0x10FFFF;

struct CodeRange {
  rzULong first;
  rzULong last;
};

// The code points with the property White_Space (The Unicode Standard, file PropList.txt).
constexpr std::array kWhiteSpace{CodeRange{0x0009, 0x000D}, CodeRange{0x0020, 0x0020},
                                 CodeRange{0x0085, 0x0085}, CodeRange{0x00A0, 0x00A0},
                                 CodeRange{0x1680, 0x1680}, CodeRange{0x2000, 0x200A},
                                 CodeRange{0x2028, 0x2029}, CodeRange{0x202F, 0x202F},
                                 CodeRange{0x205F, 0x205F}, CodeRange{0x3000, 0x3000}};

}  // namespace

bool rzCharCode::isRepresentableAsChar(rzULong code) noexcept {
  const auto number = static_cast<rzLong>(code);
  return number >= -128 && number <= 255;
}

bool rzCharCode::isRepresentableAsTChar(rzULong code) noexcept {
  return isRepresentableAsChar(code);
}

bool rzCharCode::isRepresentableAsWChar(rzULong code) noexcept {
  return code <= kLastCodePoint && code != rzCharCodeDefs::kUnknown;
}

bool rzCharCode::isSpace(rzULong code) noexcept {
  return std::ranges::any_of(kWhiteSpace, [code](const CodeRange& range) {
    return code >= range.first && code <= range.last;
  });
}

char rzCharCode::getAsChar(rzULong code) {
  if (!isRepresentableAsChar(code))
    throw rzCharCodeDefs::NotRepresentable("Character code does not fit into a char");
  return static_cast<char>(static_cast<unsigned char>(code & 0xFF));
}

rzCharCode::TChar rzCharCode::getAsTChar(rzULong code) { return getAsChar(code); }

wchar_t rzCharCode::getAsWChar(rzULong code) {
  if (!isRepresentableAsWChar(code))
    throw rzCharCodeDefs::NotRepresentable("Character code does not fit into a wchar_t");
  return static_cast<wchar_t>(code);
}
