// SPDX-License-Identifier: Apache-2.0
//
// The two sides of rimg_imageConst: plain C records outside, pel buffers inside.
#pragma once

#include <atomic>
#include <cstdint>
#include <new>

#include "rz/charlib/image.h"
#include "rz/pel_buffer.h"

/// The wrapped buffer whole, so that root, window and client transforms survive the passage through
/// a record; counted by the images that refer to it.
struct rimg_block {
  explicit rimg_block(const rzPelBuffer_const<unsigned char>& wrapped) : buffer(wrapped) {}

  std::atomic<std::int32_t> references = 1;
  rzPelBuffer_const<unsigned char> buffer;
};

/// Constructs an image of `buffer` in raw memory, without copying pels. Throws std::bad_alloc.
void constructImage(rimg_imageConst& image, const rzPelBuffer_const<unsigned char>& buffer);

/// Runs what may throw, for callers that cannot: 0, or the code of the failure.
template <class Action>
rsys_result resultOf(Action action) noexcept {
  try {
    action();
    return RSYS_SUCCESS;
  } catch (const std::bad_alloc&) {
    return RSYS_NO_MEMORY;
  } catch (...) {
    return RSYS_BAD_ARGUMENT;
  }
}
