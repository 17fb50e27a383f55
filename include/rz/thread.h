// SPDX-License-Identifier: Apache-2.0
//
// Starting a thread and waiting for its end.
#pragma once

#include <memory>

#include "rz/export.h"
#include "rz/types.h"

/// The place of one thread, empty by default. Its destructor waits for the thread.
class RZ_API rzThreadID {
 public:
  rzThreadID() noexcept;
  rzThreadID(rzThreadID&&) noexcept;
  rzThreadID& operator=(rzThreadID&&) noexcept;
  ~rzThreadID();

 private:
  struct Running;
  friend RZ_API rzThreadID rfCreateThreadKit(void (*entry)(void*), void* argument, rzLong priority,
                                             rzLong last);
  friend RZ_API void rfWaitForThreadTermination(rzThreadID& id);
  std::unique_ptr<Running> running_;
};

/// Calls `entry(argument)` on a new thread, which starts with the attention scopes of this one. An
/// rzException that leaves `entry` ends the thread and is dropped. `priority` and `last` are -1
/// for the system's choice, the only one there is.
RZ_API rzThreadID rfCreateThreadKit(void (*entry)(void*), void* argument, rzLong priority,
                                    rzLong last);

/// Waits for the thread and empties `id`; throws on what left its entry, unless that was an
/// rzException. Does nothing when `id` is empty.
RZ_API void rfWaitForThreadTermination(rzThreadID& id);
