// SPDX-License-Identifier: Apache-2.0
//
// rf_OCBackgroundPadImage: paints the margin of a picture, which is its window outside a given
// rectangle, with a background that continues the rectangle's own edge pels, smoothed along the
// edge by a median filter. rf_OCWindowMaskCareRegion: reduces a mask to what it says.
//
// The image must be bound, else rzPel::UnboundWindow, and its window must contain the rectangle,
// else rzPel::BadWindow; nothing is continued from a null rectangle. A mask may be unbound; its
// pels of `careThreshold` or more are care pels. Rectangles are in pel coordinates: the pel in
// column x and row y covers [x, x + 1) by [y, y + 1).
#pragma once

#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"

/// Pads in place. The pels within `area` stay as they are.
RZ_API void rf_OCBackgroundPadImage(const rzPelBuffer<unsigned char>& image, const rzPelRect& area);
/// Replaces the buffer by a padded copy; other views of the old pels see no change.
RZ_API void rf_OCBackgroundPadImage(rzPelBuffer_const<unsigned char>& image, const rzPelRect& area);

/// Reduces the mask to its care region, and pads image and, where it is still needed, mask round
/// the common part of that region and `area`. Without a care pel `careFound` is false, the mask
/// becomes unbound and the image stays as it was. An unbound mask cares for everything.
RZ_API void rf_OCBackgroundPadImage(rzPelBuffer<unsigned char>& image,
                                    rzPelBuffer<unsigned char>& mask, unsigned char careThreshold,
                                    const rzPelRect& area, bool& careFound);
RZ_API void rf_OCBackgroundPadImage(rzPelBuffer_const<unsigned char>& image,
                                    rzPelBuffer_const<unsigned char>& mask,
                                    unsigned char careThreshold, const rzPelRect& area,
                                    bool& careFound);

/// The smallest rectangle that holds the mask's care pels. The mask is windowed to it, or becomes
/// unbound when every pel of the rectangle is a care pel. Without a care pel `careFound` is false,
/// the mask becomes unbound and the answer is the null rectangle; for an unbound mask it is true
/// and the answer is null as well.
RZ_API rzPelRect rf_OCWindowMaskCareRegion(rzPelBuffer_const<unsigned char>& mask,
                                           unsigned char careThreshold, bool& careFound);
