// SPDX-License-Identifier: Apache-2.0
#include "oc/char.h"

#include <gmock/gmock.h>

#include <functional>

#include "char_kit.h"
#include "failures.h"
#include "rz/char_code.h"
#include "rz/xform_radial.h"

namespace {

using kit::Image;
using kit::picture;
using kit::rowsOf;
using testing::ElementsAre;

rzOCCharMetrics detected() {
  rzOCCharMetrics metrics;
  metrics.detectedMarkRect(rzRect(1.0, 2.0, 3.0, 4.0));
  metrics.hasDetectedMarkRect(true);
  metrics.isRectSpecified(rzOCCharMetrics::eDetectedMarkRectImage, true);
  return metrics;
}

TEST(Char, DetectedMarkIsClearedByWhatItDependsOnAndByNothingElse) {
  const Image any = picture({"12"});
  struct {
    const char* name;
    std::function<void(rzOCChar&)> change;
    bool clears;
  } const cases[] = {
      {"image", [&](rzOCChar& c) { c.image(any, rzPelRect()); }, true},
      {"mask", [&](rzOCChar& c) { c.mask(any, rzPelRect()); }, true},
      {"normalized", [&](rzOCChar& c) { c.normalizedImage(any, rzPelRect()); }, true},
      {"other polarity", [](rzOCChar& c) { c.polarity(rzOCDefs::eLightOnDark); }, true},
      {"same polarity", [](rzOCChar& c) { c.polarity(rzOCDefs::eDarkOnLight); }, false},
      {"other area", [](rzOCChar& c) { c.imageArea(rzPelRect(1, 2, 3, 5)); }, true},
      {"same area", [](rzOCChar& c) { c.imageArea(rzPelRect(1, 2, 3, 4)); }, false},
      {"key", [](rzOCChar& c) { c.key(rzOCCharKey(65)); }, false},
      {"threshold", [](rzOCChar& c) { c.threshold(9); }, false},
  };
  for (const auto& each : cases) {
    rzOCChar c;
    c.polarity(rzOCDefs::eDarkOnLight);
    c.imageArea(rzPelRect(1, 2, 3, 4));
    c.metrics(detected());
    each.change(c);
    EXPECT_EQ(c.metrics().hasDetectedMarkRect(), !each.clears) << each.name;
    EXPECT_TRUE(c.metrics().isRectSpecified(rzOCCharMetrics::eDetectedMarkRectImage));
    rzOCCharMetrics metrics = c.metrics();
    metrics.hasDetectedMarkRect(true);
    EXPECT_EQ(metrics.detectedMarkRect() == rzRect(), each.clears) << each.name;
  }
}

TEST(Char, ThresholdIsCheckedBelowAtOnceAndAboveWhenItIsUsed) {
  rzOCChar c;
  c.hasThresholdAndInvert(true);
  EXPECT_THAT([&] { c.threshold(-1); }, Fails<rzOCDefs::BadParams>("Threshold must be >= 0."));
  EXPECT_EQ(c.threshold(), 128);
  c.threshold(300);
  EXPECT_FALSE(c.binarizedImage(false).isBound());
  c.normalizedImage(picture({"12"}), rzPelRect());
  EXPECT_THAT([&] { c.binarizedImage(false); }, Fails<rzOCDefs::BadParams>("threshold() > 256)"));
}

TEST(Char, BinarizedImageFollowsEachChangeOfItsInputs) {
  rzOCChar c;
  Image grey = picture({".5#"}, 4, 6);
  grey.clientFromImageXform(rzXform<2>(rzMatrix<2>(), rzVector<2>(9.0, 8.0)));
  c.normalizedImage(grey, rzPelRect());
  EXPECT_THROW(c.binarizedImage(false), rzOCDefs::ThresholdAndInvertNotSpecified);
  c.hasThresholdAndInvert(true);
  c.threshold(100);
  const Image binary = c.binarizedImage(false);
  EXPECT_THAT(rowsOf(binary), ElementsAre(".##"));
  EXPECT_EQ(binary.window(), grey.window());
  EXPECT_EQ(binary.clientFromImageXform(), grey.clientFromImageXform());
  EXPECT_TRUE(c.binarizedImage(false).sharesRoot(binary));
  c.threshold(100);
  EXPECT_TRUE(c.binarizedImage(false).sharesRoot(binary)) << "an equal value keeps the cache";
  c.threshold(101);
  EXPECT_THAT(rowsOf(c.binarizedImage(false)), ElementsAre("..#"));
  c.invert(true);
  EXPECT_THAT(rowsOf(c.binarizedImage(false)), ElementsAre("##."));
  c.threshold(0);
  EXPECT_THAT(rowsOf(c.binarizedImage(false)), ElementsAre("..."));
  c.threshold(256);
  EXPECT_THAT(rowsOf(c.binarizedImage(false)), ElementsAre("###"));
  c.normalizedImage(picture({"9"}), rzPelRect());
  EXPECT_THAT(rowsOf(c.binarizedImage(false)), ElementsAre("#"));
  c.normalizedImage(Image(), rzPelRect());
  EXPECT_FALSE(c.binarizedImage(true).isBound());
}

TEST(Char, StoredImageIsAPrivateCopyOfTheRootAskedFor) {
  rzPelBuffer<unsigned char> source = picture({"1111", "1231", "1111"}, 10, 20);
  source.window(rzPelRect(11, 21, 2, 1), false);
  struct {
    rzPelRect rootCopyRect, root;
  } const cases[] = {
      {rzPelRect(), rzPelRect(11, 21, 2, 1)},
      {rzPelRect(11, 21, 2, 1), rzPelRect(11, 21, 2, 1)},
      {rzPelRect(10, 20, 3, 2), rzPelRect(10, 20, 3, 2)},
      {rzPelRect(0, 0, 100, 100), rzPelRect(10, 20, 4, 3)},
  };
  for (const auto& each : cases) {
    rzOCChar c;
    c.image(source, each.rootCopyRect);
    EXPECT_EQ(c.image(false).window(), source.window());
    EXPECT_EQ(c.image(false).entire(), each.root);
    EXPECT_FALSE(c.image(false).sharesRoot(source));
    EXPECT_THAT(rowsOf(c.image(false)), ElementsAre("23"));
  }
  rzOCChar c;
  c.mask(source, rzPelRect());
  *source.pointToPel(11, 21) = 0;
  EXPECT_THAT(rowsOf(c.mask(false)), ElementsAre("23"));
}

TEST(Char, RootThatMissesTheWindowIsRefused) {
  const Image old = picture({"7"});
  rzOCChar c;
  c.image(old, rzPelRect());
  for (const rzPelRect& rect : {rzPelRect(1, 0, 5, 5), rzPelRect(0, 0, 1, 2)}) {
    EXPECT_THAT(
        [&] {
          c.image(picture({"12", "34"}), rect);
        },
        Fails<rzOCDefs::BadParams>("Root copy rect does not contain image window"));
  }
  EXPECT_THAT(rowsOf(c.image(false)), ElementsAre("7"));
  c.image(Image(), rzPelRect(5, 5, 1, 1));
  EXPECT_FALSE(c.image(false).isBound());
}

TEST(Char, ImagesAreWindowedToTheAreaIfTheyHoldIt) {
  rzOCChar c;
  EXPECT_FALSE(c.image(true).isBound()) << "an unbound image needs no area";
  c.image(picture({"123", "456"}), rzPelRect());
  EXPECT_THAT([&] { c.image(true); }, Fails<rzOCDefs::BadParams>("imageArea cannot be null"));
  c.imageArea(rzPelRect(1, 0, 2, 2));
  EXPECT_THAT(rowsOf(c.image(true)), ElementsAre("23", "56"));
  EXPECT_THAT(rowsOf(c.image(false)), ElementsAre("123", "456"));
  c.imageArea(rzPelRect(2, 0, 2, 2));
  EXPECT_THAT([&] { c.image(true); },
              Fails<rzOCDefs::BadParams>("image does not contain imageArea"));
}

TEST(Char, MarkRectIsTheFirstSpecifiedAndIsCutToTheImage) {
  using M = rzOCCharMetrics;
  rzOCChar c;
  Image source = picture({"12345", "67890"});
  source.imageFromClientXform(rzXform<2>(rzMatrix<2>(), rzVector<2>(-10.0, 0.0)));
  c.image(source, rzPelRect());
  c.metrics(M());
  EXPECT_THAT([&] { c.imageMarkRect(); }, Fails<rzOCDefs::RectNotSpecified>(""));
  const struct {
    M::RectType type;
    rzRect rect;
    const char* row;
  } steps[] = {{M::eDetectedMarkRect, rzRect(14.0, 0.0, 1.0, 1.0), "5"},
               {M::eMarkRect, rzRect(13.0, 0.0, 1.0, 1.0), "4"},
               {M::eDetectedMarkRectImage, rzRect(2.0, 0.0, 1.0, 1.0), "3"},
               {M::eMarkRectImage, rzRect(-3.0, -3.0, 5.0, 4.0), "12"}};
  for (const auto& step : steps) {
    M metrics = c.metrics();
    metrics.rect(step.type, step.rect);
    metrics.isRectSpecified(step.type, true);
    c.metrics(metrics);
    EXPECT_THAT(rowsOf(c.imageMarkRect()), ElementsAre(step.row));
  }
  EXPECT_FALSE(c.maskMarkRect().isBound());
  EXPECT_EQ(c.markOrImageArea(), rzPelRect(0, 0, 2, 1));
}

TEST(Char, MarkOrImageAreaFallsBackToTheArea) {
  rzOCChar c;
  c.imageArea(rzPelRect(1, 2, 3, 4));
  EXPECT_EQ(c.markOrImageArea(), rzPelRect(1, 2, 3, 4)) << "blank";
  c.metrics(rzOCCharMetrics());
  EXPECT_EQ(c.markOrImageArea(), rzPelRect(1, 2, 3, 4)) << "nothing specified";
}

TEST(Char, MovingTheOriginMovesClientRectsAgainstItAndLeavesPels) {
  using M = rzOCCharMetrics;
  rzOCChar c;
  Image source = picture({"12", "34"});
  source.imageFromClientXform(rzXform<2>(rzMatrix<2>(2.0, 0.0, 0.0, 2.0), rzVector<2>(1.0, 1.0)));
  c.image(source, rzPelRect());
  c.normalizedImage(source, rzPelRect());
  M metrics;
  for (const M::RectType type : {M::eCellRect, M::eDetectedMarkRect, M::eMarkRectImage}) {
    metrics.rect(type, rzRect(3.0, 4.0, 5.0, 6.0));
    metrics.isRectSpecified(type, true);
  }
  metrics.rect(M::eMarkRect, rzRect(7.0, 7.0, 0.0, 2.0));
  metrics.isRectSpecified(M::eMarkRect, true);
  c.metrics(metrics);
  c.moveOrigin(rzVector<2>(1.0, -2.0));
  // A point of the image has client coordinates smaller by the shift.
  EXPECT_EQ(c.image(false).clientFromImageXform() * rzVector<2>(3.0, 5.0), rzVector<2>(0.0, 4.0));
  EXPECT_EQ(c.metrics().cellRect(), rzRect(2.0, 6.0, 5.0, 6.0));
  EXPECT_EQ(c.metrics().detectedMarkRect(), rzRect(2.0, 6.0, 5.0, 6.0));
  EXPECT_EQ(c.metrics().markRect(), rzRect(7.0, 7.0, 0.0, 2.0)) << "a degenerate one stays";
  EXPECT_EQ(c.metrics().rect(M::eMarkRectImage), rzRect(3.0, 4.0, 5.0, 6.0));
  EXPECT_EQ(c.normalizedImage(false).imageFromClientXform(), source.imageFromClientXform());
  EXPECT_EQ(source.imageFromClientXform().trans(), rzVector<2>(1.0, 1.0));
}

TEST(Char, BentTransformsMoveAsWell) {
  rzPelBuffer<unsigned char> bent = picture({"12", "34"});
  bent.clientFromImageXformBase(
      rzPtrHandle_const<rz2XformBase>(new rz2XformRadial(rzVector<2>(1.0, 1.0), 1e-3)), true);
  rzOCChar c;
  c.image(bent, rzPelRect());
  const rzVector<2> point(2.0, 0.5);
  const rzVector<2> before = c.image(false).clientFromImageXformBase()->mapPoint(point);
  c.moveOrigin(rzVector<2>(3.0, 4.0));
  const rzVector<2> after = c.image(false).clientFromImageXformBase()->mapPoint(point);
  EXPECT_NEAR((before - after).distance(rzVector<2>(3.0, 4.0)), 0.0, 1e-9);
}

TEST(Char, ArchiveBringsBackAnEqualRecordAndNeverHalfOfOne) {
  const rzOCChar stored = kit::filledChar();
  std::vector<unsigned char> bytes;
  {
    rzArchive out = rzArchive::storingTo(bytes);
    out << stored;
  }
  rzOCChar loaded;
  rzArchive in = rzArchive::loadingFrom(bytes);
  in >> loaded;
  EXPECT_TRUE(loaded == stored);
  EXPECT_EQ(loaded.image(false).clientFromImageXform(), stored.image(false).clientFromImageXform());
  EXPECT_EQ(in.remaining(), 0u);
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    rzOCChar untouched;
    rzArchive cut = rzArchive::loadingFrom(std::span(bytes).first(size));
    EXPECT_THROW(cut >> untouched, rzArchive::BadFormat) << size;
    ASSERT_TRUE(untouched == rzOCChar()) << size;
  }
  for (const char version : {'\0', '\2'}) {
    bytes[0] = static_cast<unsigned char>(version);
    rzArchive other = rzArchive::loadingFrom(bytes);
    EXPECT_THAT([&] { other >> loaded; },
                testing::Throws<rzArchive::UnknownVersion>(
                    testing::Property(&rzArchive::UnknownVersion::name, "oc/occhar")));
  }
}

}  // namespace
