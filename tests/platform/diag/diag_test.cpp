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

TEST(Diag, RecordsKeepTheirPlaceAndLevelAndAnExceptionPutsTheLevelBack) {
  rzDiagObject diag;
  rzDiagRecord* first = diag.newDiagRecord();
  try {
    const rzDiagLevelScope group(&diag);
    const rzDiagLevelScope inner(&diag, 2);
    diag.newDiagRecord();
    diag.level(17);
    throw std::runtime_error("");
  } catch (const std::runtime_error&) {
  }
  for (int i = 0; i < 1000; ++i) diag.newDiagRecord();
  EXPECT_EQ(diag.diagRecord(0), first);
  EXPECT_EQ(diag.diagRecord(1)->level(), 3);
  EXPECT_EQ(diag.diagRecord(2)->level(), 0);
  EXPECT_EQ(diag.diagRecord(1002), nullptr);
  EXPECT_EQ(diag.diagRecord(-1), nullptr);
}

TEST(Diag, NullObjectRecordsNothing) {
  const rzDiagLevelScope group(nullptr);
  EXPECT_EQ(rf_AddImage(nullptr, noise({0, 0, 2, 2}), "", true), nullptr);
  EXPECT_EQ(rf_AddText(nullptr, "", ""), nullptr);
  EXPECT_EQ(rf_AddGraphics(nullptr, axes(), "", rzDiagDefs::ePelCoordinates), nullptr);
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

}  // namespace
