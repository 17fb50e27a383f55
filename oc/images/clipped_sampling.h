// SPDX-License-Identifier: Apache-2.0
//
// The steps of rfAffineTransformWithClipping.
#pragma once

#include "oc/image_helpers.h"

/// Row alignment in bytes of every working buffer.
inline constexpr rzLong kImageAlign = 32;

/// Image and mask on a window that holds `region`: the two themselves if they do, else copies on
/// `region`, the image continued by its median grey, the mask, or 255 over the image, by 0.
void rf_PadForSampling(const rzPelBuffer_const<unsigned char>& image,
                       const rzPelBuffer_const<unsigned char>& mask, const rzPelRect& region,
                       rzPelBuffer_const<unsigned char>& outImage,
                       rzPelBuffer_const<unsigned char>& outMask);
