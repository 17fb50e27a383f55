// SPDX-License-Identifier: Apache-2.0
#include "cut_out.h"

#include <gtest/gtest.h>

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
  for (const Row& row : {Row{"dark", 200, 40, Polarity::kDark}, Row{"light", 40, 200, Polarity::kLight},
                         Row{"dark, found out", 200, 40, Polarity::kAuto}}) {
    SCOPED_TRACE(row.name);
    const CutOut cut =
        glyphline::cutOut(bars(row.paper, row.ink), rzPelRect(16, 9, 4, 22), kMargin, row.polarity);
    EXPECT_EQ(cut.ink, rzPelRect(16, 10, 4, 20));
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

}  // namespace
