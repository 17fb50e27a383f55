// SPDX-License-Identifier: Apache-2.0
#include "oc/line.h"

#include <gmock/gmock.h>

#include <limits>

#include "alphabet_kit.h"
#include "oc/oc_defs.h"

namespace {

using testing::ElementsAre;
using Keys = std::vector<rzLong>;
using Doubles = std::vector<double>;
using Radians = std::vector<rzRadian>;
using Poses = std::vector<rz2Rigid>;
using KeySets = std::vector<rzOCKeySet>;

const double kNan = std::numeric_limits<double>::quiet_NaN();
const rzXform<2> kIdentity;

rz2Rigid rigid(double degrees, double x, double y) {
  return rz2Rigid(rzDegree(degrees), rzVector<2>(x, y));
}

rzOCKeySet holding(rzLong key) { return rzOCKeySet({key}, 0); }

// Normal characters 1 and 2 and the blank 3. Only 1 passes for 2.
AlphabetHandle alphabet() {
  static const AlphabetHandle handle = compiledAlphabet(
      {normalChar(1), normalChar(2), blankChar(3)}, {{1, 0.9, 0}, {0.5, 1, 0}, {0, 0, 1}});
  return handle;
}

// A line that differs from its twin by one argument.
struct LineArguments {
  KeySets keySets = {holding(1), holding(2)};
  AlphabetHandle alphabet = ::alphabet();
  Poses poses = {rigid(0, 0, 0), rigid(5, 12, 1)};
  Doubles scales = {1, 2};
  Doubles translations = {0, 1};
  Radians rotations = {rzRadian(0), rzRadian(0.1)};
  Doubles scaleUncertainties = {0, 0.2};
  std::string name = "line";

