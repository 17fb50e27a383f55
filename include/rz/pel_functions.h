// SPDX-License-Identifier: Apache-2.0
//
// Functions over all pels of a window: making, copying, filling, mapping, comparing, counting.
//
// Each looks at the window of its buffers and nothing else, throws rzPel::UnboundWindow for an
// unbound buffer where nothing else is said, and leaves its arguments alone where it throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"

/// A new buffer at (0, 0) with a copy of foreign pels: the first thing to call with a picture that
/// was read from a file or a camera. `rowStep` is the step from row to row in elements; it may be
/// negative for pictures that are stored from the bottom up, `pels` is the first pel of the upper
/// row in any case. Throws rzPel::BadSize when `pels` is null, when there are none or more than
/// 2^31 - 1, and when the step is smaller than a row. To avoid the copy see
/// rzPelBuffer_const::borrow.
RZ_API rzPelBuffer<unsigned char> rfPelBufferFromPels(const unsigned char* pels, rzLong width,
                                                      rzLong height, std::ptrdiff_t rowStep);

/// A new buffer that shares nothing: root and window are the window of `src`, with the same pel
/// numbers and, to the last bit, the same transforms.
RZ_API rzPelBuffer<unsigned char> rfPelCopy(const rzPelBuffer_const<unsigned char>& src);
RZ_API rzPelBuffer<std::int16_t> rfPelCopy(const rzPelBuffer_const<std::int16_t>& src);

/// Copies the pels that both windows have, by their numbers. The transforms of `dst` stay. An
/// unbound `dst` becomes a copy as above.
RZ_API void rfPelCopy(const rzPelBuffer_const<unsigned char>& src, rzPelBuffer<unsigned char>& dst);
RZ_API void rfPelCopy(const rzPelBuffer_const<std::int16_t>& src, rzPelBuffer<std::int16_t>& dst);

/// Fills the window.
RZ_API void rfPelSet(const rzPelBuffer<unsigned char>& buffer, unsigned char value);
RZ_API void rfPelSet(const rzPelBuffer<std::int16_t>& buffer, std::int16_t value);

/// A copy as by rfPelCopy in which each pel v is table[v].
RZ_API rzPelBuffer<unsigned char> rfPelMap(const rzPelBuffer_const<unsigned char>& src,
                                           std::span<const unsigned char, 256> table);

/// A copy of `a` in which each pel is the smaller one of the two, paired from the upper left
/// corners of the windows whatever their numbers. Throws rzPel::BadWindow when the sizes differ.
RZ_API rzPelBuffer<unsigned char> rfPelMin(const rzPelBuffer_const<unsigned char>& a,
                                           const rzPelBuffer_const<unsigned char>& b);

/// Smallest and greatest value. Throw rzPel::BadWindow when the window shows nothing.
RZ_API unsigned char rfPelMin(const rzPelBuffer_const<unsigned char>& buffer);
RZ_API unsigned char rfPelMax(const rzPelBuffer_const<unsigned char>& buffer);

/// The windows are equal, place and size, and so are all pels. Transforms do not count.
RZ_API bool rfPelEqual(const rzPelBuffer_const<unsigned char>& a,
                       const rzPelBuffer_const<unsigned char>& b);

/// How often each of the 256 values occurs.
RZ_API std::vector<rzLong> rfPelHistogram(const rzPelBuffer_const<unsigned char>& buffer);
