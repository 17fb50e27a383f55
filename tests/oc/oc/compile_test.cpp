// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "oc/image_helpers.h"
#include "oc/oc/alphabet_kit.h"
#include "oc/oc/compile_row.h"
#include "rz/attention.h"
#include "rz/diag.h"
#include "rz/timeout.h"
#include "support/draw.h"
#include "support/noise.h"

namespace {

using testing::ElementsAre;

constexpr rzLong kBlankKey = ' ';
const rzPelRect kLetterWindow(0, 0, 28, 38);

Image letterImage(const draw::Shape& shape, double x = 14, double y = 19) {
  rzPelBuffer<unsigned char> image = draw::paper(kLetterWindow.width(), kLetterWindow.height());
  draw::fill(image, shape, shift(x, y));
  return image;
}

Model letter(rzLong key, const draw::Shape& shape, const Image& mask = Image()) {
  return new rzOCModel(key, letterImage(shape), mask, kLetterWindow);
}

Model blank(const rzPelRect& area = kLetterWindow, rzLong key = kBlankKey) {
  return new rzOCModel(key, Image(), area, rzOCModel::eBlank);
}

// A dark bar on faint noise; a broader one resembles its neighbourhood more.
Model stripes(rzLong key, rzLong width) {
  rzPelBuffer<unsigned char> image =
      noise(kLetterWindow, static_cast<std::uint32_t>(key), 100, 110);
  for (rzLong y = 0; y < image.height(); ++y) {
    for (rzLong x = 0; x < width; ++x) *image.pointToPel(x + 5, y) = 10;
  }
  return new rzOCModel(key, image, kLetterWindow);
}

Models fiveLetters() {
  return {letter('F', draw::letterF()), letter('R', draw::letterR()), letter('K', draw::letterK()),
          letter('A', draw::letterA()), letter('O', draw::letterO())};
}

rzOCAlphabet compiled(const Models& models) { return rzOCAlphabet(models, 0.5, true); }

std::vector<double> rowOf(const rzOCAlphabet& alphabet, rzLong key) {
  std::vector<double> row;
  for (const Model& other : alphabet.characters()) {
    row.push_back(alphabet.confusion(key, other->key()));
  }
  return row;
}

std::vector<rzXform<2>> offsetsOf(const rzOCAlphabet& alphabet, rzLong key) {
  std::vector<rzXform<2>> row;
  for (const Model& other : alphabet.characters()) {
    row.push_back(alphabet.characterOffset(key, other->key()));
  }
  return row;
}

TEST(Compile, WithoutCharactersThereIsNothingToDo) {
  rzOCAlphabet alphabet{Models()};
  EXPECT_FALSE(alphabet.isCompiled());
  alphabet.compile();
  EXPECT_TRUE(alphabet.isCompiled());
  alphabet.add(letter('F', draw::letterF()), true);
  EXPECT_THAT(rowOf(alphabet, 'F'), ElementsAre(1.0));
}

TEST(Compile, ATwinIsFoundWhereItLiesAndLettersPassForThemselvesOnly) {
  Image moved = letterImage(draw::letterR(), 16, 21);
  Models models = fiveLetters();
  models.push_back(new rzOCModel('r', moved, kLetterWindow));
  const rzOCAlphabet alphabet = compiled(models);
  EXPECT_GT(alphabet.confusion('R', 'r'), 0.85);  // two columns and rows of paper hang over
  EXPECT_EQ(alphabet.characterOffset('R', 'r'), shift(2, 2));
  EXPECT_EQ(alphabet.characterOffset('r', 'R'), shift(-2, -2));
  for (const Model& a : fiveLetters()) {
    for (const Model& b : fiveLetters()) {
      const double value = alphabet.confusion(a->key(), b->key());
      if (a->key() == b->key()) {
        EXPECT_EQ(value, 1.0);
        EXPECT_EQ(alphabet.characterOffset(a->key(), b->key()), rzXform<2>());
      } else {
        EXPECT_LT(value, 0.6) << a->key() << ' ' << b->key();
      }
    }
  }
}

TEST(Compile, ClientFramesOfAnotherScaleAreBroughtToOneGrid) {
  // The same letter, drawn twice as large, half a client unit a pel.
  rzPelBuffer<unsigned char> large = draw::paper(56, 76);
  draw::fill(large, draw::letterK(), rzXform<2>(rzMatrix<2>(2, 0, 0, 2), rzVector<2>(28, 38)));
  large.clientFromImageXform(rzXform<2>(rzMatrix<2>(0.5, 0, 0, 0.5), rzVector<2>(10, 5)));
  const Model twin = new rzOCModel('k', large, large.window());
  const rzOCAlphabet alphabet =
      compiled({letter('K', draw::letterK()), twin, letter('A', draw::letterA())});
  EXPECT_GT(alphabet.confusion('K', 'k'), 0.95);
  EXPECT_GT(alphabet.confusion('k', 'K'), 0.9);  // the coarser picture is less sharp
  EXPECT_TRUE(rfRealEq(alphabet.characterOffset('K', 'k'), shift(10, 5), 0.51));
  EXPECT_EQ(alphabet.characterOffset('K', 'k').matrix(), rzMatrix<2>());
  EXPECT_LT(alphabet.confusion('A', 'k'), 0.5);
}

TEST(Compile, OnlyTheImageAreaAndWhatTheMasksCareForCount) {
  rzPelBuffer<unsigned char> dirty = rfPelCopy(letterImage(draw::letterA()));
  rfPelCopy(noise(rzPelRect(0, 0, 28, 4), 1), dirty);
  rzPelBuffer<unsigned char> care(kLetterWindow, 32);
  rfPelSet(care, 255);
  for (rzLong k = 0; k < 28 * 4; ++k) *care.pointToPel(k % 28, k / 28) = 0;
  const rzPelRect clean(0, 4, 28, 34);
  const Model cut = new rzOCModel(1, letterImage(draw::letterA()), clean);
  const Model dirtyCut = new rzOCModel(2, dirty, clean);
  const Model masked = new rzOCModel(3, dirty, care, kLetterWindow);
  const Model whole = new rzOCModel(4, dirty, kLetterWindow);
  const rzOCAlphabet alphabet = compiled({cut, dirtyCut, masked, whole});
  EXPECT_EQ(alphabet.confusion(1, 2), 1.0);
  EXPECT_EQ(alphabet.confusion(1, 3), 1.0);
  EXPECT_EQ(alphabet.confusion(3, 1), 1.0);
  EXPECT_LT(alphabet.confusion(4, 1), 0.9);
}

TEST(Compile, WidthOfTheBatchesMakesNoDifference) {
  Models models = fiveLetters();
  models.push_back(blank());
  models.push_back(letter('Z', draw::letterZ(), noise(kLetterWindow, 3)));
  const rzLong n = rf_Count(models.size());
  const rzOCAlphabet expected = compiled(models);
  EXPECT_EQ(rf_NumCompileThreads(), 1);
  for (const rzLong width : {1, 2, 3, 7, 100}) {
    rzNMMatrix matrix(n, n);
    std::vector<std::vector<rzXform<2>>> offsets(models.size(),
                                                 std::vector<rzXform<2>>(models.size()));
    rf_CompileRows({&models, -1, &matrix, &offsets}, width);
    for (rzLong row = 0; row < n; ++row) {
      const rzLong key = models[static_cast<std::size_t>(row)]->key();
      EXPECT_EQ(offsets[static_cast<std::size_t>(row)], offsetsOf(expected, key)) << width;
      for (rzLong column = 0; column < n; ++column) {
        const rzLong other = models[static_cast<std::size_t>(column)]->key();
        EXPECT_EQ(matrix(row, column), expected.confusion(key, other)) << width;
      }
    }
  }
}

TEST(CompileBlank, StandsAloneAgainstBlanksAndNormalCharactersNeverPassForIt) {
  const rzOCAlphabet one = compiled({blank()});
  EXPECT_THAT(rowOf(one, kBlankKey), ElementsAre(1.0));
  EXPECT_THAT(offsetsOf(one, kBlankKey), ElementsAre(rzXform<2>()));
  const rzOCAlphabet alphabet = compiled({blank(), blank({0, 0, 9, 9}, 1), fiveLetters()[0]});
  EXPECT_EQ(alphabet.confusion(kBlankKey, 1), 0.0);
  EXPECT_EQ(alphabet.confusion(1, kBlankKey), 0.0);
  EXPECT_EQ(alphabet.confusion('F', kBlankKey), 0.0);
  EXPECT_EQ(alphabet.characterOffset('F', kBlankKey), rzXform<2>());
}

TEST(CompileBlank, WhatShowsLessThanTheWeakestQuarterCanPassForIt) {
  Models models = {blank()};
  for (rzLong width = 2; width < 10; ++width) models.push_back(stripes(width, width));
  std::vector<double> scores;
  for (std::size_t k = 1; k < models.size(); ++k) {
    scores.push_back(rfScoreBlankness(models[k]->image(), Image(), rzXform<2>(), Image(),
                                      kLetterWindow, Image()));
  }
  std::vector<double> sorted = scores;
  std::sort(sorted.begin(), sorted.end());
  const double mean = 0.5 * (sorted[0] + sorted[1]);
  const rzOCAlphabet alphabet = compiled(models);
  int numPassing = 0;
  for (std::size_t k = 0; k < scores.size(); ++k) {
    const rzLong key = models[k + 1]->key();
    const double expected = scores[k] < mean ? 1.0 - scores[k] / mean : 0.0;
    EXPECT_DOUBLE_EQ(alphabet.confusion(kBlankKey, key), expected);
    EXPECT_EQ(alphabet.areConfusable(kBlankKey, key), expected > 0.0);
    numPassing += expected > 0.0 ? 1 : 0;
  }
  EXPECT_EQ(numPassing, 1);
  const rzXform<2> own = alphabet.characterOffset(kBlankKey, kBlankKey);
  EXPECT_DOUBLE_EQ(own.trans().x(), mean);
  EXPECT_DOUBLE_EQ(own.trans().y(), 1.0 - sorted[0] / mean);
}

TEST(CompileBlank, CharactersThatShowNothingThereDivideNothing) {
  const rzPelRect corner(0, 0, 6, 6);  // paper alone
  const rzOCAlphabet alphabet =
      compiled({fiveLetters()[4], blank(corner), letter('I', draw::stroke(0, -15, 0, 15))});
  EXPECT_THAT(rowOf(alphabet, kBlankKey), ElementsAre(0.0, 1.0, 0.0));
  EXPECT_THAT(offsetsOf(alphabet, kBlankKey),
              ElementsAre(rzXform<2>(), rzXform<2>(), rzXform<2>()));
}

TEST(Compile, ARowThatCannotBeMeasuredKeepsItsZerosAndTheOthersGoOn) {
  const Image flat = draw::paper(20, 20);
  const Image onePel = draw::paper(1, 1);
  rzPelBuffer<unsigned char> careless(kLetterWindow, 32);
  const Models models = {new rzOCModel(1, flat, flat.window()),
                         new rzOCModel(2, onePel, onePel.window()),
                         letter(3, draw::letterA(), careless),
                         blank({0, 0, 4, 30}),
                         blank(rzPelRect(), 5),
                         fiveLetters()[0],
                         fiveLetters()[1]};
  const rzOCAlphabet alphabet = compiled(models);
  EXPECT_TRUE(alphabet.isCompiled());
  EXPECT_THAT(rowOf(alphabet, 1), ElementsAre(1, 0, 0, 0, 0, 0, 0));
  EXPECT_THAT(rowOf(alphabet, 2), ElementsAre(0, 1, 0, 0, 0, 0, 0));
  EXPECT_THAT(rowOf(alphabet, 3), ElementsAre(0, 0, 1, 0, 0, 0, 0));
  EXPECT_THAT(rowOf(alphabet, kBlankKey), ElementsAre(0, 0, 0, 1, 0, 0, 0));
  EXPECT_THAT(rowOf(alphabet, 5), ElementsAre(0, 0, 0, 0, 1, 0, 0));
  EXPECT_GT(alphabet.confusion('F', 'R'), 0.0);
  EXPECT_EQ(alphabet.confusion('F', 1), 0.0);
}

// A normal character without image: no constructor makes one, an archive may hold one.
Model withoutImage(rzLong key) {
  rzOCModel blank(key, Image(), kLetterWindow, rzOCModel::eBlank);
  Bytes bytes = stored(blank);
  const std::size_t fromEnd = 16 + 4 + 4 + 4;  // rectangle, empty description and name, type
  bytes[bytes.size() - fromEnd] = 0;
  const rzPtrHandle<rzOCModel> model(new rzOCModel);
  load(*model, bytes);
  return model;
}

TEST(Compile, ACharacterWithoutImageEndsTheRowsThatMeetIt) {
  Models models = fiveLetters();
  models[2] = withoutImage('K');
  const rzOCAlphabet alphabet = compiled(models);
  const auto met = [](const std::vector<double>& row) { return std::pair(row[1] > 0, row[3] > 0); };
  EXPECT_EQ(met(rowOf(alphabet, 'F')), std::pair(true, false));
  EXPECT_EQ(met(rowOf(alphabet, 'O')), std::pair(true, false));
  EXPECT_THAT(rowOf(alphabet, 'K'), ElementsAre(0, 0, 1, 0, 0));
}

TEST(Compile, AStopLeavesTheAlphabetNotCompiledAndALaterCallStartsAgain) {
  rzOCAlphabet alphabet(fiveLetters());
  {
    const rzTimeoutScope noTime(0.0);
    EXPECT_THROW(alphabet.compile(), rzTimeout::Expired);
  }
  EXPECT_FALSE(alphabet.isCompiled());
  EXPECT_EQ(failureOf([&] { alphabet.confusion('F', 'R'); }), "rzOCDefs::NotCompiled: ");
  alphabet.compile();
  EXPECT_EQ(rowOf(alphabet, 'F'), rowOf(compiled(fiveLetters()), 'F'));
}

TEST(Compile, TablesSurviveTheArchive) {
  Models models = fiveLetters();
  models.push_back(blank());
  rzOCAlphabet alphabet = compiled(models);
  rzOCAlphabet loaded;
  load(loaded, stored(alphabet));
  ASSERT_TRUE(loaded.isCompiled());
  for (const Model& model : models) {
    EXPECT_EQ(rowOf(loaded, model->key()), rowOf(alphabet, model->key()));
    EXPECT_EQ(offsetsOf(loaded, model->key()), offsetsOf(alphabet, model->key()));
  }
}

}  // namespace
