// SPDX-License-Identifier: Apache-2.0
//
// The arranger's records in shapes, all of them in client coordinates: boxes of characters, lines.
#pragma once

#include <cstddef>
#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange_defs.h"
#include "oc/model.h"
#include "rz/affine_rectangle.h"
#include "rz/graphics.h"
#include "rz/ptr_handle.h"
#include "rz/xform.h"

/// The model's image area in its client coordinates; three points at (0, 0) for null.
rzAffineRectangle rf_ModelRectangle(const rzPtrHandle_const<rzOCModel>& model);

/// The box of a character placed by `xform`, with a tick from its origin along its x axis: green
/// when it was matched, orange when it was inferred. Draws nothing when its place is unknown.
void rf_DrawCharBox(rzGraphicList& list, const rzAffineRectangle& rectangle,
                    const rzXform<2>& xform, rzOCArrangeDefs::CharStatus status);

/// The shape of one line of characters, the next one of its kind; `nextSeg` or `nextArc` moves on.
/// A line without a shape draws nothing.
void rf_DrawLineShape(rzGraphicList& list, rzOCArrangeDefs::LineType type,
                      const std::vector<rzLineSeg>& segs, std::size_t& nextSeg,
                      const std::vector<rzEllipseArc2>& arcs, std::size_t& nextArc);
