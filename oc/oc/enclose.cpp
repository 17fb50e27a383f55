// SPDX-License-Identifier: Apache-2.0
#include "oc/oc/enclose.h"

#include <vector>

#include "oc/oc_defs.h"
#include "rz/enclose_rect.h"

namespace {

constexpr rzLong kFillMode = 0;
constexpr rzLong kEncloseFlags = 1;

void requireAtLeastZero(double value, const char* message) {
  if (!(value >= 0.0)) throw rzOCDefs::BadParams(message);
}

template <class Rect>
rzPolygon cornerPolygon(const Rect& rect) {
  return rzPolygon({rzVector<2>(rect.ul()), rzVector<2>(rect.ur()), rzVector<2>(rect.lr()),
                    rzVector<2>(rect.ll())},
                   kFillMode);
}

}  // namespace

void rf_CheckUncertainties(const rz_EnclosePlacement& placement) {
  requireAtLeastZero(placement.translationUncertainty, "Translation uncertainty must be >= 0");
  requireAtLeastZero(placement.rotationUncertainty.toDouble(), "Rotation uncertainty must be >= 0");
  requireAtLeastZero(placement.scaleUncertainty, "Scale uncertainty must be >= 0");
}

rzPolygon rf_CornersOf(const rzPelRect& rect) { return cornerPolygon(rect); }
rzPolygon rf_CornersOf(const rzRect& rect) { return cornerPolygon(rect); }

rzRect rf_ReachOf(const rzPolygon& polygonInOriginFrame, const rz_EnclosePlacement& placement) {
  return rfEncloseRect(polygonInOriginFrame, placement.pose * placement.originXform,
                       placement.targetXform, placement.translationUncertainty,
                       placement.translationUncertainty, placement.rotationUncertainty,
                       placement.scaleUncertainty, 0.0, 0.0, 0.0, kEncloseFlags);
}

void rz_EncloseUnion::add(const rzRect& rect) {
  const rzRect placed =
      rf_ReachOf(rf_CornersOf(rect).map(placement_.originXform.inverse()), placement_);
  joined_ = joined_ ? joined_->enclose(placed) : placed;
}
