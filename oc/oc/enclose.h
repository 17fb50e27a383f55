// SPDX-License-Identifier: Apache-2.0
//
// What the enclosing rectangles of characters, lines and arrangements have in common: a rectangle
// of one floor is placed with uncertainties on the next, and the placed ones are joined.
#pragma once

#include <optional>

#include "rz/angle.h"
#include "rz/pel_rect.h"
#include "rz/polygon.h"
#include "rz/rect.h"
#include "rz/xform.h"

// How a thing is placed in target space, and how well that is known.
struct rz_EnclosePlacement {
  const rzXform<2>& pose;         // client from the thing's coordinates
  const rzXform<2>& originXform;  // the frame about whose origin angle and scale are uncertain
  const rzXform<2>& targetXform;  // client from target coordinates
  double translationUncertainty;
  const rzRadian& rotationUncertainty;
  double scaleUncertainty;
};

// Throws rzOCDefs::BadParams for an uncertainty that is negative or NaN.
void rf_CheckUncertainties(const rz_EnclosePlacement& placement);

// The corners ul, ur, lr, ll.
rzPolygon rf_CornersOf(const rzPelRect& rect);
rzPolygon rf_CornersOf(const rzRect& rect);

// The rectangle that a polygon, given in the frame of `placement.originXform`, can reach.
rzRect rf_ReachOf(const rzPolygon& polygonInOriginFrame, const rz_EnclosePlacement& placement);

// The rectangle that holds all placed rectangles; the default one when there were none.
class rz_EncloseUnion {
 public:
  // `placement` refers to values that must outlive this object.
  explicit rz_EncloseUnion(const rz_EnclosePlacement& placement) : placement_(placement) {}
  void add(const rzRect& rect);
  rzRect result() const { return joined_.value_or(rzRect()); }

 private:
  rz_EnclosePlacement placement_;
  std::optional<rzRect> joined_;
};
