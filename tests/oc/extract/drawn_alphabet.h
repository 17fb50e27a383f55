// SPDX-License-Identifier: Apache-2.0
//
// Characters and alphabets of drawn shapes. A character's origin is the middle of its image.
#pragma once

#include <string>
#include <vector>

#include "oc/alphabet.h"
#include "oc/model.h"
#include "support/draw.h"

namespace drawn {

inline rzPtrHandle_const<rzOCModel> character(rzLong key, const draw::Shape& shape,
                                              rzLong width = 32, rzLong height = 42,
                                              double scale = 1.0) {
  const rzVector<2> middle(0.5 * width, 0.5 * height);
  rzPelBuffer<unsigned char> image = draw::paper(width, height);
  draw::fill(image, shape, rzXform<2>(rzMatrix<2>(scale, 0, 0, scale), middle));
  image.clientFromImageXform(rzXform<2>(rzMatrix<2>(), -middle));
  const std::string name(1, static_cast<char>(key));
  return new rzOCModel(key, image, image.window(), rzOCModel::eNormal, name);
}

inline rzPtrHandle_const<rzOCModel> blank(rzLong key) {
  return new rzOCModel(key, {}, rzPelRect(0, 0, 10, 10), rzOCModel::eBlank, "blank");
}

inline rzPtrHandle_const<rzOCAlphabet> alphabet(
    const std::vector<rzPtrHandle_const<rzOCModel>>& characters) {
  return new rzOCAlphabet(characters);
}

/// Turned by `degrees`, scaled, the middle of the shape at (x, y).
inline rzXform<2> placed(double x, double y, double degrees = 0.0, double scale = 1.0) {
  return rzXform<2>(rzVector<2>(x, y), scale, 1.0, rzRadian(0.0), rzDegree(degrees));
}

}  // namespace drawn
