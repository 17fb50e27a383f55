// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/large_array.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace finder {

namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;
constexpr std::size_t kFewestPages = 8;  // below it the allocator's own habits are better

std::align_val_t alignmentOf(std::size_t size) {
  return std::align_val_t{size < kFewestPages * kLargePage ? 64 : kLargePage};
}

}  // namespace

void* allocateLarge(std::size_t size) {
  const std::align_val_t alignment = alignmentOf(size);
  void* memory = ::operator new(size, alignment);
#if defined(__linux__)
  // Only advice: whether it is taken changes nothing but the time.
  if (alignment == std::align_val_t{kLargePage}) madvise(memory, size, MADV_HUGEPAGE);
#endif
  return memory;
}

void releaseLarge(void* memory, std::size_t size) noexcept {
  ::operator delete(memory, alignmentOf(size));
}

}  // namespace finder
