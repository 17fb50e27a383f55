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
  unsigned char numPels = 4;

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
    for (unsigned char pel = 1; pel <= numPels; ++pel) archive << pel;
    return result;
  }
};

TEST(PelArchive, WholeRootAndTransformsComeBackToTheBit) {
  ImageView unbound;
  unbound.clientFromImageXform(pictures::shift(3, 4));
  ImageView nowUnbound = noise({0, 0, 3, 3});
  load(stored(unbound), nowUnbound);
  EXPECT_FALSE(nowUnbound.isBound());
  EXPECT_EQ(nowUnbound.clientFromImageXform(), pictures::shift(3, 4));

  Image image = noise({-3, 5, 9, 11});
  image.imageFromClientXform(rzXform<2>(rzMatrix<2>(0.1, 0.7, -0.3, 1.1), rzVector<2>(1 / 3.0, 7)));
  image.window(rzPelRect(-1, 7, 4, 4), false);
  ImageView loaded;
  load(stored(image), loaded);
  EXPECT_THAT(loaded, ShowsTheSameAs(image));
  EXPECT_EQ(loaded.clientFromImageXform(), image.clientFromImageXform());
  EXPECT_EQ(loaded.imageFromClientXform(), image.imageFromClientXform());
  image.clientFromImageXformBase(new rz2XformRadial(rzVector<2>(1, 1), 1e-3), true);
  load(stored(image), loaded);
  EXPECT_EQ(loaded.imageFromClientXformBase()->mapPoint({9, 4}),
            image.imageFromClientXformBase()->mapPoint({9, 4}));
  loaded.setEntire();
  image.setEntire();
  EXPECT_THAT(loaded, ShowsTheSameAs(image));
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

TEST(PelArchive, FieldsThatDisagreeAreRefusedBeforeRoomIsMade) {
  constexpr rzLong kMax = std::numeric_limits<rzLong>::max();
  struct {
    const char* name;
    Fields fields;
  } const cases[] = {{"pels of another type", {.bytesPerPel = 2}},
                     {"window beyond root", {.window = {0, 0, 3, 2}}},
                     {"window before root", {.window = {-1, 0, 2, 2}}},
                     {"window of negative size", {.window = {1, 1, -1, 1}}},
                     {"root without pels", {.window = {}, .entire = {}}},
                     {"root of negative size", {.window = {}, .entire = {0, 0, -2, -2}}},
                     {"more pels than bytes", {.entire = {0, 0, 30000, 30000}}},
                     {"size wraps in 32 bits", {.entire = {0, 0, 1 << 16, 1 << 16}}},
                     {"size wraps in 64 bits", {.entire = {0, 0, kMax, kMax}}},
                     {"corner out of range", {.window = {}, .entire = {kMax, 0, 2, 2}}},
                     {"no root", {.id = 0}},
                     {"unknown root", {.id = 2}}};
  for (const auto& c : cases) {
    const Bytes bytes = c.fields.bytes();
    auto archive = rzArchive::loadingFrom(bytes);
    Image target;
    EXPECT_THROW(archive >> target, rzArchive::BadFormat) << c.name;
  }
  Bytes newer = Fields().bytes();
  newer[0] = 1;
  auto archive = rzArchive::loadingFrom(newer);
  Image target;
  EXPECT_THROW(archive >> target, rzArchive::UnknownVersion);
}

TEST(PelArchive, SecondViewCannotClaimAnotherSizeOfTheRoot) {
  Bytes bytes = Fields().bytes();
  Fields wide;
  wide.entire = rzPelRect(0, 0, 400, 400);
  wide.numPels = 0;
  const Bytes second = wide.bytes();
  bytes.insert(bytes.end(), second.begin(), second.end());
  auto archive = rzArchive::loadingFrom(bytes);
  Image first;
  Image other;
  archive >> first;
  EXPECT_EQ(*first.pointToPel(1, 1), 4);
  EXPECT_THROW(archive >> other, rzArchive::BadFormat);
}

}  // namespace
