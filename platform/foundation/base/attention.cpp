// SPDX-License-Identifier: Apache-2.0
#include "rz/attention.h"

#include <algorithm>

#include "platform/foundation/base/attention_scopes.h"
#include "rz/timeout.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kForever = 1e9;  // seconds, some thirty years; nanoseconds still fit 64 bits

thread_local rzAttentionTag* innermostTag = nullptr;

Clock::time_point deadlineAfter(double seconds) {
  if (!(seconds > 0.0)) return Clock::time_point::min();
  if (seconds > kForever) return Clock::time_point::max();
  return Clock::now() +
         std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

bool hasPassed(Clock::time_point deadline) {
  if (deadline == Clock::time_point::max()) return false;
  return deadline == Clock::time_point::min() || Clock::now() >= deadline;
}

}  // namespace

std::vector<AttentionEntry>& attentionScopes() {
  thread_local std::vector<AttentionEntry> scopes;
  return scopes;
}

void rzAttention::check() {
  auto nearest = Clock::time_point::max();
  for (const AttentionEntry& scope : attentionScopes()) {
    if (scope.stop && scope.stop->load(std::memory_order_relaxed))
      throw rzTimeout::Expired("Stop requested");
    nearest = std::min(nearest, scope.deadline);
  }
  if (hasPassed(nearest)) throw rzTimeout::Expired("Time limit expired");
  const rzAttentionTag* tag = innermostTag;
  if (tag && tag->active_ && hasPassed(tag->deadline_))
    throw rzTimeout::InternalExpired("Time limit of the tool expired", tag->code_);
}

rzAttentionScope::rzAttentionScope(const rzAttentionSource& source) {
  attentionScopes().push_back({source.stop_});
}

rzAttentionScope::~rzAttentionScope() { attentionScopes().pop_back(); }

rzTimeoutScope::rzTimeoutScope(double seconds) {
  attentionScopes().push_back({nullptr, deadlineAfter(seconds)});
}

rzTimeoutScope::~rzTimeoutScope() { attentionScopes().pop_back(); }

rzAttentionTag::rzAttentionTag(bool active) : active_(active), outer_(innermostTag) {
  innermostTag = this;
}

rzAttentionTag::~rzAttentionTag() { innermostTag = outer_; }

void rzAttentionTag::attachTimeoutCustom(double seconds, rzULong code) {
  code_ = code;
  deadline_ = deadlineAfter(seconds);
}
