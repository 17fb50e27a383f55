// SPDX-License-Identifier: Apache-2.0
#include "oc/key_set.h"

#include <gmock/gmock.h>

#include "alphabet_kit.h"

namespace {

using testing::ElementsAre;
using Keys = std::vector<rzLong>;

const std::string kBadIndices =
    "rzOCDefs::BadIndex: At least one of the current key indices is not valid for specified set of "
    "possible keys.";
const std::string kBadOneIndex =
    "rzOCDefs::BadIndex: Current key index is not valid for specified set of possible keys.";
const std::string kNotOne =
    "rzOCDefs::BadParams: Set of current key indices must contain only one element.";
const std::string kSameKeys =
    "rzOCDefs::SameKey: Possible keys for a character position must be unique.";
const std::string kSameIndices = "rzOCDefs::BadIndex: Key indices must be unique.";
const std::string kWildcardKey = "rzOCDefs::BadKey: Wild-card characters have no key.";
const std::string kWildcardKeys = "rzOCDefs::BadKey: Wild-card characters have no key index.";
const std::string kNotMember =
    "rzOCDefs::BadKey: The specified key is not a member of the key set.";
const std::string kNoOverride =
    "rzOCDefs::BadKey: There are no confusion keys overrides for the specified key.";

TEST(KeySet, ConstructionNamesTheFirstFault) {
  struct {
    Keys keys;
    rzLong index;
    std::string failure;
  } const cases[] = {
      {{5, 6, 7}, 2, "nothing"},   {{5, 6, 7}, -1, "nothing"},   {{}, -1, "nothing"},
      {{5, 6, 7}, 3, kBadIndices}, {{5, 6, 7}, -2, kBadIndices}, {{}, 0, kBadIndices},
      {{5, 6, 5}, 3, kSameKeys},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(failureOf([&] { rzOCKeySet(c.keys, c.index); }), c.failure) << c.index;
  }
}

struct IndicesCase {
  const char* name;
  Keys indices;
  std::string set;
  std::string currentKey;
  std::string currentKeys;
  std::string currentKeyIndex;
};

void PrintTo(const IndicesCase& c, std::ostream* out) { *out << c.name; }

class KeySetIndices : public testing::TestWithParam<IndicesCase> {};

TEST_P(KeySetIndices, DecideWhatTheQuestionsAnswer) {
  const IndicesCase& c = GetParam();
  rzOCKeySet set({50, 60, 70}, 1);
  EXPECT_EQ(failureOf([&] { set.currentKeyIndices(c.indices); }), c.set);
  EXPECT_EQ(failureOf([&] { rzOCKeySet({50, 60, 70}, c.indices); }), c.set);
  EXPECT_EQ(failureOf([&] { set.currentKey(); }), c.currentKey);
  EXPECT_EQ(failureOf([&] { set.currentKeys(); }), c.currentKeys);
  EXPECT_EQ(failureOf([&] { set.currentKeyIndex(); }), c.currentKeyIndex);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, KeySetIndices,
    testing::Values(
        IndicesCase{"one", {2}, "nothing", "nothing", "nothing", "nothing"},
        IndicesCase{"two", {2, 0}, "nothing", kNotOne, "nothing", kNotOne},
        IndicesCase{"wildcard", {-1}, "nothing", kWildcardKey, kWildcardKeys, "nothing"},
        IndicesCase{"wildcard_second", {0, -1}, "nothing", kNotOne, kWildcardKeys, kNotOne},
        IndicesCase{"wildcard_first", {-1, 0}, "nothing", kWildcardKey, kWildcardKeys, kNotOne},
        IndicesCase{"none", {}, "nothing", kNotOne, "nothing", kNotOne},
        IndicesCase{"twice_and_too_large", {9, 9}, kSameIndices, "nothing", "nothing", "nothing"},
        IndicesCase{"too_large", {0, 3}, kBadIndices, "nothing", "nothing", "nothing"},
        IndicesCase{"too_small", {-2}, kBadIndices, "nothing", "nothing", "nothing"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(KeySet, NewKeysDropOverridesUnlessRefused) {
  rzOCKeySet set({50, 60, 70}, 2);
  set.confusionOverrides(60, {1});
  EXPECT_EQ(failureOf([&] { set.keys({50, 60}); }), kBadIndices);
  EXPECT_EQ(failureOf([&] { set.keys({50, 60, 60, 60}); }), kSameKeys);
  EXPECT_TRUE(set.hasConfusionOverrides(60));
  set.keys({60, 61, 62});
  EXPECT_FALSE(set.hasConfusionOverrides(60));
  set.currentKeyIndex(-1);
  EXPECT_EQ(failureOf([&] { set.keys({}); }), "nothing");
}

TEST(KeySet, NamesSelectEveryCharacterThatBearsThem) {
  const AlphabetHandle alphabet(new rzOCAlphabet(
      Models{normalChar(1, "a"), normalChar(2, "b"), normalChar(3, "a"), normalChar(4, "c")}));
  const rzOCKeySet set(alphabet, {"b", "a"}, "a");
  EXPECT_THAT(set.keys(), ElementsAre(2, 1, 3));
  EXPECT_THAT(set.currentKeyIndices(), ElementsAre(1, 2));

  const std::string noCurrent =
      "rzOCDefs::BadIndex: Current character is not valid for specified set of possible character "
      "names.";
  struct {
    std::vector<std::string> names;
    std::string failure;
  } const cases[] = {
      {{"b", "x", "b"},
       "rzOCDefs::SameKey: Possible character names for a character position must be unique."},
      {{"b", "x"},
       "rzOCDefs::BadKey: At least one of the character names is not found in the supplied "
       "alphabet."},
      {{"b", "c"}, noCurrent},
      {{}, noCurrent},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(failureOf([&] { rzOCKeySet(alphabet, c.names, "a"); }), c.failure);
  }
}

TEST(KeySetOverrides, OneListForEachKey) {
  rzOCKeySet set({1, 2, 3}, 0);
  set.confusionOverrides(1, {10});
  set.confusionOverrides(2, {20});
  set.confusionOverrides(3, {30});
  set.confusionOverrides(1, {11, 12});
  EXPECT_THAT(set.confusionOverrides(1), ElementsAre(11, 12));
  set.removeConfusionOverrides(1);
  EXPECT_FALSE(set.hasConfusionOverrides(1));
  EXPECT_THAT(set.confusionOverrides(2), ElementsAre(20));
  EXPECT_THAT(set.confusionOverrides(3), ElementsAre(30));
  EXPECT_EQ(failureOf([&] { set.confusionOverrides(1); }), kNoOverride);
  EXPECT_EQ(failureOf([&] { set.removeConfusionOverrides(1); }), kNoOverride);
  EXPECT_EQ(failureOf([&] { set.confusionOverrides(9); }), kNotMember);
  EXPECT_EQ(failureOf([&] { set.confusionOverrides(9, {}); }), kNotMember);
  EXPECT_EQ(failureOf([&] { set.hasConfusionOverrides(9); }), kNotMember);
  EXPECT_EQ(failureOf([&] { set.removeConfusionOverrides(9); }), kNotMember);
}

// A key set written field by field, in the form of any version.
Bytes keySetBytes(unsigned char version, Keys keys, Keys indices, Keys overrideKeys = {},
                  std::vector<Keys> lists = {}) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  archive || version;
  rf_SerializeVector(archive, keys, 4);
  if (version == 0) {
    archive || indices.front();
    return bytes;
  }
  rf_SerializeVector(archive, indices, 4);
  if (version == 1) return bytes;
  rf_SerializeVector(archive, overrideKeys, 4);
  rf_SerializeVector(
      archive, lists, [](rzArchive& a, Keys& list) { rf_SerializeVector(a, list, 4); }, 5);
  return bytes;
}

TEST(KeySetArchive, ReadsAllVersionsAndWritesTheNewest) {
  rzOCKeySet set({50, 60, 70}, 2);
  rzOCKeySet loaded({1}, 0);
  loaded.confusionOverrides(1, {2});
  for (unsigned char version = 0; version <= 2; ++version) {
    load(loaded, keySetBytes(version, {50, 60, 70}, {2}));
    EXPECT_EQ(loaded, set) << int{version};
  }
  set.currentKeyIndices({2, 0});
  set.confusionOverrides(60, {1, 2});
  const Bytes bytes = stored(set);
  EXPECT_EQ(bytes, keySetBytes(2, {50, 60, 70}, {2, 0}, {60}, {{1, 2}}));
  load(loaded, bytes);
  EXPECT_EQ(loaded, set);
  EXPECT_TRUE(everyTruncationIsRefused(bytes, rzOCKeySet({1}, 0)));
}

TEST(KeySetArchive, WhatWouldBeReadOutOfRangeIsRefused) {
  const rzOCKeySet before({1}, 0);
  rzOCKeySet set = before;
  for (const Bytes& bytes :
       {keySetBytes(0, {5}, {1}), keySetBytes(1, {5}, {0, -2}), keySetBytes(2, {}, {0}),
        keySetBytes(2, {5}, {0}, {5}, {}), keySetBytes(2, {5}, {0}, {}, {{1}})}) {
    EXPECT_THROW(load(set, bytes), rzArchive::BadFormat);
    EXPECT_EQ(set, before);
  }
  EXPECT_THROW(load(set, keySetBytes(3, {5}, {0})), rzArchive::UnknownVersion);
}

}  // namespace
