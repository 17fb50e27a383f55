// SPDX-License-Identifier: Apache-2.0
#include "rz/archive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "rz/archive_file.h"

namespace {

using Bytes = std::vector<unsigned char>;
using testing::ElementsAre;

template <class... T>
Bytes stored(const T&... values) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  (void)(archive << ... << values);
  return bytes;
}

template <class T>
T loaded(const Bytes& bytes) {
  auto archive = rzArchive::loadingFrom(bytes);
  T value{};
  archive >> value;
  EXPECT_EQ(archive.remaining(), 0u);
  return value;
}

template <class T>
concept Movable = requires(rzArchive& archive, T& value) {
  archive || value;
};

enum SomeEnum : rzLong { eFirst = 1, eSecond = 2 };

}  // namespace

TEST(Archive, BytesAreLittleEndianWithoutPaddingOrTags) {
  EXPECT_THAT(stored(true, 'a', static_cast<signed char>(-1)), ElementsAre(1, 'a', 0xFF));
  EXPECT_THAT(stored(std::int16_t{-2}, rzLong{0x12345678}),
              ElementsAre(0xFE, 0xFF, 0x78, 0x56, 0x34, 0x12));
  EXPECT_THAT(stored(std::uint64_t{0x0102030405060708}), ElementsAre(8, 7, 6, 5, 4, 3, 2, 1));
  EXPECT_THAT(stored(1.0f, -2.0), ElementsAre(0, 0, 0x80, 0x3F, 0, 0, 0, 0, 0, 0, 0, 0xC0));
  EXPECT_THAT(stored(std::string("hi")), ElementsAre(2, 0, 0, 0, 'h', 'i'));
  EXPECT_THAT(stored(rzString32(U"\x1F600")), ElementsAre(1, 0, 0, 0, 0x00, 0xF6, 0x01, 0x00));
}

TEST(Archive, ExtremeValuesComeBack) {
  using std::numeric_limits;
  EXPECT_EQ(loaded<std::int16_t>(stored(std::int16_t{-32768})), -32768);
  EXPECT_EQ(loaded<rzLong>(stored(numeric_limits<rzLong>::min())), numeric_limits<rzLong>::min());
  EXPECT_EQ(loaded<rzULong>(stored(rzULong{0x800000FF})), 0x800000FFu);
  EXPECT_EQ(loaded<std::uint64_t>(stored(~std::uint64_t{0})), ~std::uint64_t{0});
  EXPECT_EQ(loaded<float>(stored(numeric_limits<float>::denorm_min())),
            numeric_limits<float>::denorm_min());
  EXPECT_EQ(loaded<double>(stored(-numeric_limits<double>::infinity())),
            -numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(loaded<double>(stored(std::nan("")))));
  EXPECT_TRUE(std::signbit(loaded<double>(stored(-0.0))));
  EXPECT_EQ(loaded<std::string>(stored(std::string("a\0b", 3))), std::string("a\0b", 3));
  EXPECT_EQ(loaded<rzString32>(stored(rzString32())), rzString32());
}

TEST(Archive, OnlyTypesOfFixedWidthCanBeMoved) {
  static_assert(Movable<rzLong> && Movable<std::uint64_t> && Movable<rzString32>);
  static_assert(!Movable<std::int64_t>);
  static_assert(!Movable<wchar_t> && !Movable<char32_t>);
  static_assert(!Movable<SomeEnum>);
  static_assert(!Movable<int*> && !Movable<const rzLong>);
  static_assert(!std::is_convertible_v<rzArchive, bool>);
}

TEST(Archive, EachTruncationIsBadFormat) {
  const Bytes whole = stored(true, rzLong{7}, 2.5, std::string("name"), rzString32(U"xy"));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    auto archive = rzArchive::loadingFrom(part);
    bool flag = false;
    rzLong number = 0;
    double real = 0;
    std::string name;
    rzString32 name32;
    EXPECT_THROW(archive || flag || number || real || name || name32, rzArchive::BadFormat) << size;
  }
}

TEST(Archive, BoolOtherThanZeroOrOneIsBadFormat) {
  const Bytes bytes{2};
  auto archive = rzArchive::loadingFrom(bytes);
  bool value = false;
  EXPECT_THROW(archive || value, rzArchive::BadFormat);
}

TEST(Archive, HugeCountsAreRefusedBeforeRoomIsMade) {
  const Bytes bytes{0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3};
  std::string name = "kept";
  auto first = rzArchive::loadingFrom(bytes);
  EXPECT_THROW(first || name, rzArchive::BadFormat);
  EXPECT_EQ(name, "kept");
  rzString32 name32;
  auto second = rzArchive::loadingFrom(bytes);
  EXPECT_THROW(second || name32, rzArchive::BadFormat);
}

TEST(Archive, CheckedCountAllowsExactlyWhatIsLeft) {
  const Bytes bytes{2, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7};
  auto fits = rzArchive::loadingFrom(bytes);
  EXPECT_EQ(fits.checkedCount(0, 3), 2u);
  auto doesNot = rzArchive::loadingFrom(bytes);
  EXPECT_THROW(doesNot.checkedCount(0, 4), rzArchive::BadFormat);
}

TEST(Archive, WrongDirectionIsRefused) {
  Bytes bytes = stored(rzLong{1});
  auto in = rzArchive::loadingFrom(bytes);
  EXPECT_THROW(in << rzLong{1}, rzArchive::BadFormat);
  Bytes sink;
  auto out = rzArchive::storingTo(sink);
  rzLong value = 0;
  EXPECT_THROW(out >> value, rzArchive::BadFormat);
  EXPECT_TRUE(sink.empty());
}

