// SPDX-License-Identifier: Apache-2.0
//
// The box that a placed polygon can reach when its place, angle and scale are known only within
// limits. It answers questions such as "which part of the picture can this character cover?".
//
// Angles and scales act about the origin of the polygon's own frame, then the polygon is placed,
// then it is shifted. Transform products map right to left.
#pragma once

#include "rz/angle.h"
#include "rz/export.h"
#include "rz/polygon.h"
#include "rz/rect.h"
#include "rz/types.h"
#include "rz/xform.h"

/// The smallest upright rectangle of the target frame that holds every
///
///     targetXform^-1 (composed (f R(a) p) + t)
///
/// with p in the polygon, R(a) the turn by an angle a of at most `rotationUncertainty` either way,
/// f a factor from max(0, 1 - scaleUncertainty) to 1 + scaleUncertainty, and t a shift of at most
/// `xUncertainty` and `yUncertainty` either way. Exact up to rounding; with all uncertainties 0 it
/// is the box of the mapped corners.
///
/// `composed` maps the polygon's frame to client coordinates; `targetXform` gives client
/// coordinates from target coordinates. The shifts are in client units. Uncertainties are at least
/// 0. The three values after the scale uncertainty stand for further kinds of distortion, of which
/// none is modelled: pass 0. `flags` is 1. A polygon without vertices gives the default rectangle.
///
/// Throws rzMathError::Singular when `targetXform` has no inverse.
RZ_API rzRect rfEncloseRect(const rzPolygon& polygon, const rzXform<2>& composed,
                            const rzXform<2>& targetXform, double xUncertainty, double yUncertainty,
                            const rzRadian& rotationUncertainty, double scaleUncertainty,
                            double aspectUncertainty, double skewUncertainty,
                            double warpUncertainty, rzLong flags);
