// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange_results.h"

#include <gmock/gmock.h>

#include <cstdint>

#include "oc/line.h"

namespace {

using Bytes = std::vector<unsigned char>;
using testing::ElementsAre;

// The bytes of results with an arrangement, two positions and an odd transform.
Bytes resultBytes(signed char version, const rzPtrHandle_const<rzOCLineArrangement>& arrangement) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  archive << version << true << false;
  auto handle = arrangement;
  rf_SerializeHandle(archive, handle);
  archive << rzXform<2>(rzMatrix<2>(1, 2, 3, 4), rzVector<2>(5, 6));
  archive << static_cast<unsigned char>(0) << rzULong{2} << rzULong{1} << rzULong{9};
  archive << static_cast<unsigned char>(0) << rzULong{2} << 0.5 << 0.0;
  if (version == 0) archive << 7.0 << 8.0;
  archive << rzLong{12345};  // what follows in the archive
  return bytes;
}

rzOCArrangeResults loaded(const Bytes& bytes) {
  rzOCArrangeResults results;
  auto archive = rzArchive::loadingFrom(bytes);
  archive || results;
  rzLong follower = 0;
  archive >> follower;
  EXPECT_EQ(follower, 12345);
  return results;
}

rzPtrHandle_const<rzOCLineArrangement> arrangement(const std::string& name) {
  const std::vector<rzPtrHandle<rzOCLine>> lines = {new rzOCLine};
  return new rzOCLineArrangement(lines, rz2Rigid(), 0.0, rzRadian(0.0), name);
}

TEST(ArrangeResults, BothVersionsAreRead) {
  for (const signed char version : {std::int8_t{0}, std::int8_t{1}}) {
    const rzOCArrangeResults results = loaded(resultBytes(version, arrangement("a")));
    EXPECT_TRUE(results.isFound());
    EXPECT_FALSE(results.isSearchTruncated());
    EXPECT_EQ(*results.arrangement(), *arrangement("a"));
    EXPECT_EQ(results.clientFromArrangementXform().matrix()(1, 0), 3);
    EXPECT_THAT(results.statusFlags(), ElementsAre(rzOCArrangeDefs::eInferred,
                                                   static_cast<rzOCArrangeDefs::CharStatus>(9)));
    EXPECT_THAT(results.scores(), ElementsAre(0.5, 0.0));
  }
}

TEST(ArrangeResults, NewerVersionsAndTornBytesChangeNothing) {
  rzOCArrangeResults results = loaded(resultBytes(1, arrangement("old")));
  const rzOCArrangeResults before = results;
  Bytes bytes = resultBytes(1, arrangement("new"));
  for (std::size_t size = 0; size + sizeof(rzLong) < bytes.size(); ++size) {
    auto archive = rzArchive::loadingFrom(std::span(bytes).first(size));
    EXPECT_THROW(archive || results, rzException) << size;
    EXPECT_EQ(results, before);
  }
  bytes.front() = 2;
  auto archive = rzArchive::loadingFrom(bytes);
  EXPECT_THROW(archive || results, rzArchive::UnknownVersion);
  EXPECT_EQ(results, before);
}

}  // namespace