TEST(Archive, StreamsHoldTheSameBytesAsVectors) {
  std::stringstream stream;
  auto out = rzArchive::storingTo(static_cast<std::ostream&>(stream));
  out << rzLong{-3} << std::string(5000, 'x');
  const std::string text = stream.str();
  EXPECT_EQ(Bytes(text.begin(), text.end()), stored(rzLong{-3}, std::string(5000, 'x')));

  auto in = rzArchive::loadingFrom(static_cast<std::istream&>(stream));
  rzLong number = 0;
  std::string name;
  in >> number >> name;
  EXPECT_EQ(number, -3);
  EXPECT_EQ(name, std::string(5000, 'x'));
  EXPECT_EQ(in.remaining(), 0u);
}

TEST(Archive, BrokenStreamsAreFileErrors) {
  std::ostringstream full;
  full.setstate(std::ios::badbit);
  auto out = rzArchive::storingTo(full);
  EXPECT_THROW(out << rzLong{1}, rzFileError);
  std::istringstream torn("abc");
  torn.setstate(std::ios::badbit);
  EXPECT_THROW((void)rzArchive::loadingFrom(torn), rzFileError);
}

TEST(Archive, EnumerationKeepsValuesOutsideItsList) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  auto value = static_cast<SomeEnum>(77);
  rf_SerializeEnum(out, value);
  EXPECT_EQ(bytes, stored(rzLong{77}));
  value = eFirst;
  auto in = rzArchive::loadingFrom(bytes);
  rf_SerializeEnum(in, value);
  EXPECT_EQ(static_cast<rzLong>(value), 77);
}

TEST(Archive, VectorIsVersionCountElements) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  std::vector<std::int16_t> numbers{5, -1};
  rf_SerializeVector(out, numbers, 2);
  EXPECT_THAT(bytes, ElementsAre(0, 2, 0, 0, 0, 5, 0, 0xFF, 0xFF));

  std::vector<std::int16_t> back{9, 9, 9};
  auto in = rzArchive::loadingFrom(bytes);
  rf_SerializeVector(in, back, 2);
  EXPECT_EQ(back, numbers);
}

TEST(Archive, VectorThatCannotBeReadStaysAsItWas) {
  struct Case {
    const char* name;
    Bytes bytes;
  };
  const Case kCases[] = {{"element missing", {0, 2, 0, 0, 0, 5, 0, 1}},
                         {"huge count", {0, 0xFF, 0xFF, 0xFF, 0xFF, 1, 2}},
                         {"count missing", {0, 1, 0}}};
  for (const Case& c : kCases) {
    std::vector<std::int16_t> numbers{4};
    auto in = rzArchive::loadingFrom(c.bytes);
    EXPECT_THROW(rf_SerializeVector(in, numbers, 2), rzArchive::BadFormat) << c.name;
    EXPECT_THAT(numbers, ElementsAre(4)) << c.name;
  }
  const Bytes newer{1, 0, 0, 0, 0};
  std::vector<std::int16_t> numbers;
  auto in = rzArchive::loadingFrom(newer);
  EXPECT_THROW(rf_SerializeVector(in, numbers, 2), rzArchive::UnknownVersion);
}

TEST(Archive, SharedDataIsStoredOnceAndSharedAgain) {
  auto shared = std::make_shared<std::string>("pels");
  auto other = std::make_shared<std::string>("more");
  std::shared_ptr<std::string> none;
  Bytes bytes;
  {
    auto out = rzArchive::storingTo(bytes);
    for (auto* each : {&shared, &none, &other, &shared})
      if (out.sharedId(*each)) out || **each;
    EXPECT_EQ(shared.use_count(), 2) << "the archive keeps what it has seen";
  }
  EXPECT_EQ(shared.use_count(), 1);

  auto in = rzArchive::loadingFrom(bytes);
  std::vector<std::shared_ptr<std::string>> back(4);
  for (auto& each : back) {
    if (!in.sharedId(each)) continue;
    each = std::make_shared<std::string>();
    in || *each;
    in.addShared(each);
  }
  EXPECT_EQ(*back[0], "pels");
  EXPECT_EQ(back[1], nullptr);
  EXPECT_EQ(*back[2], "more");
  EXPECT_EQ(back[3], back[0]);
}

TEST(Archive, SharedIdOfAnotherKindOrFromTheFutureIsBadFormat) {
  const Bytes bytes = stored(rzULong{1}, rzULong{1}, rzULong{3});
  auto in = rzArchive::loadingFrom(bytes);
  std::shared_ptr<std::string> text;
  ASSERT_TRUE(in.sharedId(text));
  in.addShared(std::make_shared<std::string>("x"));
  std::shared_ptr<double> number;
  EXPECT_THROW(in.sharedId(number), rzArchive::BadFormat);
  EXPECT_THROW(in.sharedId(text), rzArchive::BadFormat);
}

namespace {

TEST(Archive, StoringReadsOnly) {
  // Constants may lie in memory that cannot be written.
  static const double kNumber = 0.1;
  static const bool kFlag = true;
  static const std::int16_t kShort = -7;
  std::vector<unsigned char> bytes;
  auto out = rzArchive::storingTo(bytes);
  out << kNumber << kFlag << kShort;
  auto in = rzArchive::loadingFrom(bytes);
  double number = 0.0;
  bool flag = false;
  std::int16_t small = 0;
  in >> number >> flag >> small;
  EXPECT_EQ(number, kNumber);
  EXPECT_EQ(flag, kFlag);
  EXPECT_EQ(small, kShort);
}

}  // namespace
