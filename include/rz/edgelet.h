// SPDX-License-Identifier: Apache-2.0
//
// rfEdgeDetect: the places of a picture where grey changes, each with the direction of the change.
// Made for the question whether a character has edges in more than one direction; edges are broad
// on purpose, a few pels to either side of the true place.
//
// Method: gradient of the picture smoothed by a Gaussian (J. Canny, "A Computational Approach to
// Edge Detection", IEEE Transactions on Pattern Analysis and Machine Intelligence 8 (1986)),
// without its thinning: every pel whose gradient is strong enough is an edgelet. The standard
// deviation in pels is grain * max(2, 0.08 * longer side of the window). Thinner edges, by
// suppression of non-maxima or by less smoothing, would let the few great strokes of letters
// such as E and H outweigh everything else.
//
// The picture goes on beyond its window by repetition of the border pels, and pels of the outermost
// ring are no edgelets. Pels outside the window are not seen, so ink that touches the window's
// border has no edge there.
#pragma once

#include <utility>
#include <vector>

#include "rz/angle8.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"
#include "rz/vector.h"

class rzEdgeletParams {
 public:
  /// `grain` above 0 scales the smoothing, 1 being the width told above. `contrast` is the height
  /// in grey levels of the smallest ideal step that counts; 0 and less admit every pel. `edgeType`
  /// is carried and has no effect.
  explicit rzEdgeletParams(double grain = 1.0, double contrast = 10.0, rzLong edgeType = 1)
      : grain_(grain), contrast_(contrast), edgeType_(edgeType) {}

  double grain() const { return grain_; }
  double contrast() const { return contrast_; }
  rzLong edgeType() const { return edgeType_; }

 private:
  double grain_;
  double contrast_;
  rzLong edgeType_;
};

class rzEdgelet {
 public:
  rzEdgelet() = default;
  rzEdgelet(const rzVector<2>& position, const rzAngle8& angle, float contrast)
      : position_(position), angle_(angle), contrast_(contrast) {}

  /// Centre of the pel, in pel coordinates.
  const rzVector<2>& position() const { return position_; }
  /// Direction in which grey rises fastest; opposite sides of a stroke differ by half a turn.
  const rzAngle8& angle() const { return angle_; }
  /// Height in grey levels of the ideal step that has this gradient.
  float contrast() const { return contrast_; }

 private:
  rzVector<2> position_;
  rzAngle8 angle_;
  float contrast_ = 0.0F;
};

/// Edgelets row by row, from left to right.
class rzEdgeletSet {
 public:
  rzEdgeletSet() = default;
  explicit rzEdgeletSet(std::vector<rzEdgelet> edges) : edges_(std::move(edges)) {}

  const std::vector<rzEdgelet>& edges() const { return edges_; }

 private:
  std::vector<rzEdgelet> edges_;
};

/// Replaces the content of `edgelets` by the edgelets of the window. The same picture gives the
/// same edgelets on every machine. Throws rzPel::UnboundWindow, and what rzAttention::check()
/// throws; `edgelets` is then as before.
RZ_API void rfEdgeDetect(const rzPelBuffer_const<unsigned char>& image,
                         const rzEdgeletParams& params, rzEdgeletSet& edgelets);
