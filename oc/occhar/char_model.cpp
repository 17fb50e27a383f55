// SPDX-License-Identifier: Apache-2.0
#include "oc/char_model.h"

#include "rz/affine_rectangle.h"

namespace {

using Image = rzOCChar::Image;

rzPtrHandle_const<rzOCModel> blankModel(const rzOCChar& character, rzLong key) {
  rzPelRect area = character.imageArea();
  if (!area.isNull()) {
    area = rzAffineRectangle(area).encloseImageRect(character.image(false).clientFromImageXform());
  }
  return rzPtrHandle_const<rzOCModel>(new rzOCModel(key, Image(), area, rzOCModel::eBlank,
                                                    character.name(), character.description()));
}

}  // namespace

rzPtrHandle_const<rzOCModel> rfOCModelFromChar(const rzOCChar& character, rzLong key) {
  if (character.metrics().isBlank()) return blankModel(character, key);
  const Image image = character.image(false);
  const rzPelRect area = character.imageArea().isNull() ? image.window() : character.imageArea();
  return rzPtrHandle_const<rzOCModel>(new rzOCModel(key, image, character.mask(false), area,
                                                    rzOCModel::eNormal, character.name(),
                                                    character.description()));
}

rzOCChar rfOCCharFromModel(const rzOCModel& model) {
  rzOCChar character;
  character.characterCode(static_cast<rzULong>(model.key()));
  character.image(model.image(), model.image().entire());
  character.mask(model.mask(), model.mask().entire());
  character.imageArea(model.imageArea());
  const bool isBlank = model.charType() == rzOCModel::eBlank;
  character.metrics(isBlank ? rzOCCharMetrics::blankMetrics() : rzOCCharMetrics());
  character.name(model.name());
  character.description(model.description());
  return character;
}
