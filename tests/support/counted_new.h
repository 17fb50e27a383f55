// SPDX-License-Identifier: Apache-2.0
//
// Replaces the allocation functions of a program, so that the bytes that are in use can be counted.
// To be included by one file of the program.
#pragma once

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace counted_new {

inline std::size_t live = 0;  // bytes in use
inline std::size_t peak = 0;  // most of them since the last start()

inline void start() { peak = live; }

inline void* allocate(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) {
  const std::size_t rounded =
      (std::max<std::size_t>(size, 1) + alignment - 1) / alignment * alignment;
  void* block = std::aligned_alloc(alignment, rounded);
  if (!block) throw std::bad_alloc();
  live += malloc_usable_size(block);
  peak = std::max(peak, live);
  return block;
}

inline void giveBack(void* block) noexcept {
  live -= malloc_usable_size(block);
  std::free(block);
}

}  // namespace counted_new

void* operator new(std::size_t size) { return counted_new::allocate(size); }
void* operator new[](std::size_t size) { return counted_new::allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return counted_new::allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block, std::align_val_t) noexcept { counted_new::giveBack(block); }
void operator delete(void* block) noexcept { counted_new::giveBack(block); }
void operator delete[](void* block) noexcept { counted_new::giveBack(block); }
void operator delete(void* block, std::size_t) noexcept { counted_new::giveBack(block); }
void operator delete[](void* block, std::size_t) noexcept { counted_new::giveBack(block); }
