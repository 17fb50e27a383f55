// SPDX-License-Identifier: Apache-2.0
//
// The attention scopes of a thread as plain data, so that a new thread can inherit them.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <vector>

/// A flag of a source or a deadline.
struct AttentionEntry {
  std::shared_ptr<const std::atomic<bool>> stop;
  std::chrono::steady_clock::time_point deadline = std::chrono::steady_clock::time_point::max();
};

/// The scopes of this thread, outermost first.
std::vector<AttentionEntry>& attentionScopes();
