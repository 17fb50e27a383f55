// SPDX-License-Identifier: Apache-2.0
//
// The numbers and strings of the interfaces and archive forms. Keys, counts, indices, flags and
// error numbers are 32 bits wide on every machine, so they are spelled with these names and never
// with a built-in type whose width differs between machines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include "rz/assert.h"

using rzLong = std::int32_t;        ///< Signed, exactly 32 bits.
using rzULong = std::uint32_t;      ///< Unsigned, exactly 32 bits.
using rzString32 = std::u32string;  ///< A string of 32-bit characters.

/// The size of a container as a count. No container here reaches 2^31 elements: readers of foreign
/// bytes check a count before they make room for it.
inline rzLong rf_Count(std::size_t size) {
  rstd_assert_(size <= static_cast<std::size_t>(std::numeric_limits<rzLong>::max()), __LINE__);
  return static_cast<rzLong>(size);
}
