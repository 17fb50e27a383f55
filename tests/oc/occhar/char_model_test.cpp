// SPDX-License-Identifier: Apache-2.0
#include "oc/char_model.h"

#include <gmock/gmock.h>

#include "char_kit.h"
#include "rz/char_code.h"

namespace {

using kit::Image;
using kit::picture;

Image shiftedPicture() {
  rzPelBuffer<unsigned char> image = picture({"12345", "67890", "12345"}, 10, 20);
  image.clientFromImageXform(rzXform<2>(rzMatrix<2>(), rzVector<2>(-10.5, -22.0)));
  image.window(rzPelRect(11, 20, 3, 3), false);
  return image;
}

rzOCChar printed() {
  rzOCChar c;
  c.image(shiftedPicture(), shiftedPicture().entire());
  c.mask(picture({"###", "#.#", "###"}, 11, 20), rzPelRect());
  c.imageArea(rzPelRect(12, 20, 2, 2));
  c.metrics(rzOCCharMetrics());
  c.name("two");
  c.description("a drawn two");
  return c;
}

TEST(CharModel, ModelTakesOverWhatTheRecordShows) {
  const rzOCChar c = printed();
  const rzPtrHandle_const<rzOCModel> model = rfOCModelFromChar(c, 50);
  EXPECT_TRUE(*model == rzOCModel(50, c.image(false), c.mask(false), rzPelRect(12, 20, 2, 2),
                                  rzOCModel::eNormal, "two", "a drawn two"));
  EXPECT_TRUE(model->image().sharesRoot(c.image(false)));
  EXPECT_EQ(model->image().entire(), rzPelRect(10, 20, 5, 3));
}

TEST(CharModel, NullAreaStandsForTheWindow) {
  rzOCChar c = printed();
  c.imageArea(rzPelRect());
  EXPECT_EQ(rfOCModelFromChar(c, 1)->imageArea(), rzPelRect(11, 20, 3, 3));
}

TEST(CharModel, BlankRecordBecomesABlankModelPlacedInClientUnits) {
  rzOCChar c = printed();
  c.metrics(rzOCCharMetrics::blankMetrics());
  const rzPtrHandle_const<rzOCModel> model = rfOCModelFromChar(c, 32);
  EXPECT_EQ(model->charType(), rzOCModel::eBlank);
  EXPECT_FALSE(model->image().isBound());
  EXPECT_EQ(model->imageArea(), rzPelRect(1, -2, 3, 2));
}

TEST(CharModel, RecordsThatFitNoModelAreRefused) {
  rzOCChar noImage;
  noImage.metrics(rzOCCharMetrics());
  EXPECT_THROW(rfOCModelFromChar(noImage, 1), rzOCDefs::BadImage);
  rzOCChar otherMask = printed();
  otherMask.mask(picture({"##"}), rzPelRect());
  EXPECT_THROW(rfOCModelFromChar(otherMask, 1), rzOCDefs::BadParams);
  rzOCChar areaOutside = printed();
  areaOutside.imageArea(rzPelRect(10, 20, 2, 2));
  EXPECT_THROW(rfOCModelFromChar(areaOutside, 1), rzOCDefs::BadParams);
  rzOCChar greek = printed();
  greek.name32(U"\u0394");
  EXPECT_THROW(rfOCModelFromChar(greek, 1), rzCharCodeDefs::NotRepresentable);
}

TEST(CharModel, ModelSurvivesTheWayThroughARecord) {
  const rzOCModel models[] = {
      *rfOCModelFromChar(printed(), 50),
      rzOCModel(-3, Image(), rzPelRect(-1, -8, 5, 9), rzOCModel::eBlank, "space", "between words"),
      rzOCModel(),
  };
  for (const rzOCModel& model : models) {
    const rzOCChar c = rfOCCharFromModel(model);
    EXPECT_EQ(static_cast<rzLong>(c.characterCode()), model.key());
    EXPECT_FALSE(c.image(false).sharesRoot(model.image()));
    EXPECT_EQ(c.image(false).entire(), model.image().entire());
    EXPECT_TRUE(*rfOCModelFromChar(c, model.key()) == model);
  }
}

}  // namespace
