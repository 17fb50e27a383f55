// SPDX-License-Identifier: Apache-2.0
//
// Memory for what a picture of many pels needs.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

namespace finder {

/// Memory of `size` bytes, not initialised. Where the system has large pages and the memory fills
/// many of them, it asks for these: touching and giving back small ones takes as much time as the
/// work itself. Throws std::bad_alloc.
void* allocateLarge(std::size_t size);
void releaseLarge(void* memory, std::size_t size) noexcept;

template <class T>
struct LargeDelete {
  std::size_t size = 0;  // bytes

  void operator()(T* memory) const noexcept { releaseLarge(memory, size); }
};

/// An array of trivial elements.
template <class T>
using LargeArray = std::unique_ptr<T[], LargeDelete<T>>;

template <class T>
LargeArray<T> makeLargeArray(std::size_t count) {
  static_assert(std::is_trivially_destructible_v<T>);
  const std::size_t size = count * sizeof(T);
  return LargeArray<T>(static_cast<T*>(allocateLarge(size)), LargeDelete<T>{size});
}

}  // namespace finder
