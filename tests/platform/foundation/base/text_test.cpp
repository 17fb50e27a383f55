// SPDX-License-Identifier: Apache-2.0
#include "rz/text.h"

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <string>

#include "rz/char_code.h"

namespace {

// Writes numbers as 1.234,5.
class CommaPunct : public std::numpunct<char> {
 protected:
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

class GlobalLocale {
 public:
  explicit GlobalLocale(const std::locale& locale) : old_(std::locale::global(locale)) {}
  GlobalLocale(const GlobalLocale&) = delete;
  GlobalLocale& operator=(const GlobalLocale&) = delete;
  ~GlobalLocale() { std::locale::global(old_); }

 private:
  std::locale old_;
};

}  // namespace

TEST(Text, NumbersAreTheSameInEveryLocale) {
  const GlobalLocale commas(std::locale(std::locale::classic(), new CommaPunct));
  EXPECT_EQ(rfStr(rzLong{-1234567}), "-1234567");
  EXPECT_EQ(rfStr(rzULong{4294967295}), "4294967295");
  EXPECT_EQ(rfStr(1234.5), "1234.5");
  EXPECT_EQ(rfDbl(12345.678, 2, false), "12345.68");
  EXPECT_EQ(rfHex(rzULong{0x1234ABCD}, 8), "0x1234ABCD");
}

TEST(Text, DoublesPrintAsStreamsDoByDefault) {
  EXPECT_EQ(rfStr(0.1), "0.1");
  EXPECT_EQ(rfStr(3.0), "3");
  EXPECT_EQ(rfStr(1234567.0), "1.23457e+06");
  EXPECT_EQ(rfStr(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(rfStr(true) + rfStr(false), "truefalse");
}

TEST(Text, FixedNotationKeepsOrDropsZeros) {
  struct Case {
    double value;
    rzLong places;
    const char* kept;
    const char* dropped;
  };
  const Case kCases[] = {
      {1.5, 3, "1.500", "1.5"},     {2.0, 3, "2.000", "2"},
      {-0.0004, 3, "-0.000", "-0"}, {100.0, 0, "100", "100"},
      {0.9996, 3, "1.000", "1"},    {1e20, 1, "100000000000000000000.0", "100000000000000000000"}};
  for (const Case& c : kCases) {
    EXPECT_EQ(rfDbl(c.value, c.places, false), c.kept);
    EXPECT_EQ(rfDbl(c.value, c.places, true), c.dropped);
  }
}

TEST(Text, HexShowsTheBitPatternUpperCaseAndFilled) {
  EXPECT_EQ(rfHex(rzLong{-1}, 8), "0xFFFFFFFF");
  EXPECT_EQ(rfHex(rzLong{10}, 8), "0x0000000A");
  EXPECT_EQ(rfHex(rzULong{0x12345}, 2), "0x12345");
}

TEST(CharCode, RangesOfEachForm) {
  struct Case {
    rzULong code;
    bool asChar;
    bool asWChar;
  };
  const Case kCases[] = {
      {0x0, true, true},          {0xFF, true, true},        {0x100, false, true},
      {0xF7FF, false, true},      {0xF800, false, false},    {0xF801, false, true},
      {0x10FFFF, false, true},    {0x110000, false, false},  {0x7FFFFFFF, false, false},
      {0xFFFFFF7F, false, false}, {0xFFFFFF80, true, false}, {0xFFFFFFFF, true, false}};
  for (const Case& c : kCases) {
    SCOPED_TRACE(rfHex(c.code, 8));
    EXPECT_EQ(rzCharCode::isRepresentableAsChar(c.code), c.asChar);
    EXPECT_EQ(rzCharCode::isRepresentableAsTChar(c.code), c.asChar);
    EXPECT_EQ(rzCharCode::isRepresentableAsWChar(c.code), c.asWChar);
    if (c.asChar) {
      EXPECT_EQ(static_cast<unsigned char>(rzCharCode::getAsChar(c.code)), c.code & 0xFF);
    } else {
      EXPECT_THROW(rzCharCode::getAsTChar(c.code), rzCharCodeDefs::NotRepresentable);
    }
    if (c.asWChar) {
      EXPECT_EQ(static_cast<rzULong>(rzCharCode::getAsWChar(c.code)), c.code);
    } else {
      EXPECT_THROW(rzCharCode::getAsWChar(c.code), rzCharCodeDefs::NotRepresentable);
    }
  }
}

TEST(CharCode, EachByteWidenedWithItsSignComesBack) {
  for (int i = -128; i < 128; ++i) {
    const auto byte = static_cast<char>(i);
    EXPECT_EQ(rzCharCode::getAsChar(static_cast<rzULong>(rzLong{byte})), byte);
  }
}

TEST(CharCode, WhiteSpaceIsThatOfUnicode) {
  for (const rzLong code : {0x09, 0x0D, 0x20, 0x85, 0xA0, 0x1680, 0x2007, 0x2028, 0x3000})
    EXPECT_TRUE(rzCharCode::isSpace(static_cast<rzULong>(code))) << rfHex(code, 4);
  for (const rzLong code : {0x08, 0x0E, 0x21, 0x41, 0x84, 0x180E, 0x200B, 0xF800, 0xFEFF})
    EXPECT_FALSE(rzCharCode::isSpace(static_cast<rzULong>(code))) << rfHex(code, 4);
}
