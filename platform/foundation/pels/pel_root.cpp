// SPDX-License-Identifier: Apache-2.0
#include <bit>
#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include "platform/foundation/pels/pel_size.h"
#include "rz/pel_buffer.h"

namespace {

constexpr rzLong kLargestAlign = 4096;  // a page; more would only waste memory

std::int64_t roundedUp(std::int64_t bytes, rzLong align) {
  return (bytes + align - 1) / align * align;
}

std::shared_ptr<unsigned char> zeroedBytes(std::int64_t size, rzLong align) {
  const auto alignment = static_cast<std::align_val_t>(align);
  const auto count = static_cast<std::size_t>(size);
  std::shared_ptr<unsigned char> bytes(
      static_cast<unsigned char*>(::operator new(count, alignment)),
      [alignment](unsigned char* block) { ::operator delete(block, alignment); });
  std::memset(bytes.get(), 0, count);
  return bytes;
}

}  // namespace

rz_PelRoot::rz_PelRoot(rzLong width, rzLong height, rzLong bytesPerPel, rzLong align)
    : width_(width), height_(height), bytesPerPel_(bytesPerPel), rowBytes_(0), pels_(nullptr) {
  if (!isPelSize(width, height)) throw rzPel::BadSize("Pel buffer without pels or too large");
  const bool isPower = align > 0 && std::has_single_bit(static_cast<rzULong>(align));
  if (!isPower || align > kLargestAlign) throw rzPel::BadSize("Bad alignment of a pel buffer");
  const rzLong rowAlign = align < bytesPerPel ? bytesPerPel : align;
  rowBytes_ = roundedUp(std::int64_t{width} * bytesPerPel, rowAlign);
  const std::shared_ptr<unsigned char> bytes = zeroedBytes(rowBytes_ * height, rowAlign);
  pels_ = bytes.get();
  owner_ = bytes;
}

rz_PelRoot::rz_PelRoot(const void* pels, rzLong width, rzLong height, rzLong bytesPerPel,
                       std::int64_t rowBytes, std::shared_ptr<const void> owner)
    : width_(width),
      height_(height),
      bytesPerPel_(bytesPerPel),
      rowBytes_(rowBytes),
      // Only views for reading are made of foreign pels.
      pels_(static_cast<unsigned char*>(const_cast<void*>(pels))),
      owner_(std::move(owner)) {
  if (!pels || !isPelSize(width, height) || rowBytes < std::int64_t{width} * bytesPerPel) {
    throw rzPel::BadSize("No pels, too many, or rows that overlap");
  }
}
