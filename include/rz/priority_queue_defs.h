// SPDX-License-Identifier: Apache-2.0
//
// rz_PriorityQueueDefs: failures of priority queues.
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"

class RZ_API rz_PriorityQueueDefs {
 public:
  class EmptyQueue;
  class BadHandle;
};

/// The queue has no first item.
class RZ_API rz_PriorityQueueDefs::EmptyQueue : public rzExceptionWithString {
 public:
  explicit EmptyQueue(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(EmptyQueue)
};

/// The handle names no item of the queue.
class RZ_API rz_PriorityQueueDefs::BadHandle : public rzExceptionWithString {
 public:
  explicit BadHandle(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(BadHandle)
};
