// SPDX-License-Identifier: Apache-2.0
//
// rzRepBase: what an object needs to be shared through rzPtrHandle and rzPtrHandle_const.
//
// The count is part of the object and atomic, so handles to one object may be copied and released
// on several threads. It counts handles, not values: a copy of an object starts with none, and
// assignment leaves both counts as they are. It may be a virtual base.
#pragma once

#include <atomic>

#include "rz/export.h"
#include "rz/types.h"

class RZ_API rzRepBase {
 public:
  rzRepBase() noexcept = default;
  rzRepBase(const rzRepBase&) noexcept {}
  rzRepBase& operator=(const rzRepBase&) noexcept { return *this; }
  virtual ~rzRepBase();

  /// How many handles hold this object.
  rzLong refCount() const noexcept { return count_.load(std::memory_order_acquire); }

  /// For handles: one holder more.
  void addRef() const noexcept { count_.fetch_add(1, std::memory_order_relaxed); }

  /// For handles: one holder less; the last one deletes the object.
  void releaseRef() const noexcept {
    if (count_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }

 private:
  mutable std::atomic<rzLong> count_{0};
};
