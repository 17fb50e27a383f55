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

inline void* allocate(std::size_t size) {
  void* block = std::malloc(std::max<std::size_t>(size, 1));
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
void operator delete(void* block) noexcept { counted_new::giveBack(block); }
void operator delete[](void* block) noexcept { counted_new::giveBack(block); }
void operator delete(void* block, std::size_t) noexcept { counted_new::giveBack(block); }
void operator delete[](void* block, std::size_t) noexcept { counted_new::giveBack(block); }
