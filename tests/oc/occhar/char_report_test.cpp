// SPDX-License-Identifier: Apache-2.0
#include "oc/char_report.h"

#include <gmock/gmock.h>

#include "oc/occhar/char_kit.h"
#include "rz/diag.h"

namespace {

using Metrics = rzOCCharMetrics;
using testing::IsEmpty;

Metrics metricsWith(const std::vector<Metrics::RectType>& types) {
  Metrics metrics;
  for (const Metrics::RectType type : types) {
    metrics.rect(type, rzRect(type, 2.5, 3.0, 4.0));  // the corner tells the type
    metrics.isRectSpecified(type, true);
  }
  return metrics;
}

// Types of the rectangles drawn, in their order; 100 is added to the green ones.
std::vector<rzLong> drawnTypes(const rzDiagGraphics& graphics) {
  std::vector<rzLong> types;
  for (const auto& item : graphics.list.items()) {
    const auto& rect = dynamic_cast<const rzGraphicWithFill<rzRect, rzGenRect>&>(*item);
    EXPECT_TRUE(rect.color() == rzColor::greenColor() || rect.color() == rzColor::orangeColor());
    EXPECT_FALSE(rect.isFilled());
    EXPECT_EQ(rect.shape().size(), rzVector<2>(3.0, 4.0));
    const rzLong green = rect.color() == rzColor::greenColor() ? 100 : 0;
    types.push_back(static_cast<rzLong>(rect.shape().x()) + green);
  }
  return types;
}

TEST(CharReport, TellsNameKeyAndPolarityOfTheWholeImage) {
  const rzOCChar character = kit::filledChar();
  rzDiagObject diag;
  diag.level(1);
  const rzDiagRecord* record = rf_AddOCChar(&diag, character, "Delta");
  ASSERT_EQ(diag.numRecords(), 1);
  EXPECT_EQ(record, diag.diagRecord(0));
  EXPECT_EQ(record->annotation(), "Delta");
  EXPECT_EQ(record->level(), 1);
  ASSERT_EQ(record->texts().size(), 1U);
  EXPECT_EQ(record->texts()[0].label, "Key");
  EXPECT_EQ(record->texts()[0].content, "Name : delta\n" + rf_OCCharKeyText(character.key()) +
                                            "Polarity : " + std::to_string(rzOCDefs::eLightOnDark) +
                                            "\n");
  EXPECT_EQ(record->images().at(0).image.window(), rzPelRect(10, 20, 4, 3));
  EXPECT_TRUE(record->images().at(0).image.sharesRoot(character.image(false)));
}

TEST(CharReport, NameWithoutAnEightBitFormIsLeftOut) {
  rzOCChar character;
  character.name32(U"\u0394");
  rzDiagObject diag;
  const rzDiagRecord* record = rf_AddOCChar(&diag, character, "Delta");
  EXPECT_EQ(record->texts().at(0).content, rf_OCCharKeyText(rzOCCharKey()) + "Polarity : " +
                                               std::to_string(rzOCDefs::ePolarityUnknown) + "\n");
  EXPECT_THAT(record->images(), IsEmpty());
}

TEST(CharReport, DrawsTheSpaceThatHasMoreRectangles) {
  struct Case {
    std::vector<Metrics::RectType> specified;
    rzLong coordinateSystem;
    std::vector<rzLong> drawn;
  };
  const std::vector<Case> cases{
      {{}, 1, {}},
      {{Metrics::eCellRect, Metrics::eMarkRect}, 2, {104, 1}},
      {{Metrics::eCellRectImage, Metrics::eMarkRectImage}, 1, {108, 2}},
      {{Metrics::eCellRect, Metrics::eMarkRectImage}, 1, {108}},
      {{Metrics::eCellRect, Metrics::eMarkRect, Metrics::eCellRectImage}, 2, {104, 1}},
      {{Metrics::eMarkRect, Metrics::eCellRectImage, Metrics::eMarkRectImage}, 1, {108, 2}},
      {{Metrics::eDetectedMarkRect, Metrics::eDetectedMarkRectImage}, 1, {}},
  };
  for (const Case& c : cases) {
    rzOCChar character;
    character.metrics(metricsWith(c.specified));
    rzDiagObject diag;
    const rzDiagRecord* record = rf_AddOCChar(&diag, character, "");
    ASSERT_EQ(record->graphics().size(), 1U);
    EXPECT_EQ(record->graphics()[0].label, "rect(s)");
    EXPECT_EQ(record->graphics()[0].coordinateSystem, c.coordinateSystem);
    EXPECT_EQ(drawnTypes(record->graphics()[0]), c.drawn);
  }
}

}  // namespace
