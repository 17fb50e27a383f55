// SPDX-License-Identifier: Apache-2.0
//
// Everything that the finder derives from a picture alone: gradients at full size, half size and so
// on, and for each level, when it is first asked for, maps that tell how well the gradients near a
// pel agree with a direction.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/gradient.h"

namespace finder {

/// How many directions of a whole turn the response maps tell apart.
inline constexpr int kDirections = 16;
/// The response to a gradient of just the right direction.
inline constexpr int kBestResponse = 5;
/// Places are looked at in steps of so many pels in both coordinates.
inline constexpr int kStride = 2;

/// Response maps (S. Hinterstoisser et al., "Gradient response maps for real-time detection of
/// textureless objects", PAMI 34, 2012): for each direction and each place the agreement with the
/// best gradient in a small neighbourhood, 0 to kBestResponse.
///
/// A map has empty pels around the picture, so that patterns may hang over its rim, and is split by
/// the remainders of its coordinates modulo the stride into planes. Within a plane a step of
/// kStride pels is a step to the next element, also from the end of a row to the next row.
struct ResponseMaps {
  int margin = 0;          // empty pels above and below, and between a row's end and the next row
  int columns = 0;         // elements in a row of a plane, those of the margin included
  int rows = 0;            // rows of a plane, those of the margins included
  int pictureColumns = 0;  // elements in a row that lie in the picture
  int pictureRows = 0;
  std::size_t planeSize = 0;  // elements of a plane with what may be read behind its end
  std::array<std::unique_ptr<std::uint8_t[]>, kDirections> planes;  // four planes each

  bool isEmpty() const { return planes[0] == nullptr; }

  /// The element for the picture's pel (x, y), also for negative coordinates down to -margin.
  const std::uint8_t* at(int direction, int x, int y) const {
    return planes[static_cast<std::size_t>(direction)].get() + indexOf(x, y);
  }
  std::ptrdiff_t indexOf(int x, int y) const {
    const int plane = (y & 1) * kStride + (x & 1);
    return plane * static_cast<std::ptrdiff_t>(planeSize) +
           (margin / kStride) * static_cast<std::ptrdiff_t>(columns + 1) +
           (y >> 1) * static_cast<std::ptrdiff_t>(columns) + (x >> 1);
  }
};

struct PictureLevel {
  GradientMap gradients;
  ResponseMaps responses;  // empty until asked for
  bool hasResponses = false;
};

class PictureFeatures {
 public:
  /// Copies what it needs. Edges below `contrast` grey levels, as ideal steps, do not count.
  PictureFeatures(const PelView& picture, double contrast);

  /// Whether these are the features of this picture, mask and contrast.
  bool areOf(const PelView& picture, double contrast) const;

  /// Level 0 has the full size, each further one half the size of the one before it. Computed at
  /// the first call for it; throws what rzAttention::check() throws, and then has changed nothing.
  const PictureLevel& level(int index);
  const PictureLevel& levelWithResponses(int index);

  double contrast() const { return contrast_; }
  int width() const { return grey_.front().width; }
  int height() const { return grey_.front().height; }

 private:
  PelView viewOf_(std::size_t index) const;

  double contrast_;
  std::vector<GreyImage> grey_;
  std::vector<GreyImage> mask_;  // empty without a mask
  std::vector<std::unique_ptr<PictureLevel>> levels_;
};

/// The greatest distance from a pattern's centre to its points that a response map serves, in pels
/// of its level.
inline constexpr int kGreatestRadius = 30;

/// The direction whose response map serves a gradient along `normal`.
int directionOf(Vec2 normal);

ResponseMaps responsesOf(const GradientMap& gradients, double contrast);

}  // namespace finder
