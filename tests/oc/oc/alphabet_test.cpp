// SPDX-License-Identifier: Apache-2.0
#include "oc/alphabet.h"

#include <gmock/gmock.h>

#include <limits>

#include "alphabet_kit.h"

namespace {

using testing::ElementsAre;

const std::string kSameSupplied =
    "rzOCDefs::SameKey: The keys for at least two of the supplied characters are identical.";
const std::string kSameAsPresent =
    "rzOCDefs::SameKey: At least one of the supplied characters has the same key as one of the "
    "characters in the alphabet.";
const std::string kNoCharacter =
    "rzOCDefs::BadKey: The character for the specified key does not exist in the alphabet.";

std::vector<rzLong> keysOf(const rzOCAlphabet& alphabet) {
  std::vector<rzLong> keys;
  for (const auto& character : alphabet.characters()) keys.push_back(character->key());
  return keys;
}

// Characters 10, 20, 30, 40 (30 is a blank); confusion (i, j) is (10 i + j) / 100.
rzPtrHandle<rzOCAlphabet> fourCharacters() {
  std::vector<std::vector<double>> values(4, std::vector<double>(4));
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 4; ++j) values[i][j] = static_cast<double>(10 * i + j) / 100;
  }
  return compiledAlphabet({normalChar(10), normalChar(20), blankChar(30), normalChar(40)}, values);
}

TEST(Alphabet, ThresholdIsTestedBeforeTheCharacters) {
  const Models twins = {normalChar(1), normalChar(1)};
  const std::string refused = "rzOCDefs::BadParams: Confusion threshold must be between 0 and 1.";
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double threshold : {-1e-9, 1.0 + 1e-9, nan}) {
    EXPECT_EQ(failureOf([&] { rzOCAlphabet(twins, threshold); }), refused);
  }
  for (const double threshold : {0.0, 1.0}) {
    EXPECT_EQ(rzOCAlphabet(Models{}, threshold).confusionThreshold(), threshold);
  }
}

TEST(Alphabet, AddOfNothingStillUndoesCompilation) {
  const auto alphabet = fourCharacters();
  alphabet->add(Models{});
  EXPECT_FALSE(alphabet->isCompiled());
}

TEST(Alphabet, RefusedListsChangeNothing) {
  const auto alphabet = fourCharacters();
  const rzOCAlphabet before = *alphabet;
  const Models presentAndTwins = {normalChar(1), normalChar(1), normalChar(20)};
  EXPECT_EQ(failureOf([&] { alphabet->add(presentAndTwins); }), kSameAsPresent);
  EXPECT_EQ(failureOf([&] { alphabet->add(Models{normalChar(1), normalChar(1)}); }), kSameSupplied);
  EXPECT_EQ(failureOf([&] { alphabet->characters(presentAndTwins); }), kSameSupplied);
  EXPECT_THROW(alphabet->add(Models{normalChar(1), nullptr}), rzBadPointer);
  EXPECT_EQ(failureOf([&] { alphabet->add(Models{normalChar(20), nullptr}); }), kSameAsPresent);
  EXPECT_THROW(alphabet->characters(Models{nullptr}), rzBadPointer);
  EXPECT_EQ(failureOf([&] {
              alphabet->remove({10, 11, 10});
            }),
            "rzOCDefs::BadKey: At least one of the supplied keys does not reference a character in "
            "this alphabet.");
  EXPECT_EQ(failureOf([&] {
              alphabet->remove({10, 10});
            }),
            "rzOCDefs::SameKey: At least one of the supplied keys is identical.");
  EXPECT_EQ(*alphabet, before);
}

struct RemovalCase {
  const char* name;
  std::vector<rzLong> keys;
  std::vector<rzLong> left;
};

void PrintTo(const RemovalCase& c, std::ostream* out) { *out << c.name; }

class AlphabetRemoval : public testing::TestWithParam<RemovalCase> {};

