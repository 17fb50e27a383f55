// SPDX-License-Identifier: Apache-2.0
//
// Replaces the allocation functions of a test program, so that the n-th allocation can be made to
// fail and what was not given back can be counted. To be included by one file of the program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace failing_new {

inline std::int64_t allocationsLeft = -1;  // how many succeed before one fails; negative: all
inline std::int64_t live = 0;              // blocks that have not been given back

inline void* allocate(std::size_t size, std::size_t alignment) noexcept {
  if (allocationsLeft == 0) return nullptr;
  if (allocationsLeft > 0) --allocationsLeft;
  const std::size_t rounded = (size + alignment) / alignment * alignment;
  void* block = std::aligned_alloc(alignment, rounded);
  if (block) ++live;
  return block;
}

inline void* allocateOrThrow(std::size_t size, std::size_t alignment) {
  if (void* block = allocate(size, alignment)) return block;
  throw std::bad_alloc();
}

inline void giveBack(void* block) noexcept {
  if (block) --live;
  std::free(block);
}

constexpr std::size_t kPlain = alignof(std::max_align_t);

/// Calls `attempt(n)` with the allocation after n fails, for n = 0, 1, ... until it answers true,
/// which says that everything was allocated. Answers how many attempts failed.
template <class Attempt>
int attemptsUntilItSucceeds(Attempt attempt) {
  constexpr int kEnough = 10000;
  for (int n = 0; n < kEnough; ++n) {
    allocationsLeft = n;
    const bool succeeded = attempt();
    allocationsLeft = -1;
    if (succeeded) return n;
  }
  return kEnough;
}

}  // namespace failing_new

void* operator new(std::size_t size) {
  return failing_new::allocateOrThrow(size, failing_new::kPlain);
}
void* operator new[](std::size_t size) {
  return failing_new::allocateOrThrow(size, failing_new::kPlain);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return failing_new::allocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return failing_new::allocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return failing_new::allocate(size, failing_new::kPlain);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return failing_new::allocate(size, failing_new::kPlain);
}
void operator delete(void* block) noexcept { failing_new::giveBack(block); }
void operator delete[](void* block) noexcept { failing_new::giveBack(block); }
void operator delete(void* block, std::size_t) noexcept { failing_new::giveBack(block); }
void operator delete[](void* block, std::size_t) noexcept { failing_new::giveBack(block); }
void operator delete(void* block, std::align_val_t) noexcept { failing_new::giveBack(block); }
void operator delete[](void* block, std::align_val_t) noexcept { failing_new::giveBack(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  failing_new::giveBack(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
  failing_new::giveBack(block);
}
