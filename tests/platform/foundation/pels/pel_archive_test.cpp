// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "rz/archive.h"
#include "rz/pel_buffer.h"
#include "rz/pel_functions.h"
#include "rz/xform_radial.h"
#include "tests/platform/foundation/pels/pictures.h"

namespace {

using pictures::Image;
using pictures::ImageView;
using pictures::noise;
using pictures::ShowsTheSameAs;
using Bytes = std::vector<unsigned char>;

template <class... Buffers>
Bytes stored(const Buffers&... buffers) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  (archive << ... << buffers);
  return bytes;
}

template <class... Buffers>
void load(const Bytes& bytes, Buffers&... buffers) {
  auto archive = rzArchive::loadingFrom(bytes);
  (archive >> ... >> buffers);
  EXPECT_EQ(archive.remaining(), 0U);
}

// The bytes of a bound grey buffer with identity transforms, with these fields.
struct Fields {
  rzLong bytesPerPel = 1;
  rzPelRect window{0, 0, 2, 2};
  rzPelRect entire{0, 0, 2, 2};
  rzULong id = 1;
  Bytes pels{1, 2, 3, 4};

  Bytes bytes() const {
    Bytes result;
    auto archive = rzArchive::storingTo(result);
    unsigned char zero = 0;
    bool bound = true;
    rzXform<2> identity;
    archive || zero || bound || zero;
    archive || identity || identity;
    archive << bytesPerPel;
    for (rzPelRect rect : {window, entire}) rf_PersistenceHelper<rzLong>(archive, rect);
    archive << id;
    Bytes copy = pels;
    archive.moveBytes(copy.data(), copy.size());
    return result;
  }
};

TEST(PelArchive, UnboundBufferKeepsItsTransform) {
  ImageView image;
  image.clientFromImageXform(pictures::shift(3, 4));
  ImageView loaded = noise({0, 0, 3, 3});
  load(stored(image), loaded);
  EXPECT_FALSE(loaded.isBound());
  EXPECT_EQ(loaded.clientFromImageXform(), pictures::shift(3, 4));
}

TEST(PelArchive, WholeRootAndTransformsComeBackToTheBit) {
  Image image = noise({-3, 5, 9, 11});
  image.imageFromClientXform(rzXform<2>(rzMatrix<2>(0.1, 0.7, -0.3, 1.1), rzVector<2>(1 / 3.0, 7)));
  image.window(rzPelRect(-1, 7, 4, 4), false);
  ImageView loaded;
  load(stored(image), loaded);
  EXPECT_THAT(loaded, ShowsTheSameAs(image));
  EXPECT_EQ(loaded.clientFromImageXform(), image.clientFromImageXform());
  EXPECT_EQ(loaded.imageFromClientXform(), image.imageFromClientXform());
  loaded.setEntire();
  image.setEntire();
  EXPECT_THAT(loaded, ShowsTheSameAs(image));
}

TEST(PelArchive, SixteenBitPelsKeepTheirSign) {
  rzPelBuffer<std::int16_t> scores(rzPelRect(0, 0, 3, 1), 32);
  const std::int16_t values[] = {-1000, 0, 32767};
  std::copy_n(values, 3, scores.pointToPel(0, 0));
  rzPelBuffer<std::int16_t> loaded;
  load(stored(scores), loaded);
  for (rzLong x = 0; x < 3; ++x) EXPECT_EQ(*loaded.pointToPel(x, 0), values[x]);
}

TEST(PelArchive, BentTransformComesBack) {
  Image image = noise({0, 0, 3, 3});
  image.clientFromImageXformBase(new rz2XformRadial(rzVector<2>(1, 1), 1e-3), true);
  Image loaded;
  load(stored(image), loaded);
  const rzVector<2> point(9, 4);
  EXPECT_EQ(loaded.clientFromImageXformBase()->mapPoint(point),
            image.clientFromImageXformBase()->mapPoint(point));
  EXPECT_EQ(loaded.imageFromClientXformBase()->mapPoint(point),
            image.imageFromClientXformBase()->mapPoint(point));
}

