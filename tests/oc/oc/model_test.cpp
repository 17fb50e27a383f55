// SPDX-License-Identifier: Apache-2.0
#include "oc/model.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <ostream>

#include "alphabet_kit.h"

namespace {

const std::string kBadImage =
    "rzOCDefs::BadImage: Image models must be bound for normal characters.";
const std::string kBlankWithImage =
    "rzOCDefs::NotImplemented: Bound images are not supported for blank characters";
const std::string kWindowsDiffer =
    "rzOCDefs::BadParams: Character mask window must be equal to the image character model window.";
const std::string kAreaOutside =
    "rzOCDefs::BadParams: The image area must fit within the mask and image windows.";

const Image kUnbound;
const rzPelRect kSmaller(1, 1, 6, 6);
const rzPelRect kOutside(4, 4, 8, 10);

struct ConstructionCase {
  const char* name;
  Image image;
  Image mask;
  rzPelRect area;
  rzOCModel::CharType type;
  std::string failure;
};

void PrintTo(const ConstructionCase& c, std::ostream* out) { *out << c.name; }

class ModelConstruction : public testing::TestWithParam<ConstructionCase> {};

TEST_P(ModelConstruction, AcceptsOrNamesTheFirstFault) {
  const ConstructionCase& c = GetParam();
  EXPECT_EQ(failureOf([&] { rzOCModel(1, c.image, c.mask, c.area, c.type); }), c.failure);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ModelConstruction,
    testing::Values(ConstructionCase{"normal", greyImage(), kUnbound, kSmaller, rzOCModel::eNormal,
                                     "nothing"},
                    ConstructionCase{"normal_without_image", kUnbound, greyImage(), kOutside,
                                     rzOCModel::eNormal, kBadImage},
                    ConstructionCase{"blank_with_image", greyImage(), greyImage(kSmaller), kOutside,
                                     rzOCModel::eBlank, kBlankWithImage},
                    ConstructionCase{"mask_of_another_window", greyImage(), greyImage(kSmaller),
                                     kOutside, rzOCModel::eNormal, kWindowsDiffer},
                    ConstructionCase{"area_outside", greyImage(), kUnbound, kOutside,
                                     rzOCModel::eNormal, kAreaOutside},
                    ConstructionCase{"null_area", greyImage(), kUnbound, rzPelRect(),
                                     rzOCModel::eNormal, kAreaOutside},
                    ConstructionCase{"blank_with_mask", kUnbound, greyImage(), kSmaller,
                                     rzOCModel::eBlank, "nothing"},
                    ConstructionCase{"blank_area_outside_mask", kUnbound, greyImage(), kOutside,
                                     rzOCModel::eBlank, kAreaOutside},
                    ConstructionCase{"blank_with_any_area", kUnbound, kUnbound,
                                     rzPelRect(-5, 0, -1, 1 << 30), rzOCModel::eBlank, "nothing"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Model, RefusedSettersChangeNothing) {
  const rzOCModel before(7, greyImage(), greyImage(), kSmaller);
  rzOCModel model = before;
  EXPECT_EQ(failureOf([&] { model.image(kUnbound); }), kBadImage);
  EXPECT_EQ(failureOf([&] { model.image(greyImage(kOutside)); }), kWindowsDiffer);
  EXPECT_EQ(failureOf([&] { model.mask(greyImage(kOutside)); }), kWindowsDiffer);
  EXPECT_EQ(failureOf([&] { model.model(greyImage(kOutside), greyImage(kOutside)); }),
            kAreaOutside);
  EXPECT_EQ(failureOf([&] { model.imageArea(kOutside); }), kAreaOutside);
  EXPECT_EQ(model, before);
}

TEST(Model, ImageAndMaskOfANewWindowGoInTogether) {
  const rzPelRect larger(-2, -2, 20, 20);
  rzOCModel model(7, greyImage(), greyImage(), kSmaller);
  model.model(greyImage(larger), greyImage(larger));
  EXPECT_EQ(model.image().window(), larger);
  EXPECT_EQ(model.mask().window(), larger);
}

TEST(Model, ItsOwnImageCanServeAsMask) {
  rzOCModel model(7, greyImage(), kSmaller);
  model.model(greyImage(kCharWindow, 30), model.image());
  EXPECT_TRUE(rfPelEqual(model.mask(), greyImage()));
}

using Change = std::function<void(rzOCModel&)>;

TEST(ModelArchive, RoundTripKeepsEverything) {
  Image shifted = greyImage();
  shifted.clientFromImageXform(rzXform<2>(rzMatrix<2>(0.1, 0.3, -0.3, 0.1), rzVector<2>(2, 3)));
  rzOCModel model(7, shifted, greyImage(), kSmaller, rzOCModel::eNormal, "a", "letter");
  const Bytes bytes = stored(model);
  rzOCModel loaded;
  load(loaded, bytes);
  EXPECT_EQ(loaded, model);
  EXPECT_EQ(stored(loaded), bytes);
  EXPECT_TRUE(everyTruncationIsRefused(bytes, rzOCModel(3, Image(), kSmaller, rzOCModel::eBlank)));
}

Bytes versionZeroBytes(rzOCModel& model) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  Image image = model.image();
  Image mask = model.mask();
  rzPelRect area = model.imageArea();
  archive << static_cast<unsigned char>(0) << model.key();
  archive || image;
  archive || mask;
  archive << static_cast<rzULong>(model.charType()) << model.name();
  rf_PersistenceHelper<rzLong>(archive, area);
  return bytes;
}

TEST(ModelArchive, ContentIsTakenAsItStands) {
  // A normal character without image: no constructor makes one, an archive may hold one.
  rzOCModel blank(7, Image(), rzPelRect(0, 0, 900, 900), rzOCModel::eBlank);
  Bytes bytes = versionZeroBytes(blank);
  const std::size_t fromEnd = 16 + 4 + 4;  // rectangle, empty name, type
  bytes[bytes.size() - fromEnd] = 0;
  rzOCModel loaded;
  load(loaded, bytes);
  EXPECT_EQ(loaded.charType(), rzOCModel::eNormal);
  EXPECT_FALSE(loaded.image().isBound());
}

const rzXform<2> kIdentity;

TEST(ModelEnclose, WithoutUncertaintyIsThePlacedArea) {
  Image shifted = greyImage();
  shifted.clientFromImageXform(shift(-4, -5));
  const rzOCModel model(7, shifted, kSmaller);
  const rzXform<2> twice(rzMatrix<2>(2, 0, 0, 2), rzVector<2>(100, 50));
  const auto rect = [&](const rzXform<2>& origin, const rzXform<2>& target) {
    return model.encloseRect(twice, origin, target, 0, rzRadian(0), 0);
  };
  EXPECT_EQ(rect(kIdentity, kIdentity), rzRect(94, 42, 12, 12));
  EXPECT_EQ(rect(shift(3, 2), kIdentity), rzRect(94, 42, 12, 12));
  EXPECT_EQ(rect(kIdentity, shift(10, 20)), rzRect(84, 22, 12, 12));
}

TEST(ModelEnclose, TurnsAndScalesActAboutTheOriginFrame) {
  // The area is centred on (4, 4): about its own centre a full turn sweeps the circle round it.
  const rzOCModel model(7, greyImage(), kSmaller);
  const rzRect swept = model.encloseRect(kIdentity, shift(4, 4), kIdentity, 0, rzRadian(kRzPi), 0);
  const double radius = std::sqrt(18.0);
  EXPECT_NEAR(swept.ul().x(), 4 - radius, 1e-12);
  EXPECT_NEAR(swept.lr().y(), 4 + radius, 1e-12);
  const rzRect scaled = model.encloseRect(kIdentity, kIdentity, kIdentity, 1, rzRadian(0), 0.5);
  EXPECT_EQ(scaled, rzRect(-0.5, -0.5, 12, 12));
}

TEST(ModelEnclose, NegativeAndNanUncertaintiesAreRefusedInOrder) {
  const rzOCModel model(7, greyImage(), kSmaller);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto failure = [&](double translation, double rotation, double scale) {
    return failureOf([&] {
      model.encloseRect(kIdentity, kIdentity, kIdentity, translation, rzRadian(rotation), scale);
    });
  };
  EXPECT_EQ(failure(-1, -1, -1), "rzOCDefs::BadParams: Translation uncertainty must be >= 0");
  EXPECT_EQ(failure(nan, 0, 0), "rzOCDefs::BadParams: Translation uncertainty must be >= 0");
  EXPECT_EQ(failure(0, nan, -1), "rzOCDefs::BadParams: Rotation uncertainty must be >= 0");
  EXPECT_EQ(failure(0, 0, -1e-9), "rzOCDefs::BadParams: Scale uncertainty must be >= 0");
}

}  // namespace
