// SPDX-License-Identifier: Apache-2.0
#include "oc/padding.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

#include "char_kit.h"
#include "oc/occhar/care_region.h"
#include "oc/occhar/row_median.h"
#include "rz/pel_error.h"

namespace {

using kit::Image;
using kit::picture;
using kit::rowsOf;
using testing::ElementsAre;
using testing::ElementsAreArray;
using Buffer = rzPelBuffer<unsigned char>;
using Bytes = std::vector<unsigned char>;
using Rows = std::vector<std::string>;

Bytes filtered(Bytes row) {
  rf_medianFilterRow_(row);
  return row;
}

TEST(RowMedian, AgreesWithSortingEachWindow) {
  std::mt19937 random(17);
  for (std::size_t count = 0; count < 130; ++count) {
    Bytes row(count);
    const unsigned spread = count % 3 == 0 ? 4 : 256;
    for (unsigned char& pel : row) pel = static_cast<unsigned char>(random() % spread);
    Bytes expected = row;
    const std::size_t radius = count / 4;
    for (std::size_t i = 0; radius > 0 && i < count; ++i) {
      Bytes window(row.begin() + static_cast<std::ptrdiff_t>(i - std::min(i, radius)),
                   row.begin() + static_cast<std::ptrdiff_t>(std::min(i + radius + 1, count)));
      std::ranges::sort(window);
      expected[i] = window[window.size() / 2];
    }
    EXPECT_EQ(filtered(row), expected) << count;
  }
}

TEST(Padding, MarginsContinueTheEdges) {
  struct {
    const char* name;
    Rows before;
    rzPelRect area;
    Rows after;
  } const cases[] = {
      {"nothing to pad", {"12", "34"}, {0, 0, 2, 2}, {"12", "34"}},
      {"rows of three stay unfiltered", {"000", "000", "195"}, {0, 2, 3, 1}, {"195", "195", "195"}},
      {"rows below", {"195", "000"}, {0, 0, 3, 1}, {"195", "195"}},
      {"one column on the left, edge filtered",
       {"01", "02", "03", "04"},
       {1, 0, 1, 4},
       {"21", "22", "33", "44"}},
      {"one column on the right, edge filtered",
       {"10", "20", "30", "40"},
       {0, 0, 1, 4},
       {"12", "22", "33", "44"}},
      {"both sides of a short edge", {"0120", "0340"}, {1, 0, 2, 2}, {"1122", "3344"}},
      // The upper row is 1,1,9,9 before the filter, and each window takes the upper middle.
      {"all round", {"0000", "0190", "0000"}, {1, 1, 2, 1}, {"1199", "1199", "1199"}},
      {"corners come from the filtered row",
       {"00000000", "09111190"},
       {1, 1, 6, 1},
       {"99111199", "99111199"}},
      {"a lone speck in the edge row is smoothed away",
       {"00000000", "11191111"},
       {0, 1, 8, 1},
       {"11111111", "11191111"}},
  };
  for (const auto& c : cases) {
    const Buffer image = picture(c.before);
    rf_OCBackgroundPadImage(image, c.area);
    EXPECT_THAT(rowsOf(image), ElementsAreArray(c.after)) << c.name;
  }
}

TEST(Padding, ReadOnlyBufferIsReplacedAndItsOldPelsStay) {
  Image image = picture({"00", "09"});
  image.clientFromImageXform(rzXform<2>(rzMatrix<2>(), rzVector<2>(3.0, 4.0)));
  const Image old = image;
  rf_OCBackgroundPadImage(image, rzPelRect(1, 1, 1, 1));
  EXPECT_THAT(rowsOf(image), ElementsAre("99", "99"));
  EXPECT_THAT(rowsOf(old), ElementsAre("..", ".9"));
  EXPECT_EQ(image.clientFromImageXform(), old.clientFromImageXform());
}

TEST(Padding, AreaOutsideTheWindowIsRefusedAndANullAreaPadsNothing) {
  const Buffer image = picture({"12", "34"});
  EXPECT_THROW(rf_OCBackgroundPadImage(image, rzPelRect(1, 0, 2, 1)), rzPel::BadWindow);
  EXPECT_THROW(rf_OCBackgroundPadImage(Buffer(), rzPelRect(0, 0, 1, 1)), rzPel::UnboundWindow);
  rf_OCBackgroundPadImage(image, rzPelRect());
  EXPECT_THAT(rowsOf(image), ElementsAre("12", "34"));
}

TEST(CareRegion, TightRectAndWhatBecomesOfTheMask) {
  struct {
    const char* name;
    Rows mask;
    unsigned char threshold;
    bool careFound;
    rzPelRect region;
    bool staysBound;
  } const cases[] = {
      {"solid rectangle", {"....", ".##.", ".##."}, 1, true, {11, 21, 2, 2}, false},
      {"hole in it", {"####", "#.##", "####"}, 1, true, {10, 20, 4, 3}, true},
      {"diagonal", {"#...", "....", "...#"}, 1, true, {10, 20, 4, 3}, true},
      {"single pel", {"....", "..#."}, 1, true, {12, 21, 1, 1}, false},
      {"no care", {"....", "...."}, 1, false, {}, false},
      {"all below", {"9999"}, 181, false, {}, false},
      {"exactly the threshold", {".9..9."}, 180, true, {11, 20, 4, 1}, true},
      {"threshold 0", {"...", "..."}, 0, true, {10, 20, 3, 2}, false},
      {"threshold 255", {"9#9"}, 255, true, {11, 20, 1, 1}, false},
  };
  for (const auto& c : cases) {
    Image mask = picture(c.mask, 10, 20);
    Buffer changeable = picture(c.mask, 10, 20);
    bool careFound = !c.careFound;
    EXPECT_EQ(rf_OCWindowMaskCareRegion(mask, c.threshold, careFound), c.region) << c.name;
    EXPECT_EQ(careFound, c.careFound) << c.name;
    EXPECT_EQ(mask.isBound(), c.staysBound) << c.name;
    EXPECT_EQ(mask.window(), c.staysBound ? c.region : rzPelRect()) << c.name;
    EXPECT_EQ(windowMaskCareRegion(changeable, c.threshold, careFound), c.region) << c.name;
    EXPECT_EQ(changeable.window(), mask.window()) << c.name;
  }
  Image unbound;
  bool careFound = false;
  EXPECT_EQ(rf_OCWindowMaskCareRegion(unbound, 1, careFound), rzPelRect());
  EXPECT_TRUE(careFound);
}

template <class AnyBuffer>
void padMasked(const Rows& imageRows, const Rows& maskRows, const rzPelRect& area,
               const Rows& expected, const Rows& expectedMask, bool expectedCare) {
  AnyBuffer image = picture(imageRows);
  AnyBuffer mask;
  if (!maskRows.empty()) mask = picture(maskRows);
  bool careFound = !expectedCare;
  rf_OCBackgroundPadImage(image, mask, 128, area, careFound);
  EXPECT_EQ(careFound, expectedCare);
  EXPECT_THAT(rowsOf(image), ElementsAreArray(expected));
  EXPECT_THAT(rowsOf(mask), ElementsAreArray(expectedMask));
}

TEST(Padding, MaskNarrowsWhatIsKept) {
  struct {
    Rows image, mask;
    rzPelRect area;
    Rows after, maskAfter;
    bool careFound;
  } const cases[] = {
      {{"123", "456"}, {}, {1, 0, 2, 2}, {"223", "556"}, {}, true},
      {{"123", "456"}, {".#.", ".#."}, {0, 0, 3, 2}, {"222", "555"}, {}, true},
      {{"123", "456"}, {"...", "..."}, {0, 0, 1, 1}, {"123", "456"}, {}, false},
      {{"123", "456"}, {"##.", "#.."}, {1, 0, 2, 2}, {"222", "555"}, {"##", ".."}, true},
      {{"123", "456"}, {"#..", "#.."}, {1, 0, 2, 2}, {"123", "456"}, {}, true},
  };
  for (const auto& c : cases) {
    padMasked<Image>(c.image, c.mask, c.area, c.after, c.maskAfter, c.careFound);
    padMasked<Buffer>(c.image, c.mask, c.area, c.after, c.maskAfter, c.careFound);
  }
}

}  // namespace
