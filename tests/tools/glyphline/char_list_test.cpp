// SPDX-License-Identifier: Apache-2.0
#include "char_list.h"

#include <gtest/gtest.h>

#include "failure.h"

namespace {

using glyphline::codePointsOf;
using glyphline::expandedChars;
using glyphline::Failure;

TEST(CharList, ExpandsRangesAndTakesAMinusAtTheEndsForItself) {
  struct Row {
    const char* list;
    std::u32string chars;
  };
  for (const Row& row : {Row{"A-C", U"ABC"}, Row{"-", U"-"}, Row{"-A", U"-A"}, Row{"A-", U"A-"},
                         Row{"0-2 -", U"012 -"}, Row{"AAB-CC", U"ABC"}, Row{"--0", U"-./0"},
                         Row{"ä-å", U"äå"}, Row{"", U""}, Row{"a-a", U"a"}}) {
    EXPECT_EQ(expandedChars(row.list, "--chars"), row.chars) << row.list;
  }
}

TEST(CharList, RefusesARangeThatRunsBackwards) {
  EXPECT_THROW(expandedChars("Z-A", "--chars"), Failure);
}

TEST(CharList, ReadsEveryLengthOfUtf8AndWritesItBack) {
  for (const char32_t c : {U'A', U'\x7F', U'\x80', U'ß', U'\x7FF', U'\x800', U'€', U'\xFFFF',
                           U'\x10000', U'\x10FFFF'}) {
    EXPECT_EQ(codePointsOf(glyphline::utf8Of(c), "test"), std::u32string(1, c));
  }
}

TEST(CharList, RefusesBytesThatAreNoUtf8) {
  for (const char* bytes : {"\x80", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80",
                            "\xF4\x90\x80\x80", "\xFF", "A\xE2\x82"}) {
    EXPECT_THROW(codePointsOf(bytes, "test"), Failure) << bytes;
  }
}

}  // namespace
