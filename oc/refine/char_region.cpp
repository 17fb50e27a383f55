// SPDX-License-Identifier: Apache-2.0
#include "oc/refine/char_region.h"

#include <cmath>

#include "oc/extract/turning/affine_transform.h"
#include "rz/ellipse_arc.h"
#include "rz/rect.h"
#include "rz/sampling.h"
#include "rz/xform_linear.h"

namespace {

constexpr double kMarginDegrees = 2.0;        // turned further than the search will turn
constexpr double kRoundingTolerance = 1e-11;  // relative
constexpr rzLong kMostSamples = 32767;        // on a side of a patch

rzPelRect grown(const rzPelRect& window) {
  const rzLong dx = rf_RoundDown(window.width() / 3.0, kRoundingTolerance);
  const rzLong dy = rf_RoundDown(window.height() / 3.0, kRoundingTolerance);
  return window.trim(-dx, -dx, -dy, -dy, false);
}

}  // namespace

bool rf_SampleCharRegion(rzPelBuffer<unsigned char>& region,
                         const rzPelBuffer_const<unsigned char>& image, const rzPelRect& window,
                         const rzXform<2>& clientFromImage, const rzXform<2>& pose,
                         double rotationUncertainty, double scaleUncertainty) {
  region.setUnbound();
  if (window.isNull()) return false;
  rzPelBuffer_const<unsigned char> whole = image;
  whole.setEntire();
  for (const rzPelRect& rect : {grown(window), window}) {
    const rzPelRect swept =
        rf_SweptRect(rect, rzDegree(rotationUncertainty + kMarginDegrees), scaleUncertainty);
    if (swept.width() > kMostSamples || swept.height() > kMostSamples) continue;
    const rzXform<2> placed = pose * clientFromImage;
    const rzAffineSamplingParams sampling(
        rf_MapRect(swept, &placed), static_cast<std::int16_t>(swept.width()),
        static_cast<std::int16_t>(swept.height()), rzAffineSamplingParams::eBilinear);
    if (sampling.willClip(whole)) continue;
    region = rfAffineTransformImage(whole, sampling);
    rf_SetOffset(region, {rect.ul().x(), rect.ul().y()});
    break;
  }
  return region.isBound();
}

rzPelRect rf_SweptRect(const rzPelRect& rect, const rzDegree& rotation, double scaleUncertainty) {
  const rzVector<2> half =
      rzVector<2>(rect.width(), rect.height()) * ((1.0 + scaleUncertainty) * 0.5);
  const double radius = half.len();
  const rzDegree theta = half.angle();
  const rzEllipseArc2 arc(rzVector<2>(), radius, radius, rzRadian(0.0), theta - rotation,
                          rotation * 2.0);
  const rzRect box = arc.encloseRect();
  const rzRect both = box.enclose(rzRect(-box.lr(), box.sz()));
  const rzVector<2> centre = (rzVector<2>(rect.ul()) + rzVector<2>(rect.lr())) * 0.5;
  const rzVector<2> ul = both.ul() + centre;
  const rzVector<2> lr = both.lr() + centre;
  const auto down = [](double value) { return rf_RoundDown(value, kRoundingTolerance); };
  const auto up = [](double value) { return rf_RoundUp(value, kRoundingTolerance); };
  const rzLong x = down(ul.x());
  const rzLong y = down(ul.y());
  return {x, y, up(lr.x()) - x, up(lr.y()) - y};
}

void rf_SetOffset(rzPelBuffer<unsigned char>& buffer, const rzPair<rzLong>& offset) {
  const rzPair<rzLong> old = buffer.offset();
  if (old == offset) return;
  const rzVector<2> delta(offset.x() - old.x(), offset.y() - old.y());
  const auto imageFromClient = buffer.imageFromClientXformBase();
  buffer.offset(offset);
  const rzPtrHandle_const<rz2XformBase> shift(new rz2XformLinear(rzMatrix<2>(), delta));
  buffer.imageFromClientXformBase(shift->composeBase(*imageFromClient), true);
}

rzLong rf_RoundDown(double value, double tolerance) {
  return rfIFloor(value * (1.0 + std::copysign(tolerance, value)));
}

rzLong rf_RoundUp(double value, double tolerance) {
  return rfICeil(value * (1.0 - std::copysign(tolerance, value)));
}
