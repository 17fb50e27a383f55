// SPDX-License-Identifier: Apache-2.0
//
// rf_AffineTransform: a copy of a picture, turned and scaled about the centre of its window and
// just large enough to hold all of it. It enlarges small characters and makes turned templates of
// larger ones. To read an arbitrary parallelogram of a picture use rfAffineTransformImage.
//
// A positive angle turns from the x axis to the y axis, clockwise on a screen. The result keeps the
// client frame of the picture: what is seen has the same client coordinates in both, so seen from
// the client side nothing is turned.
//
// At the border of the window the pels round about are used where the picture has them (its whole
// root counts), up to three of them; where it has none, it is continued by reflection. What lies
// farther out, as in the corners of a turned copy, is 0.
#pragma once

#include "rz/angle.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/sampling.h"

/// Turns and scales `image` into `out`, a new buffer that starts at (0, 0). `image` is bound and
/// its window is not empty; `scale` is positive, and so chosen that both sides of the result are
/// at least 0.5 and less than 32767 pels before rounding. A breach ends the process: it is for the
/// caller to keep such input away.
///
/// Throws rz2XformBase::NotLinear when the client transform of `image` is not linear.
RZ_API void rf_AffineTransform(const rzPelBuffer_const<unsigned char>& image, const rzRadian& angle,
                               double scale, rzPelBuffer<unsigned char>& out,
                               rzAffineSamplingParams::Interpolation interpolation);

/// The same, and turns `mask` with it into `outMask`, whose pels are 0 or 255: a mask value of 127
/// after interpolation ends as 0, one of 128 as 255. Outside the mask's window it is 255. An
/// unbound mask stands for one that is 0 in the window of `image`.
RZ_API void rf_AffineTransform(const rzPelBuffer_const<unsigned char>& image,
                               const rzPelBuffer_const<unsigned char>& mask, const rzRadian& angle,
                               double scale, rzPelBuffer<unsigned char>& out,
                               rzPelBuffer<unsigned char>& outMask,
                               rzAffineSamplingParams::Interpolation interpolation,
                               rzAffineSamplingParams::Interpolation maskInterpolation);
