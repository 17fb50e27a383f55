// SPDX-License-Identifier: Apache-2.0
#include "rz/diag.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/platform/foundation/pels/pictures.h"

namespace {

using pictures::Image;
using pictures::ImageView;
using pictures::noise;
using pictures::ShowsTheSameAs;

rzGraphicList axes() {
  rzGraphicList list;
  list.append(new rzGraphicSimple<rzCoordAxes>(rzCoordAxes(), rzColor::blueColor()), true);
  return list;
}

TEST(Diag, AllBitsAskedForMustBeSet) {
  EXPECT_TRUE(rzDiagObject::shouldRecord(0x70000, rzDiagDefs::eInputs | rzDiagDefs::eResults));
  EXPECT_FALSE(rzDiagObject::shouldRecord(0x10000, rzDiagDefs::eInputs | rzDiagDefs::eResults));
  EXPECT_FALSE(rzDiagObject::shouldRecord(0, rzDiagDefs::eDetails));
}

TEST(Diag, RecordsKeepTheLevelOfTheirTimeAndTheirPlace) {
  rzDiagObject diag;
  rzDiagRecord* first = diag.newDiagRecord();
  {
    const rzDiagLevelScope group(&diag);
    const rzDiagLevelScope inner(&diag, 2);
    diag.newDiagRecord();
  }
  for (int i = 0; i < 1000; ++i) diag.newDiagRecord();
  EXPECT_EQ(diag.diagRecord(0), first);
  EXPECT_EQ(first->level(), 0);
  EXPECT_EQ(diag.diagRecord(1)->level(), 3);
  EXPECT_EQ(diag.diagRecord(2)->level(), 0);
  EXPECT_EQ(diag.numRecords(), 1002);
  EXPECT_EQ(diag.diagRecord(1002), nullptr);
  EXPECT_EQ(diag.diagRecord(-1), nullptr);
}

TEST(Diag, LevelIsPutBackWhenAnExceptionPasses) {
  rzDiagObject diag;
  diag.level(5);
  try {
    const rzDiagLevelScope group(&diag);
    EXPECT_EQ(diag.level(), 6);
    diag.level(17);
    throw std::runtime_error("");
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(diag.level(), 5);
}

TEST(Diag, NullObjectRecordsNothing) {
  const rzDiagLevelScope group(nullptr);
  EXPECT_EQ(rf_AddImage(nullptr, noise({0, 0, 2, 2}), "", true), nullptr);
  EXPECT_EQ(rf_AddText(nullptr, "", ""), nullptr);
  EXPECT_EQ(rf_AddGraphics(nullptr, axes(), "", rzDiagDefs::ePelCoordinates), nullptr);
}

TEST(Diag, EachThingAddedIsARecordOfItsOwn) {
  rzDiagObject diag;
  rf_AddText(&diag, "content", "text title");
  rf_AddGraphics(&diag, axes(), "graphics title", rzDiagDefs::eClientCoordinates);
  const rzDiagRecord& text = *diag.diagRecord(0);
  EXPECT_EQ(text.annotation(), "text title");
  EXPECT_EQ(text.texts().at(0).content, "content");
  const rzDiagRecord& graphics = *diag.diagRecord(1);
  EXPECT_EQ(graphics.annotation(), "graphics title");
  EXPECT_EQ(graphics.graphics().at(0).coordinateSystem, 2);
}

TEST(Diag, TextKeepsItsNulCharacters) {
  rzDiagObject diag;
  const std::string content("line\n\0", 6);
  rf_AddText(&diag, content, "");
  EXPECT_EQ(diag.diagRecord(0)->texts().at(0).content, content);
}

TEST(Diag, CopiedPictureStaysWhileTheSharedOneFollows) {
  rzDiagObject diag;
  Image image = noise({3, 4, 5, 6});
  image.clientFromImageXform(pictures::shift(7, 8));
  const Image before = rfPelCopy(image);
  rf_AddImage(&diag, image, "copied", true);
  rf_AddImage(&diag, image, "shared", false);
  rfPelSet(image, 9);
  const rzDiagImage& copied = diag.diagRecord(0)->images().at(0);
  EXPECT_EQ(copied.name, "copied");
  EXPECT_THAT(copied.image, ShowsTheSameAs(before));
  EXPECT_EQ(copied.image.clientFromImageXform(), pictures::shift(7, 8));
  EXPECT_THAT(diag.diagRecord(1)->images().at(0).image, ShowsTheSameAs(image));
}

TEST(Diag, PictureWithoutPelsStillGivesARecord) {
  Image nothing = noise({0, 0, 3, 3});
  nothing.window(rzPelRect(8, 8, 1, 1), true);
  rzDiagObject diag;
  for (const ImageView& image : {ImageView(), ImageView(nothing)}) {
    rzDiagRecord* record = rf_AddImage(&diag, image, "blank", true);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->annotation(), "blank");
    EXPECT_TRUE(record->images().empty());
  }
}

TEST(Diag, RecordHoldsTheListAsItWas) {
  rzDiagObject diag;
  rzGraphicList list = axes();
  rzDiagRecord* record = diag.newDiagRecord();
  record->graphics(list, rzDiagDefs::eClientCoordinates, "one");
  list.append(new rzGraphicPointIcon(rzVector<2>(1, 2), rzColor::yellowColor()), true);
  record->graphics(list, rzDiagDefs::eClientCoordinates, "two");
  EXPECT_EQ(record->graphics().at(0).list.items().size(), 1U);
  EXPECT_EQ(record->graphics().at(1).list.items().size(), 2U);
  EXPECT_TRUE(record->graphics()[0].list.items()[0] == record->graphics()[1].list.items()[0]);
}

TEST(Graphics, ReadersGetShapeAndPropertiesBack) {
  const rzGraphicProps thick(rzColor::redColor(), 2, 0, false);
  const rzLineSeg segment(rzVector<2>(1, 2), rzVector<2>(3, 4));
  rzGraphicList list;
  list.append(new rzGraphicSimple<rzLineSeg>(segment, thick), true);
  list.append(
      new rzGraphicWithFill<rzRect, rzGenRect>(rzRect(1, 2, 3, 4), rzColor::orangeColor(), true),
      true);
  const auto* line = dynamic_cast<const rzGraphicSimple<rzLineSeg>*>(list.items()[0].rep());
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->shape().p2(), rzVector<2>(3, 4));
  EXPECT_EQ(line->props(), thick);
  const auto* box =
      dynamic_cast<const rzGraphicWithFill<rzRect, rzGenRect>*>(list.items()[1].rep());
  ASSERT_NE(box, nullptr);
  EXPECT_TRUE(box->isFilled());
  EXPECT_EQ(box->general().lr(), rzVector<2>(4, 6));
  EXPECT_EQ(box->color(), rzColor::orangeColor());
  EXPECT_EQ(box->props().penWidth(), 1);
  EXPECT_EQ(dynamic_cast<const rzGraphicPointIcon*>(list.items()[0].rep()), nullptr);
}

TEST(Graphics, ListLivesOnInItsCopies) {
  rzGraphicList copy;
  {
    const rzGraphicList list = axes();
    copy = list;
  }
  EXPECT_EQ(copy.items()[0]->refCount(), 1);
  EXPECT_THROW(copy.append(nullptr, true), rzBadPointer);
}

}  // namespace
