// SPDX-License-Identifier: Apache-2.0
//
// rzTimer: a stop watch on the steady clock.
#pragma once

#include <chrono>

#include "rz/export.h"

class RZ_API rzTimer {
 public:
  explicit rzTimer(bool startNow);

  /// Goes on counting from where it stopped; does nothing when it runs.
  void start();
  /// Does nothing when it stands.
  void stop();
  /// Back to 0; a running timer goes on running.
  void reset();
  /// Milliseconds counted so far, also while running.
  double msec() const;

 private:
  using Clock = std::chrono::steady_clock;

  bool running_ = false;
  Clock::time_point started_{};
  Clock::duration counted_{0};
};