TEST_P(AlphabetRemoval, LastTakesTheHoleAndThePairsKeepTheirValues) {
  const auto before = fourCharacters();
  rzOCAlphabet alphabet = *before;
  alphabet.remove(GetParam().keys);
  EXPECT_EQ(keysOf(alphabet), GetParam().left);
  EXPECT_TRUE(alphabet.isCompiled());
  for (const rzLong a : GetParam().left) {
    for (const rzLong b : GetParam().left) {
      EXPECT_EQ(alphabet.confusion(a, b), before->confusion(a, b));
      EXPECT_EQ(alphabet.characterOffset(a, b), before->characterOffset(a, b));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, AlphabetRemoval,
                         testing::Values(RemovalCase{"none", {}, {10, 20, 30, 40}},
                                         RemovalCase{"last", {40}, {10, 20, 30}},
                                         RemovalCase{"first", {10}, {40, 20, 30}},
                                         RemovalCase{"two_in_order", {10, 20}, {40, 30}},
                                         RemovalCase{"the_one_that_moved", {10, 40}, {30, 20}},
                                         RemovalCase{"all", {20, 10, 40, 30}, {}}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Alphabet, TablesOfAnEmptiedAlphabetSurviveAnArchive) {
  const auto alphabet = fourCharacters();
  alphabet->remove({10, 20, 30, 40});
  rzOCAlphabet loaded;
  load(loaded, stored(*alphabet));
  EXPECT_EQ(loaded, *alphabet);
}

TEST(Alphabet, ConfusionIsOfTheFirstWithTheSecond) {
  const auto alphabet = fourCharacters();
  EXPECT_EQ(alphabet->confusion(20, 40), 0.13);
  EXPECT_EQ(alphabet->confusion(40, 20), 0.31);
  EXPECT_EQ(alphabet->characterOffset(40, 20), shift(3, 1));
  EXPECT_EQ(failureOf([&] { alphabet->confusion(20, 21); }), kNoCharacter);
  EXPECT_EQ(failureOf([&] { alphabet->characterOffset(21, 20); }), kNoCharacter);
}

TEST(Alphabet, ConfusableMeansAboveTheThresholdAndAboveZeroForBlanks) {
  const auto alphabet = fourCharacters();
  alphabet->confusionThreshold(0.13);
  EXPECT_FALSE(alphabet->areConfusable(20, 40));  // 0.13 is not above
  EXPECT_TRUE(alphabet->areConfusable(40, 20));
  alphabet->confusionThreshold(1.0);
  EXPECT_FALSE(alphabet->areConfusable(40, 20));
  EXPECT_TRUE(alphabet->areConfusable(30, 10));  // a blank with 0.2
  EXPECT_TRUE(alphabet->isCompiled());
}

TEST(Alphabet, QuestionsFailInTheOrderToldOfThem) {
  const auto compiled = fourCharacters();
  rzOCAlphabet raw(Models{normalChar(10), normalChar(20)});
  const std::string notCompiled = "rzOCDefs::NotCompiled: ";
  EXPECT_EQ(failureOf([&] { raw.confusion(11, 12); }), notCompiled);
  EXPECT_EQ(failureOf([&] { raw.characterOffset(10, 20); }), notCompiled);
  EXPECT_EQ(failureOf([&] { raw.areConfusable(11, 20); }), kNoCharacter);
  EXPECT_EQ(failureOf([&] { raw.areConfusable(10, 21); }), notCompiled);
  EXPECT_EQ(failureOf([&] { compiled->areConfusable(10, 21); }), kNoCharacter);
}

TEST(AlphabetArchive, RoundTripKeepsTablesAndSharing) {
  const Model shared = normalChar(10);
  const auto alphabet = compiledAlphabet({shared, blankChar(20)}, {{1, 0.25}, {0.75, 1}});
  const Bytes bytes = stored(*alphabet);
  rzOCAlphabet loaded;
  load(loaded, bytes);
  EXPECT_EQ(loaded, *alphabet);
  EXPECT_EQ(loaded.confusion(20, 10), 0.75);
  EXPECT_EQ(loaded.characterOffset(20, 10), shift(1, 0));
  EXPECT_EQ(stored(loaded), bytes);
  EXPECT_TRUE(everyTruncationIsRefused(bytes, rzOCAlphabet(Models{normalChar(3)})));
}

TEST(AlphabetArchive, TablesOfAnotherSizeAreRefusedOnlyIfTheyCount) {
  const Models one = {normalChar(10)};
  const std::vector<std::vector<rzXform<2>>> fitting = {{rzXform<2>()}};
  struct {
    const char* name;
    rzNMMatrix matrix;
    std::vector<std::vector<rzXform<2>>> offsets;
  } const cases[] = {
      {"no matrix", rzNMMatrix(), fitting},
      {"wide matrix", rzNMMatrix(1, 2), fitting},
      {"no offsets", rzNMMatrix(1, 1), {}},
      {"empty row of offsets", rzNMMatrix(1, 1), {{}}},
  };
  for (const auto& c : cases) {
    rzOCAlphabet target;
    EXPECT_THROW(load(target, alphabetBytes(one, true, c.matrix, c.offsets)), rzArchive::BadFormat)
        << c.name;
    EXPECT_EQ(target, rzOCAlphabet()) << c.name;
    EXPECT_NO_THROW(load(target, alphabetBytes(one, false, c.matrix, c.offsets))) << c.name;
  }
}

TEST(AlphabetArchive, NewerVersionAndNullCharacterAreRefused) {
  rzOCAlphabet alphabet;
  Bytes bytes = stored(alphabet);
  bytes.front() = 2;
  EXPECT_THROW(load(alphabet, bytes), rzArchive::UnknownVersion);
  EXPECT_THROW(load(alphabet, alphabetBytes({nullptr}, false, rzNMMatrix(), {})),
               rzArchive::BadFormat);
}

}  // namespace