TEST(PelArchive, ViewsOfOneRootStaySoEvenWithNumbersOfTheirOwn) {
  const Image image = noise({0, 0, 50, 50});
  Image renumbered = image;
  renumbered.window(rzPelRect(10, 10, 5, 5), false);
  renumbered.offset({100, 200});
  const Bytes bytes = stored(image, renumbered);
  EXPECT_LT(bytes.size(), 2U * 50 * 50);
  Image first;
  Image second;
  load(bytes, first, second);
  EXPECT_TRUE(first.sharesRoot(second));
  EXPECT_EQ(second.window(), rzPelRect(100, 200, 5, 5));
  EXPECT_EQ(second.pointToPel(100, 200), first.pointToPel(10, 10));
}

TEST(PelArchive, EqualPelsOfTwoRootsStayTwoRoots) {
  const Image image = noise({0, 0, 4, 4});
  Image first;
  Image second;
  load(stored(image, rfPelCopy(image)), first, second);
  EXPECT_FALSE(first.sharesRoot(second));
  EXPECT_TRUE(rfPelEqual(first, second));
}

TEST(PelArchive, WindowThatShowsNothingComesBack) {
  Image image = noise({0, 0, 4, 4});
  image.window(rzPelRect(9, 9, 1, 1), true);
  Image loaded;
  load(stored(image), loaded);
  EXPECT_TRUE(loaded.isBound());
  EXPECT_TRUE(loaded.window().isNull());
}

TEST(PelArchive, EveryTruncationIsRefusedAndChangesNothing) {
  const Bytes bytes = stored(noise({0, 0, 3, 3}));
  const Image before = noise({7, 7, 2, 2}, 5);
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    Image target = before;
    auto archive = rzArchive::loadingFrom(std::span(bytes.data(), size));
    EXPECT_THROW(archive >> target, rzArchive::BadFormat) << size;
    EXPECT_TRUE(target.sharesRoot(before)) << size;
  }
}

TEST(PelArchive, FieldsThatAgreeAreAccepted) {
  Image loaded;
  load(Fields().bytes(), loaded);
  EXPECT_EQ(*loaded.pointToPel(1, 1), 4);
}

struct BadCase {
  const char* name;
  Fields fields;
};

class PelArchiveBad : public testing::TestWithParam<BadCase> {};

TEST_P(PelArchiveBad, IsRefusedBeforeRoomIsMade) {
  const Bytes bytes = GetParam().fields.bytes();
  auto archive = rzArchive::loadingFrom(bytes);
  Image target;
  EXPECT_THROW(archive >> target, rzArchive::BadFormat);
}

constexpr rzLong kMax = std::numeric_limits<rzLong>::max();

INSTANTIATE_TEST_SUITE_P(
    , PelArchiveBad,
    testing::Values(BadCase{"pels_of_another_type", {.bytesPerPel = 2}},
                    BadCase{"window_beyond_root", {.window = {0, 0, 3, 2}}},
                    BadCase{"window_before_root", {.window = {-1, 0, 2, 2}}},
                    BadCase{"window_of_negative_size", {.window = {1, 1, -1, 1}}},
                    BadCase{"root_without_pels", {.window = {}, .entire = {}}},
                    BadCase{"root_of_negative_size", {.window = {}, .entire = {0, 0, -2, -2}}},
                    BadCase{"more_pels_than_bytes", {.entire = {0, 0, 30000, 30000}}},
                    BadCase{"size_wraps_in_32_bits", {.entire = {0, 0, 1 << 16, 1 << 16}}},
                    BadCase{"size_wraps_in_64_bits", {.entire = {0, 0, kMax, kMax}}},
                    BadCase{"corner_out_of_range", {.window = {}, .entire = {kMax, 0, 2, 2}}},
                    BadCase{"no_root", {.id = 0}}, BadCase{"unknown_root", {.id = 2}}),
    [](const auto& param) { return param.param.name; });

TEST(PelArchive, SecondViewCannotClaimAnotherSizeOfTheRoot) {
  Bytes bytes = Fields().bytes();
  Fields wide;
  wide.entire = rzPelRect(0, 0, 400, 400);
  wide.pels.clear();
  const Bytes second = wide.bytes();
  bytes.insert(bytes.end(), second.begin(), second.end());
  auto archive = rzArchive::loadingFrom(bytes);
  Image first;
  Image other;
  archive >> first;
  EXPECT_THROW(archive >> other, rzArchive::BadFormat);
}

TEST(PelArchive, NewerVersionIsRefused) {
  Bytes bytes = Fields().bytes();
  bytes[0] = 1;
  auto archive = rzArchive::loadingFrom(bytes);
  Image target;
  EXPECT_THROW(archive >> target, rzArchive::UnknownVersion);
}

}  // namespace
