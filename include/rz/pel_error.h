// SPDX-License-Identifier: Apache-2.0
//
// rzPel: failures of pel buffers.
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"

class RZ_API rzPel {
 public:
  class UnboundWindow;
  class BadWindow;
  class BadSize;
};

/// Pels were asked of a buffer that has none.
class RZ_API rzPel::UnboundWindow : public rzExceptionWithString {
 public:
  explicit UnboundWindow(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(UnboundWindow)
};

/// A rectangle does not fit into the buffer's window.
class RZ_API rzPel::BadWindow : public rzExceptionWithString {
 public:
  explicit BadWindow(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(BadWindow)
};

/// A buffer cannot have this size.
class RZ_API rzPel::BadSize : public rzExceptionWithString {
 public:
  explicit BadSize(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(BadSize)
};
