// SPDX-License-Identifier: Apache-2.0
#include "rz/thread.h"

#include <exception>
#include <thread>
#include <utility>

#include "platform/foundation/base/attention_scopes.h"
#include "rz/exception.h"

struct rzThreadID::Running {
  std::thread thread;
  std::exception_ptr failure;

  ~Running() {
    if (thread.joinable()) thread.join();
  }
};

rzThreadID::rzThreadID() noexcept = default;
rzThreadID::rzThreadID(rzThreadID&&) noexcept = default;
rzThreadID& rzThreadID::operator=(rzThreadID&&) noexcept = default;
rzThreadID::~rzThreadID() = default;

rzThreadID rfCreateThreadKit(void (*entry)(void*), void* argument, rzLong, rzLong) {
  rzThreadID id;
  id.running_ = std::make_unique<rzThreadID::Running>();
  const auto work = [entry, argument, scopes = attentionScopes(),
                     &failure = id.running_->failure]() noexcept {
    try {
      attentionScopes() = scopes;
      entry(argument);
    } catch (const rzException&) {
      // Ends the work of this thread and nothing else.
    } catch (...) {
      failure = std::current_exception();
    }
  };
  id.running_->thread = std::thread(work);
  return id;
}

void rfWaitForThreadTermination(rzThreadID& id) {
  if (!id.running_) return;
  const std::unique_ptr<rzThreadID::Running> running = std::move(id.running_);
  running->thread.join();
  if (running->failure) std::rethrow_exception(running->failure);
}
