// SPDX-License-Identifier: Apache-2.0
#include "char_list.h"

#include <cstdint>

#include "failure.h"

namespace glyphline {
namespace {

struct Lead {
  unsigned char mask;
  unsigned char value;
  int length;
  char32_t payload;
  char32_t smallest;  // what is below has a shorter form
};

constexpr Lead kLeads[] = {{0x80, 0x00, 1, 0x7F, 0},
                           {0xE0, 0xC0, 2, 0x1F, 0x80},
                           {0xF0, 0xE0, 3, 0x0F, 0x800},
                           {0xF8, 0xF0, 4, 0x07, 0x10000}};

constexpr char32_t kLast = 0x10FFFF;

bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// One code point from `at` on, which moves behind it; false when the bytes are none.
bool decodeOne(const std::string& utf8, std::size_t& at, char32_t& c) {
  const auto first = static_cast<unsigned char>(utf8[at]);
  for (const Lead& lead : kLeads) {
    if ((first & lead.mask) != lead.value) continue;
    if (at + static_cast<std::size_t>(lead.length) > utf8.size()) return false;
    c = first & lead.payload;
    for (int k = 1; k < lead.length; ++k) {
      const auto next = static_cast<unsigned char>(utf8[at + static_cast<std::size_t>(k)]);
      if ((next & 0xC0) != 0x80) return false;
      c = (c << 6) | (next & 0x3FU);
    }
    at += static_cast<std::size_t>(lead.length);
    return c >= lead.smallest && c <= kLast && !isSurrogate(c);
  }
  return false;
}

}  // namespace

std::u32string codePointsOf(const std::string& utf8, const std::string& where) {
  std::u32string text;
  for (std::size_t at = 0; at < utf8.size();) {
    const std::size_t start = at;
    char32_t c = 0;
    if (!decodeOne(utf8, at, c)) {
      throw Failure(where + ": not valid UTF-8 at byte " + std::to_string(start));
    }
    text.push_back(c);
  }
  return text;
}

std::string utf8Of(char32_t c) {
  const auto byte = [](char32_t value) { return static_cast<char>(value); };
  if (c < 0x80) return {byte(c)};
  if (c < 0x800) return {byte(0xC0 | c >> 6), byte(0x80 | (c & 0x3F))};
  if (c < 0x10000) {
    return {byte(0xE0 | c >> 12), byte(0x80 | (c >> 6 & 0x3F)), byte(0x80 | (c & 0x3F))};
  }
  return {byte(0xF0 | c >> 18), byte(0x80 | (c >> 12 & 0x3F)), byte(0x80 | (c >> 6 & 0x3F)),
          byte(0x80 | (c & 0x3F))};
}

std::u32string expandedChars(const std::string& list, const std::string& where) {
  const std::u32string chars = codePointsOf(list, where);
  std::u32string expanded;
  const auto add = [&expanded](char32_t c) {
    if (expanded.find(c) == std::u32string::npos) expanded.push_back(c);
  };
  for (std::size_t i = 0; i < chars.size(); ++i) {
    const bool isRange = i + 2 < chars.size() && chars[i + 1] == U'-';
    if (!isRange) {
      add(chars[i]);
      continue;
    }
    const char32_t first = chars[i];
    const char32_t last = chars[i + 2];
    if (last < first) {
      throw Failure(where + ": the range " + utf8Of(first) + "-" + utf8Of(last) +
                    " runs backwards");
    }
    for (char32_t c = first; c <= last; ++c) {
      if (!isSurrogate(c)) add(c);
    }
    i += 2;
  }
  return expanded;
}

}  // namespace glyphline
