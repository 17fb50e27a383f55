// SPDX-License-Identifier: Apache-2.0
//
// Where the mark of a character lies in its image, and where the character's origin lies.
//
// rf_DetectMarkRect_ finds the smallest rectangle that holds the dark or the light strokes within
// an area: the area is divided into dark and light by rfThresholdWGV, and the pels of the mark's
// side are enclosed. When it is not known which side that is, the border of the area votes: what
// most of it shows is background.
//
// `imageArea` is in pel coordinates and must lie in the windows of image and mask, else
// rzPel::BadWindow is thrown. Of a bound mask the pels from 128 are looked at, the others ignored;
// an unbound mask stands for none. Results are in client coordinates, through the image's
// transform, linear or not. Pel coordinates: the pel in column x and row y covers [x, x + 1) by
// [y, y + 1); a single mark pel at (10, 20) gives a rectangle of size 1 by 1 at (10, 20).
#pragma once

#include "oc/oc_defs.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"
#include "rz/rect.h"
#include "rz/vector.h"

/// True when marks were found; `markRect` is then the upright rectangle through the two mapped
/// corners, lower left and upper right, of the mark's pels, and otherwise the default rectangle.
/// False for a blank character, for a picture without marks, and when the polarity stays unknown.
/// Throws rzPel::UnboundWindow for an unbound image of a character that is not blank.
RZ_API bool rf_DetectMarkRect_(const rzPelBuffer_const<unsigned char>& image,
                               const rzPelRect& imageArea,
                               const rzPelBuffer_const<unsigned char>& mask, bool isBlank,
                               rzOCDefs::Polarity polarity, rzRect& markRect);

/// The middle of the area. Always true; the mask is not used.
RZ_API bool rf_computeOriginImageCenter_(const rzPelBuffer_const<unsigned char>& image,
                                         const rzPelRect& imageArea,
                                         const rzPelBuffer_const<unsigned char>& mask,
                                         rzVector<2>& origin);

/// The lower left corner of the area. Always true; the mask is not used.
RZ_API bool rf_computeOriginImageLowerLeft_(const rzPelBuffer_const<unsigned char>& image,
                                            const rzPelRect& imageArea,
                                            const rzPelBuffer_const<unsigned char>& mask,
                                            rzVector<2>& origin);

/// The lower left corner of the detected mark: of `detectedMarkRect` when there is one, else of
/// what rf_DetectMarkRect_ finds. Where there is no mark (image unbound, blank, rectangle empty,
/// nothing found) that of the area. True when the origin comes from a mark.
RZ_API bool rf_computeOriginDetectedMarkLowerLeft_(
    const rzPelBuffer_const<unsigned char>& image, const rzPelRect& imageArea,
    const rzPelBuffer_const<unsigned char>& mask, bool isBlank, bool hasDetectedMarkRect,
    const rzRect& detectedMarkRect, rzOCDefs::Polarity polarity, rzVector<2>& origin);

/// The lower left corner of `markRect` when it is specified, and true; otherwise what the function
/// before gives, and false.
RZ_API bool rf_computeOriginSpecifiedMarkLowerLeft_(
    const rzPelBuffer_const<unsigned char>& image, const rzPelRect& imageArea,
    const rzPelBuffer_const<unsigned char>& mask, bool isBlank, bool isMarkRectSpecified,
    const rzRect& markRect, bool hasDetectedMarkRect, const rzRect& detectedMarkRect,
    rzOCDefs::Polarity polarity, rzVector<2>& origin);
