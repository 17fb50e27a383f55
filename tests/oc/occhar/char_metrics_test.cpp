// SPDX-License-Identifier: Apache-2.0
#include "oc/char_metrics.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <vector>

#include "failures.h"
#include "oc/oc_defs.h"
#include "rz/xform_radial.h"

namespace {

using Metrics = rzOCCharMetrics;
using testing::ElementsAre;

constexpr Metrics::RectType kTypes[] = {
    Metrics::eCellRect,      Metrics::eCellRectImage,    Metrics::eMarkRect,
    Metrics::eMarkRectImage, Metrics::eDetectedMarkRect, Metrics::eDetectedMarkRectImage};

void specify(Metrics& metrics, Metrics::RectType type, const rzRect& rect) {
  metrics.rect(type, rect);
  metrics.isRectSpecified(type, true);
}

rzPelBuffer<unsigned char> bentImage() {
  rzPelBuffer<unsigned char> image(rzPelRect(0, 0, 4, 4), 32);
  image.clientFromImageXformBase(
      rzPtrHandle_const<rz2XformBase>(new rz2XformRadial(rzVector<2>(2.0, 2.0), 1e-4)), true);
  return image;
}

TEST(CharMetrics, StoredRectCountsOnlyOnceItIsMarked) {
  for (const Metrics::RectType type : kTypes) {
    Metrics metrics;
    const rzRect r(1.5, -2.25, 10.0, 14.0);
    metrics.rect(type, r);
    EXPECT_THROW(metrics.rect(type), rzOCDefs::RectNotSpecified);
    metrics.isRectSpecified(type, true);
    EXPECT_EQ(metrics.rect(type), r) << type;
    metrics.isRectSpecified(type, false);
    EXPECT_THROW(metrics.rect(type), rzOCDefs::RectNotSpecified);
  }
  Metrics metrics;
  metrics.advance(rzVector<2>(3.0, 0.0));
  EXPECT_THROW(metrics.advance(), rzOCDefs::MetricNotSpecified);
  metrics.isAdvanceSpecified(true);
  EXPECT_EQ(metrics.advance(), rzVector<2>(3.0, 0.0));
}

TEST(CharMetrics, AnythingButOneOfTheSixTypesIsRefusedBeforeAllElse) {
  for (const rzLong number : {0, 3, 63, 64, -1}) {
    Metrics metrics;
    const auto type = static_cast<Metrics::RectType>(number);
    const auto isRefused = Fails<rzOCDefs::BadParams>("Illegal metrics rect type");
    EXPECT_THAT([&] { metrics.rect(type); }, isRefused);
    EXPECT_THAT([&] { metrics.rect(type, rzRect()); }, isRefused);
    EXPECT_THAT([&] { metrics.isRectSpecified(type); }, isRefused);
    EXPECT_THAT([&] { metrics.isRectSpecified(type, true); }, isRefused);
    EXPECT_THAT([&] { metrics.encloseRect(type); }, isRefused);
    EXPECT_THAT([&] { metrics.encloseRectImage(type, rzXform<2>()); }, isRefused);
    EXPECT_TRUE(metrics == Metrics());
  }
}

TEST(CharMetrics, ImageRectsRoundToTheirFixedPointForm) {
  Metrics metrics;
  specify(metrics, Metrics::eMarkRectImage, rzRect(0.1, -0.1, 1.0 / 131072, -1.0 / 131072));
  EXPECT_EQ(metrics.rect(Metrics::eMarkRectImage),
            rzRect(6554.0 / 65536, -6554.0 / 65536, 1.0 / 65536, -1.0 / 65536));
  specify(metrics, Metrics::eCellRectImage, rzRect(rzPelRect(-7, 5, 30, 40)));
  Metrics plain;
  plain.rect(Metrics::eCellRectImage, rzPelRect(-7, 5, 30, 40));
  plain.isRectSpecified(Metrics::eCellRectImage, true);
  EXPECT_EQ(plain.rect(Metrics::eCellRectImage), metrics.rect(Metrics::eCellRectImage));
}

TEST(CharMetrics, FixedPointOverflowKeepsTheOldRect) {
  Metrics metrics;
  specify(metrics, Metrics::eMarkRectImage, rzRect(1.0, 2.0, 3.0, 4.0));
  const Metrics before = metrics;
  for (const double value : {32768.0, -32769.0, std::nan(""), HUGE_VAL}) {
    EXPECT_THAT([&] { metrics.rect(Metrics::eMarkRectImage, rzRect(0.0, 0.0, 1.0, value)); },
                Fails<rzOCDefs::IntegerOverflow>("Value overflows fixed point value range"));
    EXPECT_TRUE(metrics == before);
  }
}

TEST(CharMetrics, EnclosingPelsGrowOutwardAndMustFit32Bits) {
  Metrics metrics;
  specify(metrics, Metrics::eCellRect, rzRect(-0.5, 1.0, 2.0, 2.25));
  EXPECT_EQ(metrics.encloseRect(Metrics::eCellRect), rzPelRect(-1, 1, 3, 3));
  for (const double x : {-2147483649.0, 2147483647.5, std::nan("")}) {
    specify(metrics, Metrics::eCellRect, rzRect(0.0, x, 0.0, 0.0));
    EXPECT_THAT([&] { metrics.encloseRect(Metrics::eCellRect); },
                Fails<rzOCDefs::IntegerOverflow>("Value overflows integer value range"));
  }
  specify(metrics, Metrics::eCellRect, rzRect(2147483647.0, 0.0, 0.0, 1.0));
  EXPECT_EQ(metrics.encloseRect(Metrics::eCellRect).x(), 2147483647);
}

TEST(CharMetrics, ClientRectsAreMappedIntoTheImageAndImageRectsAreNot) {
  // A quarter turn: (x, y) to (10 - y, x).
  const rzXform<2> turn(rzMatrix<2>(0.0, -1.0, 1.0, 0.0), rzVector<2>(10.0, 0.0));
  Metrics metrics;
  specify(metrics, Metrics::eMarkRect, rzRect(1.0, 2.0, 3.0, 4.0));
  specify(metrics, Metrics::eMarkRectImage, rzRect(1.0, 2.0, 3.0, 4.0));
  EXPECT_EQ(metrics.encloseRectImage(Metrics::eMarkRect, turn), rzPelRect(4, 1, 4, 3));
  EXPECT_EQ(metrics.encloseRectImage(Metrics::eMarkRectImage, turn), rzPelRect(1, 2, 3, 4));
}

TEST(CharMetrics, ImageRectsFollowTheClientRectsAndTheirMarks) {
  const rzXform<2> imageFromClient(rzMatrix<2>(2.0, 0.0, 0.0, -2.0), rzVector<2>(10.0, 20.0));
  Metrics metrics;
  specify(metrics, Metrics::eCellRect, rzRect(1.0, 2.0, 3.0, 4.0));
  specify(metrics, Metrics::eMarkRectImage, rzRect(5.0, 6.0, 7.0, 8.0));
  metrics.setImageRectsFromClientRects(imageFromClient);
  EXPECT_EQ(metrics.rect(Metrics::eCellRectImage), rzRect(12.0, 8.0, 6.0, 8.0));
  EXPECT_FALSE(metrics.isRectSpecified(Metrics::eMarkRectImage));
  metrics.isRectSpecified(Metrics::eMarkRectImage, true);
  EXPECT_EQ(metrics.rect(Metrics::eMarkRectImage), rzRect(5.0, 6.0, 7.0, 8.0));
}

TEST(CharMetrics, FailedMappingChangesNone) {
  Metrics metrics;
  specify(metrics, Metrics::eCellRect, rzRect(1.0, 2.0, 3.0, 4.0));
  specify(metrics, Metrics::eDetectedMarkRect, rzRect(40000.0, 2.0, 3.0, 4.0));
  const Metrics before = metrics;
  EXPECT_THAT([&] { metrics.setImageRectsFromClientRects(rzXform<2>()); },
              Fails<rzOCDefs::IntegerOverflow>("Value overflows fixed point value range"));
  EXPECT_TRUE(metrics == before);
  metrics.detectedMarkRect(rzRect(3e9, 2.0, 3.0, 4.0));
  EXPECT_THAT([&] { metrics.setImageRectsFromClientRects(rzXform<2>()); },
              Fails<rzOCDefs::IntegerOverflow>("Value overflows integer value range"));
}

TEST(CharMetrics, BufferMustBeLinearWhateverTheType) {
  const rzPelBuffer<unsigned char> bent = bentImage();
  Metrics metrics = Metrics::blankMetrics();
  const auto isRefused =
      Fails<rzOCDefs::BadParams>("image must have a linear imageFromClient transform");
  EXPECT_THAT([&] { metrics.encloseRectImage(Metrics::eMarkRectImage, bent); }, isRefused);
  EXPECT_THAT([&] { metrics.encloseRectImage(static_cast<Metrics::RectType>(3), bent); },
              isRefused);
  EXPECT_THAT([&] { metrics.setImageRectsFromClientRects(bent); }, isRefused);
  rzPelBuffer<unsigned char> shifted(rzPelRect(0, 0, 4, 4), 32);
  shifted.imageFromClientXform(rzXform<2>(rzMatrix<2>(), rzVector<2>(5.0, 6.0)));
  specify(metrics, Metrics::eMarkRect, rzRect(1.0, 1.0, 2.0, 2.0));
  EXPECT_EQ(metrics.encloseRectImage(Metrics::eMarkRect, shifted), rzPelRect(6, 7, 2, 2));
}

TEST(CharMetrics, BlankMeansAnEmptyMarkInEachSpaceThatIsSpecified) {
  const rzRect full(0.0, 0.0, 2.0, 3.0);
  const rzRect flat(5.0, 5.0, 2.0, 0.0);
  struct {
    const rzRect *client, *image;
    int blank;  // -1: contradiction
  } const cases[] = {{nullptr, nullptr, 0}, {&full, nullptr, 0}, {&flat, nullptr, 1},
                     {nullptr, &full, 0},   {nullptr, &flat, 1}, {&full, &full, 0},
                     {&flat, &flat, 1},     {&full, &flat, -1},  {&flat, &full, -1}};
  for (const auto& c : cases) {
    Metrics metrics;
    if (c.client) specify(metrics, Metrics::eMarkRect, *c.client);
    if (c.image) specify(metrics, Metrics::eMarkRectImage, *c.image);
    if (c.blank < 0) {
      EXPECT_THAT([&] { metrics.isBlank(); }, Fails<rzOCDefs::MetricNotSpecified>(""));
    } else {
      EXPECT_EQ(metrics.isBlank(), c.blank == 1);
    }
  }
}

roc_charMetrics filledRecord() {
  return {0xFFFFFFFF, 7, {1, 2, 3, 4},         {5, 6, -7, 8},        {9, 10, 11, 12},
          -3,         0, {0.1, 0.2, 0.3, 0.4}, {1.1, 1.2, 1.3, 1.4}, {2.1, 2.2, 2.3, 2.4},
          {3.5, 4.5}};
}

TEST(CharMetrics, RecordKeepsEveryValueAndTheSixBits) {
  Metrics metrics;
  metrics.setMetrics(filledRecord());
  EXPECT_EQ(metrics.rect(Metrics::eMarkRectImage), rzRect(40.0, 48.0, -56.0, 64.0));
  EXPECT_EQ(metrics.detectedMarkRect(), rzRect(2.1, 2.2, 2.3, 2.4));
  EXPECT_EQ(metrics.advance(), rzVector<2>(3.5, 4.5));
  roc_charMetrics record = {};
  metrics.getMetrics(record);
  EXPECT_EQ(record.specifiedRects, 63u);
  EXPECT_EQ(record.isAdvanceSpecified, 1);
  EXPECT_EQ(record.fixedPointBits, -3);
  EXPECT_THAT(record.cellRectImage, ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(record.markRectImage, ElementsAre(5, 6, -7, 8));
  EXPECT_THAT(record.detectedMarkRectImage, ElementsAre(9, 10, 11, 12));
  EXPECT_THAT(record.cellRect, ElementsAre(0.1, 0.2, 0.3, 0.4));
  EXPECT_THAT(record.markRect, ElementsAre(1.1, 1.2, 1.3, 1.4));
  EXPECT_THAT(record.detectedMarkRect, ElementsAre(2.1, 2.2, 2.3, 2.4));
  EXPECT_THAT(record.advance, ElementsAre(3.5, 4.5));
}

TEST(CharMetrics, ArchiveBringsBackEqualMetricsAndNeverHalfOfThem) {
  Metrics stored;
  stored.setMetrics(filledRecord());
  std::vector<unsigned char> bytes;
  rzArchive out = rzArchive::storingTo(bytes);
  out << stored;
  ASSERT_EQ(bytes.size(), 1u + 4 + 1 + 3 * 16 + 4 + 3 * 33 + 16);
  Metrics loaded;
  rzArchive in = rzArchive::loadingFrom(bytes);
  in >> loaded;
  EXPECT_TRUE(loaded == stored);
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    Metrics untouched;
    rzArchive cut = rzArchive::loadingFrom(std::span(bytes).first(size));
    EXPECT_THROW(cut >> untouched, rzArchive::BadFormat);
    EXPECT_TRUE(untouched == Metrics()) << size;
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
