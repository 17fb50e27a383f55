// SPDX-License-Identifier: Apache-2.0
#include "rz/timer.h"

rzTimer::rzTimer(bool startNow) {
  if (startNow) start();
}

void rzTimer::start() {
  if (running_) return;
  running_ = true;
  started_ = Clock::now();
}

void rzTimer::stop() {
  if (!running_) return;
  counted_ += Clock::now() - started_;
  running_ = false;
}

void rzTimer::reset() {
  counted_ = Clock::duration::zero();
  started_ = Clock::now();
}

double rzTimer::msec() const {
  const Clock::duration total = running_ ? counted_ + (Clock::now() - started_) : counted_;
  return std::chrono::duration<double, std::milli>(total).count();
}
