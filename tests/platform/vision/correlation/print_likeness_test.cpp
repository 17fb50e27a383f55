// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/print_likeness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "rz/pel_functions.h"
#include "support/draw.h"

namespace {

using Image = rzPelBuffer<unsigned char>;

Image letterR() {
  Image image = draw::paper(30, 40);
  draw::fill(image, draw::letterR(), rzXform<2>(rzMatrix<2>(), rzVector<2>(15, 20)));
  return image;
}

// The letter with all pels of a rectangle set.
Image changed(const rzPelRect& where, unsigned char grey) {
  Image image = letterR();
  for (rzLong y = where.y(); y < where.lr().y(); ++y) {
    for (rzLong x = where.x(); x < where.lr().x(); ++x) *image.pointToPel(x, y) = grey;
  }
  return image;
}

Image mapped(const Image& image, double scale, double offset) {
  std::array<unsigned char, 256> table;
  for (int grey = 0; grey < 256; ++grey) {
    const double value = std::clamp(scale * grey + offset, 0.0, 255.0);
    table[static_cast<std::size_t>(grey)] = static_cast<unsigned char>(std::lround(value));
  }
  return rfPelMap(image, table);
}

TEST(PrintLikeness, IsOneForTheSamePrintWhateverItsGreysAndNothingWithoutPrint) {
  for (const double polarity : {1.0, -1.0}) {
    const double offset = polarity > 0.0 ? 0.0 : 255.0;
    const rz_PrintLikeness likeness(mapped(letterR(), polarity, offset));
    EXPECT_EQ(likeness.of(mapped(letterR(), polarity, offset), 0, 0), 1.0);
    EXPECT_GT(likeness.of(mapped(letterR(), 0.2 * polarity, 120.0), 0, 0), 0.99);
    EXPECT_EQ(likeness.of(mapped(letterR(), -polarity, 255.0 - offset), 0, 0), 0.0);
    EXPECT_EQ(likeness.of(draw::paper(30, 40), 0, 0), 0.0);
  }
}

TEST(PrintLikeness, InkTooMuchTellsMoreThanAsMuchInkMissing) {
  struct Change {
    rzPelRect where;
    unsigned char grey;
    double least;
    double most;
  };
  const rzPelRect foot(0, 28, 30, 12);
  const rzPelRect stem(0, 0, 10, 40);
  const rzPelRect corner(21, 0, 9, 40);
  const Change changes[] = {{foot, 220, 0.85, 0.95},  // a third of the letter is gone
                            {stem, 220, 0.80, 0.95},  // so is its stem
                            {corner, 30, 0.0, 0.60},  // a bar in its place
                            {foot, 30, 0.0, 0.60}};
  const rz_PrintLikeness likeness(letterR());
  for (const Change& change : changes) {
    const double value = likeness.of(changed(change.where, change.grey), 0, 0);
    EXPECT_GT(value, change.least - 1e-12) << change.where.x() << ' ' << int{change.grey};
    EXPECT_LT(value, change.most) << change.where.x() << ' ' << int{change.grey};
  }
}

TEST(PrintLikeness, LooksAtThePlaceThatIsAskedFor) {
  Image picture = draw::paper(70, 60);
  picture.offset({-5, 9});
  draw::fill(picture, draw::letterR(), rzXform<2>(rzMatrix<2>(), rzVector<2>(35, 40)));
  const rz_PrintLikeness likeness(letterR());
  EXPECT_GT(likeness.of(picture, 20, 20), 0.999);
  EXPECT_LT(likeness.of(picture, 24, 20), 0.6);
}

}  // namespace
