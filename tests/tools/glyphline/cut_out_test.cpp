// SPDX-License-Identifier: Apache-2.0
#include "cut_out.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "rz/pel_functions.h"
#include "support/draw.h"

namespace {

using glyphline::CutOut;
using glyphline::Polarity;

constexpr rzLong kMargin = 3;

rzPelBuffer<unsigned char> bars(unsigned char paper, unsigned char ink) {
  // Three bars, two pels apart: x 10 to 14, 16 to 20, 22 to 26; y 10 to 30.
  auto picture = draw::paper(40, 40, paper);
  for (const double x : {12.0, 18.0, 24.0}) {
    draw::fill(picture, draw::stroke(x, 10, x, 30, 4.0), rzXform<2>(), ink);
  }
  return picture;
}

TEST(CutOut, PaintsNeighboursOverAndKeepsTheCharacter) {
  struct Row {
    const char* name;
    unsigned char paper;
    unsigned char ink;
    Polarity polarity;
  };
  for (const Row& row :
       {Row{"dark", 200, 40, Polarity::kDark}, Row{"light", 40, 200, Polarity::kLight},
        Row{"dark, found out", 200, 40, Polarity::kAuto}}) {
    SCOPED_TRACE(row.name);
    const CutOut cut =
        glyphline::cutOut(bars(row.paper, row.ink), rzPelRect(16, 9, 4, 22), kMargin, row.polarity);
    EXPECT_EQ(cut.ink, rzRect(16, 10, 4, 20));
    EXPECT_EQ(cut.corner, rzVector<2>(13, 7));
    ASSERT_EQ(cut.image.window(), rzPelRect(0, 0, 10, 26));
    for (rzLong y = 0; y < 26; ++y) {
      for (rzLong x = 0; x < 10; ++x) {
        const bool isInk = x >= kMargin && x < 7 && y >= kMargin && y < 23;
        EXPECT_EQ(*cut.image.pointToPel(x, y), isInk ? row.ink : row.paper) << x << ", " << y;
      }
    }
  }
}

TEST(CutOut, PutsBackgroundWhereThePictureEnds) {
  auto picture = draw::paper(20, 20, 210);
  draw::fill(picture, draw::stroke(0, 10, 6, 10, 20.0), rzXform<2>(), 30);
  const CutOut cut = glyphline::cutOut(picture, rzPelRect(0, 0, 6, 20), kMargin, Polarity::kDark);
  EXPECT_EQ(cut.image.window(), rzPelRect(0, 0, 12, 26));
  EXPECT_EQ(*cut.image.pointToPel(0, 0), 210);
  EXPECT_EQ(*cut.image.pointToPel(1, 12), 210);
  EXPECT_EQ(*cut.image.pointToPel(3, 3), 30);
}

// A bar with soft sides: how much of each pel lies between `left` and `right`.
void softBar(rzPelBuffer<unsigned char>& picture, double left, double right, rzLong top,
             rzLong bottom, double ink) {
  for (rzLong y = top; y < bottom; ++y) {
    for (rzLong x = 0; x < picture.width(); ++x) {
      const double covered =
          std::clamp(std::min(x + 1.0, right) - std::max(1.0 * x, left), 0.0, 1.0);
      unsigned char& pel = *picture.pointToPel(x, y);
      pel = static_cast<unsigned char>(std::lround(pel + covered * (ink - pel)));
    }
  }
}

// What reading an outline off two hard-edged pels can miss, twice.
constexpr double kOutlineTolerance = 0.08;

// Where the darkness of a row has its centre of gravity.
double darkMiddle(const rzPelBuffer<unsigned char>& image, rzLong y, double paper) {
  double sum = 0.0;
  double moment = 0.0;
  for (rzLong x = 0; x < image.width(); ++x) {
    const double dark = paper - *image.pointToPel(x, y);
    sum += dark;
    moment += dark * (x + 0.5);
  }
  return moment / sum;
}

TEST(CutOut, PutsTheMiddleOfTheInkInTheMiddleOfTheImage) {
  for (double shift = 0.0; shift < 1.0; shift += 0.1) {
    SCOPED_TRACE(shift);
    auto picture = draw::paper(40, 40, 200);
    softBar(picture, 15.0 + shift, 22.4 + shift, 10, 30, 40);
    const CutOut cut =
        glyphline::cutOut(picture, rzPelRect(15, 10, 8, 20), kMargin, Polarity::kDark);
    const double half = 0.5 * cut.image.width();
    EXPECT_NEAR(cut.corner.x() + half, 18.7 + shift, kOutlineTolerance);
    EXPECT_NEAR(darkMiddle(cut.image, 13, 200.0), half, kOutlineTolerance);
  }
}

TEST(CutOut, CutsACharacterThatTouchesItsNeighbourAtTheBox) {
  auto picture = draw::paper(60, 40, 200);
  softBar(picture, 20, 26, 10, 30, 40);
  softBar(picture, 26, 40, 18, 22, 40);  // grown together with the next one
  softBar(picture, 40, 46, 10, 30, 40);
  const CutOut cut = glyphline::cutOut(picture, rzPelRect(20, 10, 6, 20), kMargin, Polarity::kDark);
  EXPECT_EQ(cut.ink, rzRect(20, 10, 6, 20));
  EXPECT_EQ(*cut.image.pointToPel(cut.image.width() - 1, 13), 200);
}

TEST(CutOut, LeavesOutWhatOfANeighbourReachesIntoALooseBox) {
  auto picture = draw::paper(60, 40, 200);
  softBar(picture, 20, 26, 10, 30, 40);
  softBar(picture, 29, 37, 10, 30, 40);
  const CutOut cut = glyphline::cutOut(picture, rzPelRect(18, 8, 12, 24), kMargin, Polarity::kDark);
  EXPECT_EQ(cut.ink, rzRect(20, 10, 6, 20));
}

TEST(CutOut, KeepsTheSlopeOfTheLightWhereItPaintsOver) {
  auto picture = draw::paper(40, 40, 0);
  for (rzLong y = 0; y < 40; ++y) {
    for (rzLong x = 0; x < 40; ++x) {
      *picture.pointToPel(x, y) = static_cast<unsigned char>(120 + 2 * y);
    }
  }
  softBar(picture, 10, 14, 10, 30, 20);
  softBar(picture, 16, 20, 10, 30, 20);
  const CutOut cut = glyphline::cutOut(picture, rzPelRect(10, 10, 4, 20), kMargin, Polarity::kDark);
  for (const rzLong y : {3, 12, 22}) {
    EXPECT_NEAR(*cut.image.pointToPel(9, y), 120 + 2 * (cut.corner.y() + y), 3) << y;
  }
}

TEST(CutOut, TakesTheBoxWhereThereIsNoInk) {
  const CutOut cut =
      glyphline::cutOut(draw::paper(30, 30, 90), rzPelRect(5, 6, 7, 8), kMargin, Polarity::kAuto);
  EXPECT_EQ(cut.ink, rzRect(5, 6, 7, 8));
  EXPECT_EQ(cut.image.window(), rzPelRect(0, 0, 13, 14));
}

}  // namespace
