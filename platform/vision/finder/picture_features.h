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

#include "platform/vision/finder/edge_cells.h"
#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/gradient.h"

namespace finder {

/// How many directions of a whole turn the response maps tell apart.
inline constexpr int kDirections = 16;
/// The response to a gradient of just the right direction.
inline constexpr int kBestResponse = 5;
/// Places are looked at in steps of so many pels in both coordinates.
inline constexpr int kStride = 2;
/// How many pels a gradient may be displaced and still respond.
inline constexpr int kSpread = 2;

/// The greatest distance from a pattern's centre to its points that a response map serves, in pels
/// of its level.
inline constexpr int kGreatestRadius = 30;
/// Empty elements beside and rows above and below a plane: those that patterns reach, and what
/// spreads from beyond them.
inline constexpr int kEmptyColumns = kGreatestRadius / kStride + 1;
inline constexpr int kEmptyRows = kGreatestRadius / kStride + 2;

/// Response maps (S. Hinterstoisser et al., "Gradient response maps for real-time detection of
/// textureless objects", PAMI 34, 2012): for each direction and each place the agreement with the
/// best gradient in a small neighbourhood, 0 to kBestResponse.
///
/// Places are pels in steps of kStride. A map is split by the remainders of its coordinates modulo
/// the stride into planes, where a step of kStride pels is a step to the next element. There are
/// empty elements around the picture, so that patterns may hang over its rim; those to the right of
/// a row are those to the left of the next one.
///
/// A plane is folded: its rows from `foldedRows` on share their elements with those from 0 on, in
/// the upper four bits. So a step of the search sums the responses of two places at once, and the
/// maps take half the memory. Empty rows follow on both ends of both halves; there the halves
/// overlap.
struct ResponseMaps {
  int columns = 0;            // elements in a row of a plane, empty ones included
  int pictureColumns = 0;     // those in the picture
  int pictureRows = 0;        // rows of a plane in the picture
  int foldedRows = 0;         // of which so many come first
  std::size_t planeSize = 0;  // elements of a plane with what may be read behind its end
  LargeArray<std::uint8_t> elements;  // four planes for each direction
  EdgeCells edges;                           // those that any direction responds to

  bool isEmpty() const { return elements == nullptr; }

  /// The element for the picture's pel (x, y), also for coordinates down to -kGreatestRadius.
  const std::uint8_t* at(int direction, int x, int y) const {
    return elements.get() + static_cast<std::size_t>(direction) * mapSize() + indexOf(x, y);
  }
  /// Elements of a direction's map.
  std::size_t mapSize() const { return planeSize * kStride * kStride; }
  std::ptrdiff_t indexOf(int x, int y) const {
    const int plane = (y & 1) * kStride + (x & 1);
    return plane * static_cast<std::ptrdiff_t>(planeSize) +
           placeIndex((x >> 1) + kEmptyColumns, (y >> 1) + kEmptyRows);
  }
  /// How far the element for place (x, y) is from that for (0, 0), in each plane.
  std::ptrdiff_t placeIndex(int x, int y) const {
    return y * static_cast<std::ptrdiff_t>(columns) + x;
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

/// The direction whose response map serves a gradient along `normal`, of any length.
int directionOf(Vec2 normal);

ResponseMaps responsesOf(const GradientMap& gradients, double contrast);

}  // namespace finder
