// SPDX-License-Identifier: Apache-2.0
//
// rz_CXDefs: the enumerations and the failures of the pattern finder (rz/cx_align.h).
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"
#include "rz/types.h"

class RZ_API rz_CXDefs {
 public:
  /// The degrees of freedom of a pose besides its place, which is always free. Values are bits.
  enum DOF : rzLong {
    eAngle = 1,  ///< degrees, from the x axis towards the y axis
    eScale = 2   ///< size against the trained size
  };

  /// How exactly poses are told. Values are bits; in training they say what to prepare for.
  enum Algorithm : rzLong {
    eCoarse = 1,  ///< grid search
    eFine = 2     ///< grid search, then refinement to a small part of a pel
  };

  class Errors;
  class InternalError;
};

/// The training image holds too few edges to make a pattern of, or the pattern is not trained.
class RZ_API rz_CXDefs::Errors : public rzExceptionWithString {
 public:
  explicit Errors(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(Errors)
};

/// A run failed for a reason inside the finder. Not a kind of Errors: callers treat it apart.
class RZ_API rz_CXDefs::InternalError : public rzExceptionWithString {
 public:
  explicit InternalError(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(InternalError)
};
