// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "rz/charlib/result.h"

rsys_result rsys_memory_copy(std::size_t length, const void* source, void* destination) {
  if (length == 0) return RSYS_SUCCESS;
  if (!source || !destination) return RSYS_BAD_ARGUMENT;
  std::memcpy(destination, source, length);
  return RSYS_SUCCESS;
}
