// SPDX-License-Identifier: Apache-2.0
//
// Looking at a part of an image that may reach over its edge: sampling it together with a mask that
// tells which samples are real, and telling how much it shows. Alphabet compilation uses both.
//
// Masks count from 128; an unbound mask stands for none. Rectangles of images are in pel
// coordinates, where a pel in column x and row y covers [x, x + 1) by [y, y + 1). The functions
// keep no state and may run at once on different images.
#pragma once

#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"
#include "rz/sampling.h"
#include "rz/xform.h"

/// Samples `image`, and `mask`, which has its window, into new buffers. Where all samples lie
/// inside, both are sampled alike, and `outMask` stays as it is when there is no mask. Otherwise
/// the image is continued by its median grey and the mask by 0, in place of an unbound mask 255 is
/// taken over the image, and the mask is sampled bilinearly whatever `params` ask for the image.
RZ_API void rfAffineTransformWithClipping(const rzPelBuffer_const<unsigned char>& image,
                                          const rzPelBuffer_const<unsigned char>& mask,
                                          const rzAffineSamplingParams& params,
                                          rzPelBuffer<unsigned char>& outImage,
                                          rzPelBuffer<unsigned char>& outMask);

/// How little `image` shows in a region: the mean of the absolute correlations, in thousandths,
/// that the region has with itself at shifts of up to 2 pels. 0 for a region that is flat, 1 for
/// one in which nothing counts; otherwise strokes give hundreds.
///
/// The region is `area` of a model, in the pel coordinates of `modelImage` and `modelMask`, placed
/// by `pose` (client coordinates of `image` from those of the model) and sampled once for each of
/// its pels. Unbound model buffers have the identity as client transform. Throws rzPel::BadWindow
/// for an area of 4 pels or less on a side, or outside a bound `modelMask`.
RZ_API double rfScoreBlankness(const rzPelBuffer_const<unsigned char>& image,
                               const rzPelBuffer_const<unsigned char>& mask, const rzXform<2>& pose,
                               const rzPelBuffer_const<unsigned char>& modelImage,
                               const rzPelRect& area,
                               const rzPelBuffer_const<unsigned char>& modelMask);
