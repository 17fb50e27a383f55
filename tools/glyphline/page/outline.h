// SPDX-License-Identifier: Apache-2.0
//
// Graphics of any kind as strokes in pel coordinates, which is all that a drawing needs to know.
#pragma once

#include <string>
#include <vector>

#include "rz/graphics.h"
#include "rz/xform_base.h"

namespace glyphline {

struct Outline {
  std::string kind;  // "box", "outline", "line", "arc", "axes" or "point"
  bool isClosed = false;
  bool isFilled = false;
  std::vector<std::vector<rzVector<2>>> strokes;  // the points that each passes through
};

/// The strokes of a graphic after `imageFromShape`, which may bend its sides; null stands for the
/// identity. Without strokes when the graphic is of a kind that is not known here, or when a point
/// of it has no place that could be drawn.
Outline outlineOf(const rzGraphic& graphic, const rz2XformBase* imageFromShape);

}  // namespace glyphline
