// SPDX-License-Identifier: Apache-2.0
#include "rz/text.h"

#include <gtest/gtest.h>

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
  EXPECT_EQ(rfStr(1234567.0), "1.23457e+06");
  EXPECT_EQ(rfDbl(12345.6, 2, false), "12345.60");
  EXPECT_EQ(rfDbl(12345.6, 2, true), "12345.6");
  EXPECT_EQ(rfDbl(100.0, 0, true), "100");
  EXPECT_EQ(rfDbl(-0.0004, 3, true), "-0");
  EXPECT_EQ(rfHex(rzLong{10}, 8), "0x0000000A");
  EXPECT_EQ(rfHex(rzLong{-1}, 2), "0xFFFFFFFF");
}

TEST(CharCode, RangesOfEachForm) {
  struct Case {
    rzULong code;
    bool asChar;
    bool asWChar;
  };
  const Case kCases[] = {{0xFF, true, true},       {0x100, false, true},
                         {0xF800, false, false},   {0x10FFFF, false, true},
                         {0x110000, false, false}, {0xFFFFFF7F, false, false},
                         {0xFFFFFF80, true, false}};
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
  }
}