  rzOCLine make() const {
    return rzOCLine(keySets, alphabet, poses, scales, translations, rotations, scaleUncertainties,
                    name);
  }
};

TEST(Line, StepAndPosesFormsNameTheFirstFault) {
  struct {
    const char* name;
    bool isNull;
    KeySets keySets;
    std::size_t numPoses;
    double scale, translation, rotation, scaleUncertainty;
    std::string stepFailure, posesFailure;
  } const cases[] = {
      {"good", false, KeySets(2), 2, 1, 0, 0, 0, "nothing", "nothing"},
      {"null alphabet", true, KeySets(2), 3, 0, -1, -1, -1,
       "rzOCDefs::BadParams: Alphabet must point to a valid object.",
       "rzOCDefs::BadParams: Alphabet must point to a valid object."},
      {"poses", false, KeySets(2), 3, 1, 0, 0, 0, "nothing",
       "rzOCDefs::BadParams: Number of character poses does not match the number of key sets."},
      {"poses before scale", false, KeySets(2), 3, -1, 0, 0, 0,
       "rzOCDefs::BadParams: Character scale factors must be > 0",
       "rzOCDefs::BadParams: Number of character poses does not match the number of key sets."},
      {"scale 0",
       false,
       {},
       0,
       0,
       -1,
       -1,
       -1,
       "rzOCDefs::BadParams: Character scale factors must be > 0",
       "rzOCDefs::BadParams: Character scale factors must be > 0"},
      {"translation",
       false,
       {},
       0,
       1,
       kNan,
       -1,
       -1,
       "rzOCDefs::BadParams: Character translation uncertainty must be >= 0",
       "rzOCDefs::BadParams: Character position uncertainty must be >= 0"},
      {"rotation",
       false,
       {},
       0,
       1,
       0,
       kNan,
       -1,
       "rzOCDefs::BadParams: Character rotation uncertainty must be >= 0",
       "rzOCDefs::BadParams: Character angular uncertainty must be >= 0"},
      {"scale uncertainty before keys",
       false,
       {holding(9)},
       1,
       1,
       0,
       0,
       kNan,
       "rzOCDefs::BadParams: Character scale uncertainty must be >= 0",
       "rzOCDefs::BadParams: Character scale uncertainty must be >= 0"},
      {"foreign key at a wild card",
       false,
       {rzOCKeySet({9}, -1)},
       1,
       1,
       0,
       0,
       0,
       "rzOCDefs::BadKey: A key in the set sequence is not available in the supplied alphabet.",
       "rzOCDefs::BadKey: A key in the set sequence is not available in the supplied alphabet."},
  };
  for (const auto& c : cases) {
    const AlphabetHandle handle = c.isNull ? AlphabetHandle() : alphabet();
    const rzRadian rotation(c.rotation);
    EXPECT_EQ(failureOf([&] {
                rzOCLine(c.keySets, handle, rz2Rigid(), c.scale, c.translation, rotation,
                         c.scaleUncertainty);
              }),
              c.stepFailure)
        << c.name;
    EXPECT_EQ(failureOf([&] {
                rzOCLine(c.keySets, handle, Poses(c.numPoses), c.scale, c.translation, rotation,
                         c.scaleUncertainty);
              }),
              c.posesFailure)
        << c.name;
  }
}

TEST(Line, VectorsFormTestsLengthsThenPositionByPosition) {
  struct {
    std::string failure;
    void (*spoil)(LineArguments&);
  } const cases[] = {
      {"nothing", [](LineArguments&) {}},
      {"Alphabet must point to a valid object.",
       [](LineArguments& a) { a.alphabet = nullptr, a.poses.clear(); }},
      {"Number of character poses does not match the number of key sets.",
       [](LineArguments& a) { a.poses.clear(), a.scales.clear(); }},
      {"Number of character scales does not match the number of key sets.",
       [](LineArguments& a) { a.scales.clear(), a.translations.clear(); }},
      {"Number of translation uncertainties does not match the number of key sets.",
       [](LineArguments& a) { a.translations.clear(), a.rotations.clear(); }},
      {"Number of rotation uncertainties does not match the number of key sets.",
       [](LineArguments& a) { a.rotations.clear(), a.scaleUncertainties.clear(); }},
      {"Number of scale uncertainties does not match the number of key sets.",
       [](LineArguments& a) { a.scaleUncertainties.clear(), a.scales[0] = 0; }},
      {"Character scale factors must be > 0",
       [](LineArguments& a) { a.scales[0] = kNan, a.translations[0] = -1; }},
      {"Character translation uncertainties must be >= 0",
       [](LineArguments& a) { a.translations[0] = -1, a.rotations[0] = rzRadian(-1); }},
      {"Character rotation uncertainties must be >= 0",
       [](LineArguments& a) { a.rotations[0] = rzRadian(-1), a.scaleUncertainties[0] = -1; }},
      {"Character scale uncertainties must be >= 0",
       [](LineArguments& a) { a.scaleUncertainties[0] = -1, a.scales[1] = 0; }},
  };
  for (const auto& c : cases) {
    LineArguments arguments;
    c.spoil(arguments);
    const std::string expected =
        c.failure == "nothing" ? c.failure : "rzOCDefs::BadParams: " + c.failure;
    EXPECT_EQ(failureOf([&] { arguments.make(); }), expected);
  }
}

rzRect reach(const rzOCLine& line, bool includeConfusable = false) {
  return line.encloseRect(kIdentity, kIdentity, kIdentity, 0, rzRadian(0), 0, includeConfusable);
}

TEST(LineEnclose, JoinsThePlacedCharacters) {
  const KeySets keySets = {holding(1), rzOCKeySet(), holding(2), rzOCKeySet({1}, Keys{})};
  const Poses poses = {rigid(0, 100, 50), rigid(0, -500, 0), rigid(0, 120, 40), rigid(0, 900, 0)};
  const rzOCLine line(keySets, alphabet(), poses, 2.0);
  EXPECT_EQ(reach(line), rzRect(100, 40, 36, 30));
  const rzXform<2> half(rzMatrix<2>(0.5, 0, 0, 0.5), rzVector<2>(1, 2));
  EXPECT_EQ(line.encloseRect(half, kIdentity, kIdentity, 3, rzRadian(0), 0, false),
            rzRect(48, 19, 24, 21));
}

TEST(LineEnclose, TakesConfusableCharactersInTheDirectionFromTheCurrentKey) {
  const Model large(new rzOCModel(2, greyImage({0, 0, 30, 30}), {0, 0, 30, 30}));
  const Models models = {normalChar(1), large};
  const AlphabetHandle oneForTwo = compiledAlphabet(models, {{1, 0.9}, {0.1, 1}});
  const AlphabetHandle twoForOne = compiledAlphabet(models, {{1, 0.1}, {0.9, 1}});
  const auto line = [](const AlphabetHandle& a, const rzOCKeySet& keySet) {
    return rzOCLine({keySet}, a, rz2Rigid());
  };
  EXPECT_EQ(reach(line(oneForTwo, holding(1)), true), rzRect(0, 0, 30, 30));
  EXPECT_EQ(reach(line(oneForTwo, holding(1)), false), rzRect(0, 0, 8, 10));
  EXPECT_EQ(reach(line(twoForOne, holding(1)), true), rzRect(0, 0, 8, 10));
  EXPECT_EQ(reach(line(twoForOne, rzOCKeySet({1, 2}, Keys{0, 1})), true), rzRect(0, 0, 8, 10));
}

TEST(LineEnclose, ConfusableNeedsACompiledAlphabetOnlyWhereItAsks) {
  const AlphabetHandle raw(new rzOCAlphabet(Models{normalChar(1), normalChar(2)}));
  const rzOCLine line({holding(1)}, raw, rz2Rigid());
  EXPECT_EQ(failureOf([&] { reach(line, false); }), "nothing");
  EXPECT_THROW(reach(line, true), rzOCDefs::NotCompiled);
  EXPECT_EQ(failureOf([&] { reach(rzOCLine(KeySets(1), raw, rz2Rigid()), true); }), "nothing");
  EXPECT_EQ(failureOf([&] {
              rzOCLine().encloseRect(kIdentity, kIdentity, kIdentity, 0, rzRadian(kNan), 0, true);
            }),
            "rzOCDefs::BadParams: Rotation uncertainty must be >= 0");
}

TEST(LineArchive, RoundTripKeepsEverything) {
  rzOCLine line = LineArguments().make();
  const Bytes bytes = stored(line);
  rzOCLine loaded;
  load(loaded, bytes);
  EXPECT_EQ(loaded, line);
  EXPECT_EQ(stored(loaded), bytes);
  EXPECT_TRUE(everyTruncationIsRefused(bytes, rzOCLine()));
}

TEST(LineArchive, InconsistentContentIsRefused) {
  rzOCLine line = LineArguments().make();
  rzOCLine empty({}, line.alphabet(), rz2Rigid());
  Bytes bytes = stored(empty);
  // The empty scales stand before three empty vectors of 5 bytes and the empty name of 4.
  const std::size_t scaleCount = bytes.size() - 4 - 3 * 5 - 4;
  bytes[scaleCount] = 1;
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(scaleCount) + 4, 8, 0);
  EXPECT_THROW(load(line, bytes), rzArchive::BadFormat);
  EXPECT_EQ(line, LineArguments().make());
  bytes = stored(line);
  bytes.front() = 1;
  EXPECT_THROW(load(line, bytes), rzArchive::UnknownVersion);
  const Bytes nullAlphabet = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                              0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_THROW(load(line, nullAlphabet), rzArchive::BadFormat);
}

}  // namespace
