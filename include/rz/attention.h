// SPDX-License-Identifier: Apache-2.0
//
// How work is stopped from outside. Work that may last calls rzAttention::check() every few
// milliseconds; it returns, or throws when the work has to stop.
//
// Two kinds of limits act on the thread on which their objects live, from construction to
// destruction, and nest like the blocks that hold them:
//
//   scopes: rzAttentionScope listens to an rzAttentionSource, on which any thread may request the
//     stop; rzTimeoutScope is a deadline. Each enclosing scope can stop the work, with
//     rzTimeout::Expired, again at each look while the reason lasts. A thread made by
//     rfCreateThreadKit starts with the scopes of its creator.
//   tags: rzAttentionTag is a limit for one tool's run, inside the work. The innermost one counts
//     and throws rzTimeout::InternalExpired. Threads do not inherit tags.
//
// Limits are in seconds: 0, a negative number and NaN have passed at the first look, infinity and
// numbers beyond some thirty years never pass.
#pragma once

#include <atomic>
#include <chrono>
#include <memory>

#include "rz/export.h"
#include "rz/types.h"

class RZ_API rzAttention {
 public:
  /// Throws rzTimeout::Expired while an enclosing scope asks for the stop, and then
  /// rzTimeout::InternalExpired when the limit of the innermost tag has passed. Cheap: one flag
  /// for each scope, and one look at the clock when a limit is set.
  static void check();
};

/// Where any thread asks for the stop.
class RZ_API rzAttentionSource {
 public:
  void requestStop() noexcept { *stop_ = true; }
  void clear() noexcept { *stop_ = false; }

 private:
  friend class rzAttentionScope;
  std::shared_ptr<std::atomic<bool>> stop_ = std::make_shared<std::atomic<bool>>(false);
};

/// Binds a source to this thread.
class RZ_API rzAttentionScope {
 public:
  explicit rzAttentionScope(const rzAttentionSource& source);
  rzAttentionScope(const rzAttentionScope&) = delete;
  rzAttentionScope& operator=(const rzAttentionScope&) = delete;
  ~rzAttentionScope();
};

/// A deadline for the work of this thread.
class RZ_API rzTimeoutScope {
 public:
  explicit rzTimeoutScope(double seconds);
  rzTimeoutScope(const rzTimeoutScope&) = delete;
  rzTimeoutScope& operator=(const rzTimeoutScope&) = delete;
  ~rzTimeoutScope();
};

/// A limit for the tools run on this thread while the tag lives. Without a limit attached, or made
/// with `active` false, it never stops them, whatever the tags outside it.
class RZ_API rzAttentionTag {
 public:
  explicit rzAttentionTag(bool active);
  rzAttentionTag(const rzAttentionTag&) = delete;
  rzAttentionTag& operator=(const rzAttentionTag&) = delete;
  ~rzAttentionTag();

  /// The limit counts from now; `code` travels in the exception.
  void attachTimeoutCustom(double seconds, rzULong code);

 private:
  friend class rzAttention;
  bool active_;
  rzULong code_ = 0;
  std::chrono::steady_clock::time_point deadline_ = std::chrono::steady_clock::time_point::max();
  rzAttentionTag* outer_;
};
