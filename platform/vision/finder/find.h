// SPDX-License-Identifier: Apache-2.0
//
// The whole search for a pattern in a picture.
#pragma once

#include <vector>

#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/pattern.h"
#include "platform/vision/finder/picture_features.h"

namespace finder {

struct FindPlan {
  Mat2 pelFromClient;  // of the picture, lengths only

  bool angleIsOpen = false;
  double angle = 0.0;       // radians; used while the angle is closed
  double angleStart = 0.0;  // radians
  double angleEnd = 0.0;
  bool scaleIsOpen = false;
  double scale = 1.0;
  double scaleStart = 1.0;
  double scaleEnd = 1.0;

  double accept = 0.5;
  double xyOverlap = 0.5;
  int mostResults = 1;
  bool refine = true;
  bool ignorePolarity = false;
};

struct Found {
  Pose pose;
  double score = 0.0;
  double coverage = 0.0;
};

/// Finds the pattern. Fills `results` with accepted ones, the best first, cleared of overlaps and
/// cut to the number asked for; also when it throws because it has to stop.
void find(const Pattern& pattern, PictureFeatures& picture, const FindPlan& plan,
          std::vector<Found>& results);

}  // namespace finder
