// SPDX-License-Identifier: Apache-2.0
//
// rz_OCExtractDefs: the enumeration and the exception of character extraction.
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"
#include "rz/types.h"

class rz_OCExtractDefs {
 public:
  /// How a character looks after a turn.
  enum Symmetry : rzLong {
    eNoSymmetry = 0,        ///< Each turn shows.
    eRot180Symmetry = 1,    ///< A half turn leaves it as it is: "8", "H".
    eAnyAngleSymmetry = 2,  ///< No turn shows: "o", ".".
  };

  class rz_OCExtractError;
};

/// Character extraction cannot do what was asked (0x10007402). Callers of the library see it as an
/// rzExceptionWithString.
class rz_OCExtractDefs::rz_OCExtractError : public rzExceptionWithString {
 public:
  explicit rz_OCExtractError(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(rz_OCExtractError)
};
