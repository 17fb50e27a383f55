// SPDX-License-Identifier: Apache-2.0
//
// rzOCChar to roc_char and back.
#include <gmock/gmock.h>

#include <cstring>
#include <limits>

#include "char_kit.h"
#include "failures.h"
#include "oc/char_polarity.h"
#include "rz/charlib/image_wrap.h"

namespace {

using kit::Image;
using kit::picture;
using kit::rowsOf;
using testing::ElementsAre;

class CharBridge : public testing::Test {
 protected:
  CharBridge() { roc_char_construct(&record_); }
  ~CharBridge() override { roc_char_destruct(&record_); }
  CharBridge(const CharBridge&) = delete;
  CharBridge& operator=(const CharBridge&) = delete;

  roc_char record_;
};

TEST_F(CharBridge, RecordFilledTwiceHoldsTheSecondOneAlone) {
  kit::filledChar().getCharacter(record_, true);
  const rzOCChar second;
  second.getCharacter(record_, false);
  rzOCChar back;
  back.setCharacter(record_, false);
  EXPECT_TRUE(back == second);
}

TEST_F(CharBridge, ThereAndBackIsEqualAndSharesPelsOnlyWhenAsked) {
  const rzOCChar c = kit::filledChar();
  for (const bool copyOut : {false, true}) {
    for (const bool copyIn : {false, true}) {
      c.getCharacter(record_, copyOut);
      rzOCChar back;
      back.setCharacter(record_, copyIn);
      EXPECT_TRUE(back == c);
      EXPECT_EQ(back.image(false).sharesRoot(c.image(false)), !copyOut && !copyIn);
      EXPECT_EQ(back.image(false).clientFromImageXform(), c.image(false).clientFromImageXform());
    }
  }
}

TEST_F(CharBridge, DeepCopyKeepsThePelsOutsideTheWindow) {
  rzOCChar c;
  rzPelBuffer<unsigned char> source = picture({"123", "456"}, 7, 8);
  source.window(rzPelRect(8, 8, 1, 2), false);
  c.image(source, rzPelRect(7, 8, 3, 2));
  c.getCharacter(record_, true);
  const Image image = rfConvertImage(record_.image);
  EXPECT_THAT(rowsOf(image), ElementsAre("2", "5"));
  EXPECT_EQ(image.entire(), rzPelRect(7, 8, 3, 2));
  EXPECT_FALSE(image.sharesRoot(c.image(false)));
}

TEST_F(CharBridge, RecordIsTakenAsTheWholeNewState) {
  rzOCChar c;
  c.getCharacter(record_, false);
  const rz_Image cached(picture({"12"}));
  rimg_imageConst_assign(&record_.binarizedImage, cached);
  record_.binarizedCached = -1;
  record_.hasThresholdAndInvert = 2;
  record_.invert = 8;
  record_.threshold = -77;
  record_.imageArea[2] = -3;
  c.setCharacter(record_, false);
  EXPECT_EQ(c.threshold(), -77);
  EXPECT_TRUE(c.invert());
  EXPECT_EQ(c.imageArea(), rzPelRect(0, 0, -3, 0));
  EXPECT_TRUE(c.metrics().hasDetectedMarkRect());
  EXPECT_THAT(rowsOf(c.binarizedImage(false)), ElementsAre("12"));
}

TEST_F(CharBridge, IllegalPolarityStopsAfterKeyAndMetrics) {
  rzOCChar c = kit::filledChar();
  record_.key.characterCode = 66;
  record_.polarity = 3;
  EXPECT_THAT([&] { c.setCharacter(record_, false); },
              Fails<rzOCDefs::BadParams>("Illegal polarity"));
  EXPECT_EQ(c.characterCode(), 66u);
  EXPECT_FALSE(c.metrics().hasDetectedMarkRect());
  EXPECT_EQ(c.polarity(), rzOCDefs::eLightOnDark);
  EXPECT_FALSE(c.hasThresholdAndInvert());
}

TEST_F(CharBridge, PolarityConvertsBothWaysOrStaysUnset) {
  for (const rzLong number : {1, 2, 4}) {
    roc_charPolarity record = 0;
    rfConvertPolarity(static_cast<rzOCDefs::Polarity>(number), record);
    EXPECT_EQ(record, number);
    rzOCDefs::Polarity polarity{};
    rfConvertPolarity(record, polarity);
    EXPECT_EQ(polarity, number);
  }
  for (const rzLong number : {0, 3, 8, -1}) {
    roc_charPolarity record = 77;
    auto polarity = rzOCDefs::eLightOnDark;
    EXPECT_THROW(rfConvertPolarity(static_cast<rzOCDefs::Polarity>(number), record),
                 rzOCDefs::BadParams);
    EXPECT_THROW(rfConvertPolarity(roc_charPolarity{number}, polarity), rzOCDefs::BadParams);
    EXPECT_EQ(record, 77);
    EXPECT_EQ(polarity, rzOCDefs::eLightOnDark);
  }
}

TEST_F(CharBridge, NormalizedImageComesWithAllThatBelongsToIt) {
  rzOCChar c = kit::filledChar();
  const Image source = picture({"1589"}, 3, 4);
  const Image image = c.image(false);
  c.normalizedImage(source, true, 120, false, rzPelRect(4, 4, 2, 1));
  EXPECT_TRUE(c.normalizedImage(false).sharesRoot(source));
  EXPECT_EQ(c.imageArea(), rzPelRect(4, 4, 2, 1));
  EXPECT_FALSE(c.metrics().hasDetectedMarkRect());
  EXPECT_THAT(rowsOf(c.binarizedImage(true)), ElementsAre(".#"));
  EXPECT_EQ(c.image(false).clientFromImageXform(), image.clientFromImageXform());
  EXPECT_EQ(c.name(), "delta");
}

TEST_F(CharBridge, NormalizedImageWithABadThresholdChangesNothing) {
  rzOCChar c = kit::filledChar();
  const rzOCChar before = c;
  for (const rzLong threshold : {-1, 257, std::numeric_limits<rzLong>::min()}) {
    for (const bool has : {false, true}) {
      EXPECT_THAT([&] { c.normalizedImage(Image(), has, threshold, false, rzPelRect()); },
                  Fails<rzOCDefs::BadParams>("Threshold must be between 0 and 256 inclusive"));
      EXPECT_TRUE(c == before);
    }
  }
}

TEST_F(CharBridge, BinarizedMarkFailsInTheOrderOfItsNeeds) {
  rzOCChar c;
  c.metrics(rzOCCharMetrics());
  EXPECT_THAT([&] { c.binarizedImageMarkRect(); }, Fails<rzOCDefs::ThresholdAndInvertNotSpecified>(
                                                       "Threshold and invert not specified"));
  c.hasThresholdAndInvert(true);
  c.threshold(100);
  EXPECT_THAT([&] { c.binarizedImageMarkRect(); },
              Fails<rzOCDefs::RectNotSpecified>("Rect not specified"));
  rzOCCharMetrics metrics;
  metrics.markRect(rzRect(1.0, 0.0, 3e9, 1.0));
  metrics.isMarkRectSpecified(true);
  c.metrics(metrics);
  EXPECT_THAT([&] { c.binarizedImageMarkRect(); },
              Fails<rzOCDefs::IntegerOverflow>("Value overflows integer value range"));
  metrics.markRect(rzRect(1.0, 0.0, 30.0, 1.0));
  c.metrics(metrics);
  EXPECT_FALSE(c.binarizedImageMarkRect().isBound());
  c.normalizedImage(picture({"1995", "9999"}), rzPelRect());
  EXPECT_THAT(rowsOf(c.binarizedImageMarkRect()), ElementsAre("###"));
}

}  // namespace
