// SPDX-License-Identifier: Apache-2.0
//
// A character as training cuts it out, and the model that is made of it.
//
// The model image holds the ink box with a margin of background on all sides, at client scale 1.
// The client origin lies on the text's base line, in the middle of the character's width.
#pragma once

#include <string>
#include <vector>

#include "oc/model.h"
#include "rz/pel_buffer.h"
#include "rz/vector.h"

namespace glyphline {

struct TrainedChar {
  char32_t character = 0;
  rzPelBuffer<unsigned char> image;  // ink box and margin; unbound for a blank
  rzPelRect area;                    // the trained area, in pels of `image`; of a blank, in client
                                     // coordinates
  rzVector<2> origin;                // pels of `image`
  std::string source;                // for people
};

rzPtrHandle_const<rzOCModel> modelOf(const TrainedChar& trained);

/// What a blank's box depends on besides its width.
struct BlankFrame {
  rzLong margin = 3;     // of the characters
  double spacing = 0.0;  // usual room between the ink of two neighbours
  rzLong height = 1;     // of the print
};

/// A blank that moves print on by `width` pels. Its box is about as wide as keeps the free space
/// between boxes even along a line: neighbours' margins reach into the blank, and the usual spacing
/// stands on one side of it.
TrainedChar blankOf(char32_t character, double width, const BlankFrame& frame,
                    const std::string& source);

/// Models of all, in the given order.
std::vector<rzPtrHandle_const<rzOCModel>> modelsOf(const std::vector<TrainedChar>& trained);

}  // namespace glyphline
