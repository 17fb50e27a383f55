// SPDX-License-Identifier: Apache-2.0
#include "oc/line_arrangement.h"

#include <gmock/gmock.h>

#include <limits>

#include "alphabet_kit.h"

namespace {

using testing::ElementsAre;
using Doubles = std::vector<double>;
using Keys = std::vector<rzLong>;
using Lines = std::vector<rzPtrHandle_const<rzOCLine>>;
using Poses = std::vector<rz2Rigid>;
using Radians = std::vector<rzRadian>;

rz2Rigid rigid(double degrees, double x, double y) {
  return rz2Rigid(rzDegree(degrees), rzVector<2>(x, y));
}

// "a" is the name of 1 and of 3, "b" that of 2.
AlphabetHandle alphabet() {
  static const AlphabetHandle handle(
      new rzOCAlphabet(Models{normalChar(1, "a"), normalChar(2, "b"), normalChar(3, "a")}));
  return handle;
}

// Two positions, 12 apart, each of which may hold 3, 1 or 2 and holds 1.
rzPtrHandle_const<rzOCLine> line() {
  rzOCKeySet keySet({3, 1, 2}, 1);
  keySet.confusionOverrides(2, {7});
  return new rzOCLine({keySet, keySet}, alphabet(), rigid(0, 12, 0));
}

rzOCLineArrangement twoLines() {
  return rzOCLineArrangement(Lines{line(), line()}, Poses{rigid(0, 0, 0), rigid(90, 100, 40)},
                             Doubles{0, 1}, Radians{rzRadian(0), rzRadian(0.1)}, "label");
}

TEST(Arrangement, ConstructionNamesTheFirstFault) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Lines one = {line()};
  const std::vector<rzPtrHandle<rzOCLine>> changeable = {new rzOCLine};
  const rzRadian good(0);
  const rzRadian bad(-1);
  const std::string params = "rzOCDefs::BadParams: ";
  const auto failure = [](auto&&... arguments) {
    return failureOf([&] { rzOCLineArrangement(std::forward<decltype(arguments)>(arguments)...); });
  };
  const std::string translation = params + "Line translation uncertainty must be >= 0";
  const std::string rotation = params + "Line rotation uncertainty must be >= 0";
  const std::string poses = params + "The number of line poses does not match the number of lines.";
  EXPECT_EQ(failure(one, rz2Rigid(), nan, bad), translation);
  EXPECT_EQ(failure(changeable, rz2Rigid(), 0.0, bad), rotation);
  EXPECT_EQ(failure(one, Poses(2), -1.0, bad), translation);
  EXPECT_EQ(failure(one, Poses(2), 0.0, bad), rotation);
  EXPECT_EQ(failure(changeable, Poses(2), 0.0, good), poses);
  EXPECT_EQ(failure(one, Poses(2), Doubles{}, Radians{}), poses);
  EXPECT_EQ(failure(one, Poses(1), Doubles{}, Radians{}),
            params + "The number of translation uncertainties does not match the number of lines.");
  EXPECT_EQ(failure(changeable, Poses(1), Doubles{-1}, Radians{}),
            params + "The number of rotation uncertainties does not match the number of lines.");
  EXPECT_EQ(failure(one, Poses(1), Doubles{-1}, Radians{bad}),
            params + "Line position uncertaintiesp must be >= 0");
  EXPECT_EQ(failure(one, Poses(1), Doubles{0}, Radians{bad}),
            params + "Line rotation uncertainties must be >= 0");
  EXPECT_EQ(failure(changeable, Poses(1), Doubles{0}, Radians{good}), "nothing");
}

TEST(ChangeCurrentKey, ChangesOnePositionAndSharesTheRest) {
  const rzOCLineArrangement source = twoLines();
  const auto changed = rfOCChangeCurrentKey(source, 1, 0, 2);
  EXPECT_EQ(source, twoLines());
  EXPECT_NE(*changed, source);
  EXPECT_EQ(changed->lines()[0].rep(), source.lines()[0].rep());
  EXPECT_EQ(changed->lines()[1]->alphabet().rep(), source.lines()[1]->alphabet().rep());
  EXPECT_EQ(changed->lines()[1]->character(0)->key(), 2);
  EXPECT_EQ(changed->lines()[1]->character(1)->key(), 1);
  EXPECT_THAT(changed->lines()[1]->keySetSequence()[0].confusionOverrides(2), ElementsAre(7));
  EXPECT_EQ(*rfOCChangeCurrentKey(*changed, 1, 0, 1), source);
}

