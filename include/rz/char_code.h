// SPDX-License-Identifier: Apache-2.0
//
// rzCharCode: questions about a character code of 32 bits, as the keys of characters hold it.
//
// A code is a Unicode code point, or a byte from 0x80 widened with its sign (0xFFFFFF80 to
// 0xFFFFFFFF), or 0xF800, which stands for "unknown" and can be represented as nothing.
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"
#include "rz/types.h"

class RZ_API rzCharCodeDefs {
 public:
  /// The code for "unknown".
  static constexpr rzULong kUnknown = 0xF800;
  class NotRepresentable;
};

/// A code or a string has no form in the type asked for.
class RZ_API rzCharCodeDefs::NotRepresentable : public rzExceptionWithString {
 public:
  explicit NotRepresentable(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(NotRepresentable)
};

class RZ_API rzCharCode {
 public:
  using TChar = char;

  /// Read as a signed number the code lies in -128 to 255.
  static bool isRepresentableAsChar(rzULong code) noexcept;
  static bool isRepresentableAsTChar(rzULong code) noexcept;
  /// The code is a Unicode code point: at most 0x10FFFF.
  static bool isRepresentableAsWChar(rzULong code) noexcept;
  /// Unicode white space.
  static bool isSpace(rzULong code) noexcept;

  /// The low byte; throws rzCharCodeDefs::NotRepresentable.
  static char getAsChar(rzULong code);
  static TChar getAsTChar(rzULong code);
  /// The code; throws rzCharCodeDefs::NotRepresentable.
  static wchar_t getAsWChar(rzULong code);
};
