// SPDX-License-Identifier: Apache-2.0
//
// rzMathError: failures of numeric functions.
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"

class RZ_API rzMathError {
 public:
  class Singular;
  class Overflow;
};

/// The equations have no single solution: a matrix without inverse, points that fix no line.
class RZ_API rzMathError::Singular : public rzExceptionWithString {
 public:
  explicit Singular(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(Singular)
};

/// The result is not a number or lies outside the range of its type.
class RZ_API rzMathError::Overflow : public rzExceptionWithString {
 public:
  explicit Overflow(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(Overflow)
};
