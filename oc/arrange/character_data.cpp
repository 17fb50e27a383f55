// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/character_data.h"

namespace {

rz_CharData charDataOf(const rzOCModel& model) {
  const rzXform<2> clientFromImage = model.image().clientFromImageXform();
  const rzPelRect& area = model.imageArea();
  rz_CharData data;
  data.isBlank = model.charType() == rzOCModel::eBlank;
  data.imageArea(rzAffineRectangle(clientFromImage.mapPoint(area.ul()),
                                   clientFromImage.mapPoint(area.ur()),
                                   clientFromImage.mapPoint(area.ll())));
  return data;
}

}  // namespace

std::vector<rz_CharData> rf_CharDataOf(const rzOCAlphabet& alphabet,
                                       const std::vector<rzLong>& keys) {
  std::vector<rz_CharData> charData;
  for (const rzLong key : keys) charData.push_back(charDataOf(*alphabet.character(key)));
  return charData;
}
