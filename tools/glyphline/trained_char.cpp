// SPDX-License-Identifier: Apache-2.0
#include "trained_char.h"

#include <algorithm>
#include <cmath>

#include "char_list.h"

namespace glyphline {

rzPtrHandle_const<rzOCModel> modelOf(const TrainedChar& trained) {
  const auto key = static_cast<rzLong>(trained.character);
  const std::string name = utf8Of(trained.character);
  if (!trained.image.isBound()) {
    return new rzOCModel(key, {}, trained.area, rzOCModel::eBlank, name, trained.source);
  }
  rzPelBuffer_const<unsigned char> image = trained.image;
  image.clientFromImageXform(rzXform<2>(rzMatrix<2>(), -trained.origin));
  return new rzOCModel(key, image, trained.area, rzOCModel::eNormal, name, trained.source);
}

// How much of the neighbours' margins a blank's box makes up for: of shares from 0 to 2 the one
// with which the fewest lines are broken at their spaces.
constexpr double kMarginShare = 1.0 / 3.0;

TrainedChar blankOf(char32_t character, double width, const BlankFrame& frame,
                    const std::string& source) {
  const double box = width - frame.spacing + kMarginShare * frame.margin;
  const auto boxWidth = static_cast<rzLong>(std::max(1.0, std::round(box)));
  TrainedChar blank;
  blank.character = character;
  blank.area = rzPelRect(-boxWidth / 2, -frame.height, boxWidth, frame.height);
  blank.source = source;
  return blank;
}

std::vector<rzPtrHandle_const<rzOCModel>> modelsOf(const std::vector<TrainedChar>& trained) {
  std::vector<rzPtrHandle_const<rzOCModel>> models;
  for (const TrainedChar& one : trained) models.push_back(modelOf(one));
  return models;
}

}  // namespace glyphline
