// SPDX-License-Identifier: Apache-2.0
#include "page/outline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "rz/math_error.h"

namespace glyphline {
namespace {

using Point = rzVector<2>;
using Stroke = std::vector<Point>;

constexpr double kArcError = 0.02;  // of the chords of an arc, in pels; a tenth is never seen
constexpr int kMostChords = 720;
constexpr double kFarthest = 1e9;  // pels; what lies beyond is a fault and not to be drawn
constexpr int kBentSide = 16;      // pieces of a side that is not mapped to a straight one

Outline parallelogram(const char* kind, const Point& a, const Point& b, const Point& d) {
  return {kind, true, false, {{a, b, b + d - a, d}}};
}

Outline outlineOf(const rzAffineRectangle& box) {
  return parallelogram("box", box.cornerPo(), box.cornerPx(), box.cornerPy());
}
Outline outlineOf(const rzGenRect& rect) {
  return parallelogram("outline", rect.ul(), rect.ur(), rect.ll());
}
Outline outlineOf(const rzRect& rect) { return outlineOf(rzGenRect(rect)); }
Outline outlineOf(const rzLineSeg& line) {
  return {"line", false, false, {{line.p1(), line.p2()}}};
}
Outline outlineOf(const rzCoordAxes& axes) {
  return {"axes", false, false, {{axes.xEnd(), axes.origin(), axes.yEnd()}}};
}

// A chord of angle a departs from its circle by r (1 - cos(a / 2)).
int chordsOf(const rzEllipseArc2& arc) {
  const double radius = std::max({std::abs(arc.xRadius()), std::abs(arc.yRadius()), kArcError});
  const double chord = 2.0 * std::acos(1.0 - kArcError / radius);
  const double wanted = std::ceil(std::abs(arc.span().toDouble()) / chord);
  return wanted < kMostChords ? std::max(1, static_cast<int>(wanted)) : kMostChords;
}

Outline outlineOf(const rzEllipseArc2& arc) {
  constexpr double kTurn = 2.0 * std::numbers::pi;
  const double span = std::clamp(arc.span().toDouble(), -kTurn, kTurn);
  const int chords = chordsOf(arc);
  Stroke stroke;
  for (int i = 0; i <= chords; ++i) {
    stroke.push_back(arc.point(arc.start() + rzRadian(span * i / chords)));
  }
  return {"arc", false, false, {stroke}};
}

// Each is true, and `outline` made, when the graphic shows a shape of this type.
template <class Shape>
bool readSimple(const rzGraphic& graphic, Outline& outline) {
  const auto* simple = dynamic_cast<const rzGraphicSimple<Shape>*>(&graphic);
  if (simple != nullptr) outline = outlineOf(simple->shape());
  return simple != nullptr;
}

template <class Shape>
bool readFilled(const rzGraphic& graphic, Outline& outline) {
  const auto* filled = dynamic_cast<const rzGraphicWithFill<Shape, rzGenRect>*>(&graphic);
  if (filled == nullptr) return false;
  outline = outlineOf(filled->general());
  outline.isFilled = filled->isFilled();
  return true;
}

Outline unmapped(const rzGraphic& g) {
  if (const auto* icon = dynamic_cast<const rzGraphicPointIcon*>(&g)) {
    return {"point", false, false, {{icon->point()}}};
  }
  Outline o;
  const bool isKnown = readSimple<rzAffineRectangle>(g, o) || readSimple<rzLineSeg>(g, o) ||
                       readSimple<rzEllipseArc2>(g, o) || readSimple<rzCoordAxes>(g, o) ||
                       readSimple<rzRect>(g, o) || readSimple<rzGenRect>(g, o) ||
                       readFilled<rzRect>(g, o) || readFilled<rzGenRect>(g, o);
  return isKnown ? o : Outline();
}

// Points between the given ones, so that a bent side is seen to be bent.
Stroke subdivided(const Stroke& stroke, bool isClosed) {
  Stroke fine;
  const std::size_t sides = isClosed ? stroke.size() : stroke.size() - 1;
  for (std::size_t i = 0; i < sides; ++i) {
    const Point& from = stroke[i];
    const Point step = (stroke[(i + 1) % stroke.size()] - from) * (1.0 / kBentSide);
    for (int k = 0; k < kBentSide; ++k) fine.push_back(from + step * k);
  }
  if (!isClosed) fine.push_back(stroke.back());
  return fine;
}

Stroke mapped(const Stroke& stroke, bool isClosed, const rz2XformBase& xform) {
  Stroke there = xform.isLinear() ? stroke : subdivided(stroke, isClosed);
  for (Point& p : there) p = xform.mapPoint(p);
  return there;
}

// Also false for what is not a number.
bool isInReach(const Point& p) {
  return std::abs(p.x()) <= kFarthest && std::abs(p.y()) <= kFarthest;
}

bool isInReach(const Outline& outline) {
  return std::all_of(outline.strokes.begin(), outline.strokes.end(), [](const Stroke& stroke) {
    return std::all_of(stroke.begin(), stroke.end(), [](const Point& p) { return isInReach(p); });
  });
}

}  // namespace

Outline outlineOf(const rzGraphic& graphic, const rz2XformBase* imageFromShape) {
  Outline outline = unmapped(graphic);
  try {
    for (Stroke& stroke : outline.strokes) {
      if (imageFromShape != nullptr) stroke = mapped(stroke, outline.isClosed, *imageFromShape);
    }
  } catch (const rzMathError::Singular&) {
    outline.strokes.clear();  // a part of it lies where the picture cannot show it
  }
  if (!isInReach(outline)) outline.strokes.clear();
  return outline;
}

}  // namespace glyphline
