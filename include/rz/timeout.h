// SPDX-License-Identifier: Apache-2.0
//
// rzTimeout: what rzAttention::check() throws when the work must stop. The two classes are
// siblings, so that a handler for a tool's own limit lets the stop of the whole work pass.
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"
#include "rz/types.h"

class RZ_API rzTimeout {
 public:
  class Expired;
  class InternalExpired;
};

/// The whole work must stop: a stop was requested or its deadline has passed.
class RZ_API rzTimeout::Expired : public rzExceptionWithString {
 public:
  explicit Expired(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(Expired)
};

/// The limit of the innermost rzAttentionTag has passed; carries the code given with the limit.
class RZ_API rzTimeout::InternalExpired : public rzExceptionWithString {
 public:
  explicit InternalExpired(const std::string& message = {}, rzULong code = 0)
      : rzExceptionWithString(message), code_(code) {}
  rzULong code() const noexcept { return code_; }
  RZ_EXCEPTION_LEAF(InternalExpired)
  rzULong code_ = 0;
};
