// SPDX-License-Identifier: Apache-2.0
//
// Numbers as text, the same on every machine and in every locale.
#pragma once

#include <string>
#include <type_traits>

#include "rz/export.h"
#include "rz/types.h"

/// "true" or "false".
RZ_API std::string rfStr(bool value);
/// Decimal digits.
RZ_API std::string rfStr(rzLong value);
RZ_API std::string rfStr(rzULong value);
/// As a std::ostream with default settings prints it: six significant digits.
RZ_API std::string rfStr(double value);
/// Other types have to be converted to one of the four.
template <class T>
requires(std::is_arithmetic_v<T> || std::is_enum_v<T>) std::string rfStr(T value)
= delete;

/// Fixed notation with `places` digits behind the point; `dropZeros` removes trailing zeros, and
/// the point when nothing is left behind it.
RZ_API std::string rfDbl(double value, rzLong places, bool dropZeros);

/// "0x" and the bit pattern in upper-case digits, filled with zeros to `digits` digits.
RZ_API std::string rfHex(rzULong value, rzLong digits);
inline std::string rfHex(rzLong value, rzLong digits) {
  return rfHex(static_cast<rzULong>(value), digits);
}
