// SPDX-License-Identifier: Apache-2.0
//
// Characters from a picture with boxes round them.
#pragma once

#include <string>
#include <vector>

#include "box_file.h"
#include "font_train.h"
#include "trained_char.h"

namespace glyphline {

/// A picture and the boxes of its characters.
struct BoxedPicture {
  rzPelBuffer<unsigned char> picture;
  std::vector<Box> boxes;
  std::string name;
  Polarity polarity = Polarity::kAuto;
};

struct BoxTraining {
  std::vector<BoxedPicture> pictures;
  rzLong margin = 3;
};

/// How far down the picture the base line runs under each box, at the box's middle. `inks` are the
/// extents of the ink in the boxes.
std::vector<double> baseLines(const std::vector<rzRect>& inks, const std::vector<Box>& boxes);

/// One character for each distinct box character, in order of first appearance; of several boxes
/// the most typical one. Each is cut out with the margin, in which ink of neighbours is painted
/// over with background.
std::vector<TrainedChar> trainFromBoxes(const BoxTraining& training);

/// The usual height of the boxes and the usual room between neighbours, for blanks.
BlankFrame blankFrameOf(const BoxTraining& training);

}  // namespace glyphline
