// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/diagnostic_graphics.h"

#include <algorithm>

namespace {

constexpr rzLong kThinPen = 1;
constexpr rzLong kThickPen = 2;
constexpr rzLong kSolidPen = 0;

rzGraphicProps thin(const rzColor& color) { return {color, kThinPen, kSolidPen, false}; }
rzGraphicProps thick(const rzColor& color) { return {color, kThickPen, kSolidPen, false}; }

}  // namespace

rzAffineRectangle rf_ModelRectangle(const rzPtrHandle_const<rzOCModel>& model) {
  if (model.isNull()) return {};
  return rzAffineRectangle(model->imageArea()).map(model->image().clientFromImageXform());
}

void rf_DrawCharBox(rzGraphicList& list, const rzAffineRectangle& rectangle,
                    const rzXform<2>& xform, rzOCArrangeDefs::CharStatus status) {
  if (status == rzOCArrangeDefs::eUnknown) return;
  const rzColor color =
      status == rzOCArrangeDefs::eMatched ? rzColor::greenColor() : rzColor::orangeColor();
  const double half = 0.5 * std::min(rectangle.xLength(), rectangle.yLength());
  const rzLineSeg tick = rzLineSeg(rzVector<2>(0.0, 0.0), rzVector<2>(half, 0.0)).map(xform);
  list.append(new rzGraphicSimple<rzAffineRectangle>(rectangle.map(xform), thin(color)), true);
  list.append(new rzGraphicSimple<rzLineSeg>(tick, thick(color)), true);
  list.append(new rzGraphicPointIcon(tick.p1(), thin(rzColor::yellowColor())), true);
}

void rf_DrawLineShape(rzGraphicList& list, rzOCArrangeDefs::LineType type,
                      const std::vector<rzLineSeg>& segs, std::size_t& nextSeg,
                      const std::vector<rzEllipseArc2>& arcs, std::size_t& nextArc) {
  const rzGraphicProps red = thick(rzColor::redColor());
  if (type == rzOCArrangeDefs::eStraight) {
    list.append(new rzGraphicSimple<rzLineSeg>(segs[nextSeg++], red), true);
  } else if (type == rzOCArrangeDefs::eCircular) {
    list.append(new rzGraphicSimple<rzEllipseArc2>(arcs[nextArc++], red), true);
  }
}
