// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeindex>
#include <vector>

#include "oc/arrange_defs.h"
#include "oc/extract_defs.h"
#include "oc/oc_defs.h"
#include "rz/archive.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes storedPointer(rzException* error) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  rzPersistent::serializePointer(archive, error);
  return bytes;
}

rzException* loadedPointer(const Bytes& bytes) {
  auto archive = rzArchive::loadingFrom(bytes);
  rzException* error = nullptr;
  rzPersistent::serializePointer(archive, error);
  EXPECT_EQ(archive.remaining(), 0u);
  return error;
}

// What the system knows of one class: its name, number and the versions bytes before the message.
struct Case {
  const char* name;
  rzULong number;
  rzException* (*make)();
  std::vector<const char*> levels;  // class names, a version byte each
  bool keepsMessage;
};

template <class T>
rzException* made() {
  return new T("why");
}

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

const std::vector<Case> kCases = [] {
  std::vector<Case> cases;
  const auto addChar = [&cases](const char* name, rzULong number, rzException* (*make)()) {
    cases.push_back({name,
                     number,
                     make,
                     {name, "rzOCDefs::Errors", "rzExceptionWithString", "rzException"},
                     true});
  };
  addChar("rzOCDefs::BadParams", 0x10005E00, &made<rzOCDefs::BadParams>);
  addChar("rzOCDefs::BadImage", 0x10005E01, &made<rzOCDefs::BadImage>);
  addChar("rzOCDefs::NotImplemented", 0x10005E02, &made<rzOCDefs::NotImplemented>);
  addChar("rzOCDefs::SameKey", 0x10005E03, &made<rzOCDefs::SameKey>);
  addChar("rzOCDefs::BadKey", 0x10005E04, &made<rzOCDefs::BadKey>);
  addChar("rzOCDefs::BadIndex", 0x10005E05, &made<rzOCDefs::BadIndex>);
  addChar("rzOCDefs::NotCompiled", 0x10005E06, &made<rzOCDefs::NotCompiled>);
  addChar("rzOCDefs::RectNotSpecified", 0x10005E09, &made<rzOCDefs::RectNotSpecified>);
  addChar("rzOCDefs::MetricNotSpecified", 0x10005E0A, &made<rzOCDefs::MetricNotSpecified>);
  addChar("rzOCDefs::ThresholdAndInvertNotSpecified", 0x10005E0B,
          &made<rzOCDefs::ThresholdAndInvertNotSpecified>);
  addChar("rzOCDefs::IntegerOverflow", 0x10005E0D, &made<rzOCDefs::IntegerOverflow>);
  addChar("rzOCDefs::UnrepresentableKey", 0x10005E0E, &made<rzOCDefs::UnrepresentableKey>);
  addChar("rzOCDefs::BadFileFormat", 0x10005E0F, &made<rzOCDefs::BadFileFormat>);
  const auto addArrange = [&cases](const char* name, rzULong number, rzException* (*make)()) {
    cases.push_back({name, number, make, {name, "rzOCArrangeDefs::Errors", "rzException"}, false});
  };
  addArrange("rzOCArrangeDefs::BadParams", 0x10007400, &made<rzOCArrangeDefs::BadParams>);
  addArrange("rzOCArrangeDefs::BadMask", 0x10007401, &made<rzOCArrangeDefs::BadMask>);
  cases.push_back({"rz_OCExtractDefs::rz_OCExtractError",
                   0x10007402,
                   &made<rz_OCExtractDefs::rz_OCExtractError>,
                   {"rz_OCExtractDefs::rz_OCExtractError", "rzExceptionWithString", "rzException"},
                   true});
  return cases;
}();

class Errors : public testing::TestWithParam<Case> {
 protected:
  std::unique_ptr<rzException> error_{GetParam().make()};
  Bytes bytes_ = storedPointer(error_.get());
  std::size_t headSize_ = 4 + 4 + std::string(GetParam().name).size();  // id and class name
};

INSTANTIATE_TEST_SUITE_P(All, Errors, testing::ValuesIn(kCases), [](const auto& row) {
  std::string name = row.param.name;
  std::erase_if(name, [](char c) { return c == ':' || c == '_'; });
  return name;
});

std::type_index classOf(const rzPersistent& object) { return typeid(object); }

rzLong codeOf(rzULong bits) { return static_cast<rzLong>(bits); }

}  // namespace

TEST_P(Errors, NumberAndMessage) {
  EXPECT_EQ(error_->errorNumber(), codeOf(GetParam().number));
  EXPECT_STREQ(error_->what(), "why");
}

TEST_P(Errors, ArchiveFormIsTheClassNameAVersionByteForEachLevelAndTheMessage) {
  Bytes expected;
  auto archive = rzArchive::storingTo(expected);
  archive << rzULong{1} << std::string(GetParam().name);
  for (std::size_t i = 0; i < GetParam().levels.size(); ++i)
    archive << static_cast<unsigned char>(0);
  if (GetParam().keepsMessage) archive << std::string("why");
  EXPECT_EQ(bytes_, expected);
}

TEST_P(Errors, ComesBackFromAnArchiveAsItsClass) {
  const std::unique_ptr<rzException> back(loadedPointer(bytes_));
  EXPECT_EQ(classOf(*back), classOf(*error_));
  EXPECT_STREQ(back->what(), GetParam().keepsMessage ? "why" : "");
}

TEST_P(Errors, VersionOtherThanZeroIsToldWithTheClassOfItsLevel) {
  for (std::size_t i = 0; i < GetParam().levels.size(); ++i) {
    Bytes newer = bytes_;
    newer[headSize_ + i] = static_cast<unsigned char>(i + 1);
    try {
      const std::unique_ptr<rzException> back(loadedPointer(newer));
      ADD_FAILURE() << GetParam().levels[i];
    } catch (const rzArchive::UnknownVersion& unknown) {
      EXPECT_EQ(unknown.name(), GetParam().levels[i]);
      EXPECT_EQ(unknown.number(), 0);
    }
  }
}

TEST_P(Errors, EachTruncationIsBadFormat) {
  for (std::size_t size = 0; size < bytes_.size(); ++size) {
    const Bytes part(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_THROW(loadedPointer(part), rzArchive::BadFormat) << size;
  }
}

TEST_P(Errors, SuicideRethrowsTheTrueClassWithItsMessage) {
  rzException* heapCopy = GetParam().make();
  try {
    heapCopy->suicideAndRethrow();
  } catch (const rzPersistent& caught) {
    EXPECT_EQ(classOf(caught), classOf(*error_));
    EXPECT_STREQ(dynamic_cast<const rzException&>(caught).what(), "why");
  }
}

TEST(Converter, KnownCodesBecomeExceptionsOfTheFamily) {
  struct Row {
    rzULong code;
    rzULong number;
    const char* message;
  };
  const Row kRows[] = {{0x800013EC, 0x10005E00, "Threshold must be between 0 and 256 inclusive"},
                       {0x800013ED, 0x10005E0B, "Threshold and invert not specified"},
                       {0x800013EF, 0x10005E09, "Rect not specified"},
                       {0x800013F0, 0x10005E0D, "Value overflows fixed point value range"},
                       {0x800013F1, 0x10005E0D, "Value overflows integer value range"}};
  for (const Row& row : kRows) {
    try {
      rfThrowExceptionOnFailure(codeOf(row.code));
      ADD_FAILURE() << row.message;
    } catch (const rzOCDefs::Errors& error) {
      EXPECT_EQ(error.errorNumber(), codeOf(row.number));
      EXPECT_STREQ(error.what(), row.message);
    }
  }
}
