// SPDX-License-Identifier: Apache-2.0
#include "rz/archive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
void expectForm(const T& value, const Bytes& form) {
  EXPECT_EQ(stored(value), form);
  EXPECT_EQ(loaded<T>(form), value);
}

template <class T>
void expectRefused(const char* name, const T& before, const Bytes& bytes) {
  T value = before;
  auto archive = rzArchive::loadingFrom(bytes);
  EXPECT_THROW(archive || value, rzArchive::BadFormat) << name;
  EXPECT_EQ(value, before) << name;
}

}  // namespace

TEST(Archive, BytesAreLittleEndianWithoutPaddingOrTagsBothWays) {
  expectForm(true, {1});
  expectForm('a', {'a'});
  expectForm(static_cast<signed char>(-1), {0xFF});
  expectForm(std::int16_t{-2}, {0xFE, 0xFF});
  expectForm(rzLong{-0x12345678}, {0x88, 0xA9, 0xCB, 0xED});
  expectForm(rzULong{0x800000FF}, {0xFF, 0, 0, 0x80});
  expectForm(std::uint64_t{0xF102030405060708}, {8, 7, 6, 5, 4, 3, 2, 0xF1});
  expectForm(1.0f, {0, 0, 0x80, 0x3F});
  expectForm(-2.0, {0, 0, 0, 0, 0, 0, 0, 0xC0});
  expectForm(std::string("a\0b", 3), {3, 0, 0, 0, 'a', 0, 'b'});
  expectForm(rzString32(U"\x1F600"), {1, 0, 0, 0, 0x00, 0xF6, 0x01, 0x00});
}

TEST(Archive, BytesThatMeanNoValueAreRefusedWithoutChange) {
  expectRefused("bool 2", false, {2});
  expectRefused("cut double", 2.5, {0, 0, 0, 0, 0, 0, 4});
  expectRefused("cut string", std::string("kept"), {4, 0, 0, 0, 'n', 'e', 'w'});
  expectRefused("huge string", std::string("kept"), {0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3});
  expectRefused("huge string32", rzString32(U"kept"), {0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3});
  expectRefused("string32 whose size wraps", rzString32(U"kept"), {1, 0, 0, 0x40, 1, 2, 3, 4});
}

TEST(Archive, CheckedCountAllowsExactlyWhatIsLeft) {
  const Bytes bytes{2, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7};
  auto fits = rzArchive::loadingFrom(bytes);
  EXPECT_EQ(fits.checkedCount(0, 3), 2u);
  auto doesNot = rzArchive::loadingFrom(bytes);
  EXPECT_THROW(doesNot.checkedCount(0, 4), rzArchive::BadFormat);
}

TEST(Archive, WrongDirectionIsRefused) {
  const Bytes bytes = stored(rzLong{1});
  auto in = rzArchive::loadingFrom(bytes);
  EXPECT_THROW(in << rzLong{2}, rzArchive::BadFormat);
  Bytes sink;
  auto out = rzArchive::storingTo(sink);
  rzLong value = 0;
  EXPECT_THROW(out >> value, rzArchive::BadFormat);
  EXPECT_TRUE(sink.empty());
}

TEST(Archive, StreamsHoldTheSameBytesAsVectorsAndBrokenOnesAreFileErrors) {
  std::stringstream stream;
  auto out = rzArchive::storingTo(static_cast<std::ostream&>(stream));
  out << std::string(5000, 'x');
  const std::string text = stream.str();
  EXPECT_EQ(Bytes(text.begin(), text.end()), stored(std::string(5000, 'x')));
  auto in = rzArchive::loadingFrom(static_cast<std::istream&>(stream));
  std::string back;
  in >> back;
  EXPECT_EQ(back, std::string(5000, 'x'));

  stream.setstate(std::ios::badbit);
  EXPECT_THROW(out << rzLong{1}, rzFileError);
  EXPECT_THROW((void)rzArchive::loadingFrom(static_cast<std::istream&>(stream)), rzFileError);
}

TEST(Archive, VectorIsVersionCountElementsAndStaysWhenItCannotBeRead) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  std::vector<std::int16_t> stored{5, -1};
  rf_SerializeVector(out, stored, 2);
  EXPECT_THAT(bytes, ElementsAre(0, 2, 0, 0, 0, 5, 0, 0xFF, 0xFF));
  std::vector<std::int16_t> back{9, 9, 9};
  auto whole = rzArchive::loadingFrom(bytes);
  rf_SerializeVector(whole, back, 2);
  EXPECT_EQ(back, stored);

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