TEST(ChangeCurrentKeys, TakesKeysInOrderAndNamesInAlphabetOrder) {
  const auto current = [](const rzPtrHandle<rzOCLineArrangement>& a) {
    return a->lines()[0]->keySetSequence()[0].currentKeys();
  };
  EXPECT_THAT(current(rfOCChangeCurrentKeys(twoLines(), 0, 0, Keys{2, 3})), ElementsAre(2, 3));
  EXPECT_THAT(current(rfOCChangeCurrentKeys(twoLines(), 0, 0, "a")), ElementsAre(1, 3));
}

TEST(ChangeCurrentKeys, NamesTheFirstFault) {
  const rzOCLineArrangement source = twoLines();
  const std::string badLine = "rzOCDefs::BadParams: The supplied line index is not valid.";
  const std::string badPosition = "rzOCDefs::BadParams: The supplied position index is not valid.";
  const std::string noKeys =
      "rzOCDefs::BadKey: At least one of the keys is not found in the alphabet.";
  struct {
    rzLong line, position;
    Keys keys;
    std::string failure;
  } const cases[] = {
      {2, 2, {}, noKeys},
      {2, 2, {9}, badLine},
      {-1, 0, {1}, badLine},
      {0, 2, {9}, badPosition},
      {0, -1, {1}, badPosition},
      {0,
       0,
       {1, 1, 9},
       "rzOCDefs::BadKey: The specified key is not in the keySet for this position."},
      {0, 0, {1, 1}, "rzOCDefs::BadIndex: Key indices must be unique."},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(failureOf([&] { rfOCChangeCurrentKeys(source, c.line, c.position, c.keys); }),
              c.failure);
  }
  EXPECT_EQ(failureOf([&] { rfOCChangeCurrentKeys(source, 2, 9, "nobody"); }), badLine);
  EXPECT_EQ(failureOf([&] { rfOCChangeCurrentKeys(source, 0, 9, "nobody"); }), noKeys);
}

TEST(ArrangementArchive, RoundTripKeepsContentAndSharing) {
  const auto shared = line();
  rzOCLineArrangement lines(Lines{shared, shared, line()}, rigid(10, 0, 30), 1.0, rzRadian(0.1),
                            "label");
  const Bytes bytes = stored(lines);
  rzOCLineArrangement loaded;
  load(loaded, bytes);
  EXPECT_EQ(loaded, lines);
  EXPECT_EQ(loaded.lines()[0].rep(), loaded.lines()[1].rep());
  EXPECT_EQ(loaded.lines()[0]->alphabet().rep(), loaded.lines()[2]->alphabet().rep());
  EXPECT_EQ(stored(loaded), bytes);
  EXPECT_TRUE(everyTruncationIsRefused(bytes, rzOCLineArrangement()));
}

TEST(ArrangementArchive, InconsistentContentIsRefused) {
  rzOCLineArrangement target;
  // Version; lines; poses; two vectors of uncertainties; name. All empty.
  const Bytes empty = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(failureOf([&] { load(target, empty); }), "nothing");
  Bytes nullLine = empty;
  nullLine[2] = 1;
  nullLine.insert(nullLine.begin() + 6, 4, 0);
  EXPECT_THROW(load(target, nullLine), rzArchive::BadFormat);
  Bytes poseOfNoLine = empty;
  poseOfNoLine[7] = 1;
  poseOfNoLine.insert(poseOfNoLine.begin() + 11, 24, 0);
  EXPECT_THROW(load(target, poseOfNoLine), rzArchive::BadFormat);
  Bytes newer = empty;
  newer[0] = 1;
  EXPECT_THROW(load(target, newer), rzArchive::UnknownVersion);
  EXPECT_EQ(target, rzOCLineArrangement());
}

}  // namespace
