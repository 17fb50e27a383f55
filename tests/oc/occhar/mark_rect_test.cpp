// SPDX-License-Identifier: Apache-2.0
#include "oc/mark_rect.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

#include "char_kit.h"
#include "oc/occhar/border_vote.h"
#include "oc/occhar/mark_corners.h"
#include "rz/pel_error.h"
#include "rz/xform_radial.h"

namespace {

using kit::Image;
using kit::picture;
using Defs = rzOCDefs;
using Rows = std::vector<std::string>;

struct Found {
  bool isFound;
  rzRect rect;
};

Found detect(const Image& image, Defs::Polarity polarity, const Image& mask = Image()) {
  Found found{false, rzRect(7.0, 7.0, 7.0, 7.0)};
  found.isFound = rf_DetectMarkRect_(image, image.window(), mask, false, polarity, found.rect);
  return found;
}

TEST(MarkRect, MarksOfSmallPictures) {
  struct {
    const char* name;
    Rows image, mask;
    Defs::Polarity polarity;
    bool found;
    rzRect rect;
  } const cases[] = {
      {"one dark pel", {"999", "919", "999"}, {}, Defs::eDarkOnLight, true, {1, 1, 1, 1}},
      {"the light side of it", {"999", "919", "999"}, {}, Defs::eLightOnDark, true, {0, 0, 3, 3}},
      {"border says dark", {"999", "919", "999"}, {}, Defs::ePolarityUnknown, true, {1, 1, 1, 1}},
      {"border says light",
       {"1111", "1981", "1191", "1111"},
       {},
       Defs::ePolarityUnknown,
       true,
       {1, 1, 2, 2}},
      {"extremes at four pels",
       {"99999", "99199", "91999", "99919", "99199"},
       {},
       Defs::eDarkOnLight,
       true,
       {1, 1, 3, 4}},
      {"border undecided", {"19", "19"}, {}, Defs::ePolarityUnknown, false, {}},
      {"flat, unknown", {"55", "55"}, {}, Defs::ePolarityUnknown, false, {}},
      {"flat, dark marks", {"55", "55"}, {}, Defs::eDarkOnLight, false, {}},
      {"flat, light marks", {"55", "55"}, {}, Defs::eLightOnDark, true, {0, 0, 2, 2}},
      {"mask hides a mark",
       {"9999", "9191", "9999"},
       {"####", "###.", "####"},
       Defs::eDarkOnLight,
       true,
       {1, 1, 1, 1}},
      {"mask cares for nothing, unknown", {"19"}, {".."}, Defs::ePolarityUnknown, false, {}},
      {"mask cares for nothing, dark", {"19"}, {".."}, Defs::eDarkOnLight, false, {}},
      {"mask cares for nothing, light", {"19"}, {".."}, Defs::eLightOnDark, false, {}},
      {"mask turns the vote",
       {"1111", "1991", "1911", "1111"},
       {"....", ".##.", ".##.", "...."},
       Defs::ePolarityUnknown,
       true,
       {2, 2, 1, 1}},
  };
  for (const auto& c : cases) {
    const Image mask = c.mask.empty() ? Image() : Image(picture(c.mask));
    const Found found = detect(picture(c.image), c.polarity, mask);
    EXPECT_EQ(found.isFound, c.found) << c.name;
    EXPECT_EQ(found.rect, c.rect) << c.name << " " << found.rect.x() << " " << found.rect.y();
  }
}

TEST(MarkRect, ThresholdGreyIsBackgroundForDarkMarksAndMarkForLightOnes) {
  const std::vector<unsigned char> greys = {99, 100, 100, 101};
  const rzLong threshold = 100;
  MarkTable dark{}, light{};
  for (rzLong g = 0; g < 256; ++g) {
    dark[static_cast<std::size_t>(g)] = g < threshold;
    light[static_cast<std::size_t>(g)] = g >= threshold;
  }
  // 50 and 150 meet at 51 to 150: the middle one is 100, and a grey of 100 is on the light side.
  const std::vector<unsigned char> pels = {50, 150, 50};
  const Image image = rfPelBufferFromPels(pels.data(), 3, 1, 3);
  EXPECT_EQ(detect(image, Defs::eDarkOnLight).rect, rzRect(0, 0, 3, 1));
  EXPECT_EQ(detect(image, Defs::eLightOnDark).rect, rzRect(1, 0, 1, 1));
  const Image row = rfPelBufferFromPels(greys.data(), 4, 1, 4);
  EXPECT_EQ(markCorners(row, Image(), row.window(), dark)->upperRight, (rzPair<rzLong>(1, 0)));
  EXPECT_EQ(markCorners(row, Image(), row.window(), light)->lowerLeft, (rzPair<rzLong>(1, 1)));
}

TEST(MarkRect, AreaLimitsTheSearchAndMustFit) {
  const Image image = picture({"1999", "9919", "9999"}, 10, 20);
  rzRect rect;
  EXPECT_TRUE(rf_DetectMarkRect_(image, rzPelRect(11, 20, 3, 3), Image(), false,
                                 Defs::ePolarityUnknown, rect));
  EXPECT_EQ(rect, rzRect(12.0, 21.0, 1.0, 1.0));
  EXPECT_THROW(rf_DetectMarkRect_(image, rzPelRect(12, 20, 3, 3), Image(), false,
                                  Defs::ePolarityUnknown, rect),
               rzPel::BadWindow);
  EXPECT_EQ(rect, rzRect());
}

TEST(MarkRect, MirroredAndBentFramesGiveProperRects) {
  Image image = picture({"9999", "9119", "9999"}, 10, 20);
  image.clientFromImageXform(rzXform<2>(rzMatrix<2>(2.0, 0.0, 0.0, -3.0), rzVector<2>(5.0, 100.0)));
  EXPECT_EQ(detect(image, Defs::eDarkOnLight).rect, rzRect(27.0, 34.0, 4.0, 3.0));
  const auto* bend = new rz2XformRadial(rzVector<2>(10.0, 20.0), 1e-3);
  image.clientFromImageXformBase(rzPtrHandle_const<rz2XformBase>(bend), true);
  const rzVector<2> lowerLeft = bend->mapPoint(rzVector<2>(11.0, 22.0));
  const rzVector<2> upperRight = bend->mapPoint(rzVector<2>(13.0, 21.0));
  const rzRect rect = detect(image, Defs::eDarkOnLight).rect;
  EXPECT_EQ(rect.ul(), rzVector<2>(lowerLeft.x(), upperRight.y()));
  EXPECT_EQ(rect.width(), upperRight.x() - lowerLeft.x());
}

TEST(MarkRect, CornersAgreeWithLookingAtEveryPel) {
  std::mt19937 random(31);
  MarkTable table{};
  table[1] = 1;
  for (int trial = 0; trial < 500; ++trial) {
    const rzPelRect window(-3, 5, 1 + static_cast<rzLong>(random() % 9),
                           1 + static_cast<rzLong>(random() % 9));
    rzPelBuffer<unsigned char> image(window, 32), mask(window, 32);
    const bool masked = trial % 2 == 0;
    rzPelRect marks;
    for (rzLong y = window.y(); y < window.ll().y(); ++y) {
      for (rzLong x = window.x(); x < window.ur().x(); ++x) {
        *image.pointToPel(x, y) = random() % 12 == 0;
        *mask.pointToPel(x, y) = random() % 3 == 0 ? 127 : 128;
        const bool counts = !masked || *mask.pointToPel(x, y) >= 128;
        if (*image.pointToPel(x, y) == 1 && counts) marks = marks.enclose(rzPelRect(x, y, 1, 1));
      }
    }
    const auto corners = markCorners(image, masked ? Image(mask) : Image(), window, table);
    ASSERT_EQ(corners.has_value(), !marks.isNull());
    if (!corners) continue;
    EXPECT_EQ(corners->lowerLeft, marks.ll());
    EXPECT_EQ(corners->upperRight, marks.ur());
  }
}

TEST(BorderVote, CountsCornersTwiceAndNeverTheInside) {
  struct {
    const char* name;
    Rows image, mask;
    Defs::Polarity answer;
  } const cases[] = {
      {"inside does not count", {"999", "919", "999"}, {}, Defs::eDarkOnLight},
      // Twelve votes: four corners of two each, four others of one each.
      {"corners outweigh the rest", {"191", "999", "191"}, {}, Defs::eLightOnDark},
      {"three corners tie with the rest", {"191", "999", "199"}, {}, Defs::ePolarityUnknown},
      {"ends of a column count three times", {"1", "9", "9", "1"}, {}, Defs::eLightOnDark},
      {"ends of a column tie", {"1", "9"}, {}, Defs::ePolarityUnknown},
      {"single care pel in each row counts once",
       {"19", "91"},
       {"#.", "#."},
       Defs::ePolarityUnknown},
      {"outermost care pels of rows and columns",
       {"99999", "91119", "99999"},
       {".....", ".###.", "....."},
       Defs::eLightOnDark},
      // Three dark pels, alone in row and column, have 6 votes; the light block has 8.
      {"a lone care pel is first and last but counts once",
       {"15555", "51555", "55155", "55599", "55599"},
       {"#....", ".#...", "..#..", "...##", "...##"},
       Defs::eDarkOnLight},
      {"no care pels", {"11", "11"}, {"..", ".."}, Defs::ePolarityUnknown},
  };
  for (const auto& c : cases) {
    const Image image = picture(c.image);
    const Image mask = c.mask.empty() ? Image() : Image(picture(c.mask));
    EXPECT_EQ(borderVote(image, mask, image.window(), 100), c.answer) << c.name;
  }
}

class Origin : public testing::Test {
 protected:
  Origin() { image_.clientFromImageXform(rzXform<2>(rzMatrix<2>(), rzVector<2>(-10.0, -20.0))); }
  const rzPelRect area_{10, 20, 4, 3};
  Image image_ = picture({"9999", "9119", "9999"}, 10, 20);
  const rzRect empty_{5.0, 5.0, 2.0, 0.0};
  const rzRect good_{5.0, 6.0, 2.0, 3.0};
  const rzVector<2> areaCorner_{0.0, 3.0};
  const rzVector<2> markCorner_{1.0, 2.0};
  const rzVector<2> goodCorner_{5.0, 9.0};
};

TEST_F(Origin, OfTheDetectedMarkWithTheAreaToFallBackOn) {
  Image unbound;
  unbound.copyXforms(image_);
  struct {
    const Image& image;
    bool isBlank, has;
    rzRect detected;
    Defs::Polarity polarity;
    bool answer;
    rzVector<2> origin;
  } const cases[] = {
      {image_, false, false, good_, Defs::ePolarityUnknown, true, markCorner_},
      {image_, false, true, good_, Defs::ePolarityUnknown, true, goodCorner_},
      {image_, false, true, empty_, Defs::ePolarityUnknown, false, areaCorner_},
      {image_, true, true, good_, Defs::ePolarityUnknown, false, areaCorner_},
      {unbound, false, true, good_, Defs::eDarkOnLight, false, areaCorner_},
      {image_, false, false, good_, Defs::eLightOnDark, true, areaCorner_},
  };
  for (const auto& c : cases) {
    rzVector<2> origin;
    EXPECT_EQ(rf_computeOriginDetectedMarkLowerLeft_(c.image, area_, Image(), c.isBlank, c.has,
                                                     c.detected, c.polarity, origin),
              c.answer);
    EXPECT_EQ(origin, c.origin);
  }
}

TEST_F(Origin, OfTheSpecifiedMarkOnlyThenAnswersTrue) {
  struct {
    bool isBlank, isSpecified, has;
    bool answer;
    rzVector<2> origin;
  } const cases[] = {
      {false, true, false, true, rzVector<2>(5.0, 5.0)},  // the empty rectangle is taken as it is
      {false, false, true, false, goodCorner_},
      {false, false, false, false, markCorner_},
      {true, true, true, false, areaCorner_},
  };
  for (const auto& c : cases) {
    rzVector<2> origin;
    EXPECT_EQ(rf_computeOriginSpecifiedMarkLowerLeft_(image_, area_, Image(), c.isBlank,
                                                      c.isSpecified, empty_, c.has, good_,
                                                      Defs::ePolarityUnknown, origin),
              c.answer);
    EXPECT_EQ(origin, c.origin);
  }
}

}  // namespace
