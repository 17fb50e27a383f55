// SPDX-License-Identifier: Apache-2.0
#include "oc/char_key.h"

#include <gmock/gmock.h>

#include <array>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;
using Fields = std::array<rzLong, 4>;

Fields fieldsOf(const rzOCCharKey& key) {
  return {static_cast<rzLong>(key.characterCode()), key.instance(), key.variant(), key.fontID()};
}

TEST(CharKey, UnspecifiedFieldsMatchAnythingBothWays) {
  struct {
    rzOCCharKey a, b;
    bool match;
  } const cases[] = {
      {rzOCCharKey(65), rzOCCharKey(65, 2, 0, 7), true},
      {rzOCCharKey(65, 2), rzOCCharKey(65, -1, 0, 7), true},
      {rzOCCharKey(65, 1), rzOCCharKey(65, 2), false},
      {rzOCCharKey(65, 1, 4), rzOCCharKey(65, 1, 5), false},
      {rzOCCharKey(65, 1, 4, 6), rzOCCharKey(65, 1, 4, 7), false},
      {rzOCCharKey(65, -2), rzOCCharKey(65, 0), false},
      {rzOCCharKey(65), rzOCCharKey(66), false},
      {rzOCCharKey(65), rzOCCharKey(), false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.a.isMatch(c.b), c.match) << rf_OCCharKeyText(c.a) << rf_OCCharKeyText(c.b);
    EXPECT_EQ(c.b.isMatch(c.a), c.match) << rf_OCCharKeyText(c.a) << rf_OCCharKeyText(c.b);
  }
}

TEST(CharKey, OrderIsByCodeThenFontThenInstanceThenVariantWithUnsetLast) {
  const std::vector<rzOCCharKey> ascending = {rzOCCharKey(64, -1, -1, -1),
                                              rzOCCharKey(65, -2, 0, 0),
                                              rzOCCharKey(65, 0, 0, 0),
                                              rzOCCharKey(65, 0, 1, 0),
                                              rzOCCharKey(65, 0, -1, 0),
                                              rzOCCharKey(65, 5, 0, 1),
                                              rzOCCharKey(65, 1, 0, 2),
                                              rzOCCharKey(65, -1, 0, 2),
                                              rzOCCharKey(65, -1, -1, -1),
                                              rzOCCharKey(0x10000),
                                              rzOCCharKey(0xFFFFFFFF, 0, 0),
                                              rzOCCharKey(0xF800, 0, 0, 0),
                                              rzOCCharKey()};
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    for (std::size_t j = 0; j < ascending.size(); ++j) {
      EXPECT_EQ(ascending[i] < ascending[j], i < j) << i << " against " << j;
    }
  }
}

TEST(CharKey, ArchiveKeepsTheFontBeforeTheVariant) {
  const Bytes expected = {1, 65, 0, 0, 0, 2, 0, 0, 0, 4, 0, 0, 0, 3, 0, 0, 0};
  Bytes bytes;
  rzArchive out = rzArchive::storingTo(bytes);
  out << rzOCCharKey(65, 2, 3, 4);
  EXPECT_EQ(bytes, expected);
  rzOCCharKey key;
  rzArchive in = rzArchive::loadingFrom(bytes);
  in >> key;
  EXPECT_EQ(fieldsOf(key), (Fields{65, 2, 3, 4}));
}

TEST(CharKey, UnreadableArchiveLeavesTheKeyAlone) {
  const Bytes future = {2, 65, 0, 0, 0, 2, 0, 0, 0, 4, 0, 0, 0, 3, 0, 0, 0};
  const Bytes cut = {1, 65, 0, 0, 0, 2, 0, 0, 0, 4, 0, 0, 0, 3};
  rzOCCharKey key(1, 2, 3, 4);
  rzArchive newer = rzArchive::loadingFrom(future);
  try {
    newer >> key;
    FAIL() << "a version 2 was read";
  } catch (const rzArchive::UnknownVersion& failure) {
    EXPECT_EQ(failure.name(), "oc/occhar");
    EXPECT_GT(failure.number(), 0);
  }
  rzArchive shorter = rzArchive::loadingFrom(cut);
  EXPECT_THROW(shorter >> key, rzArchive::BadFormat);
  EXPECT_EQ(fieldsOf(key), (Fields{1, 2, 3, 4}));
}

}  // namespace
