// SPDX-License-Identifier: Apache-2.0
#include "rz/thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "rz/attention.h"
#include "rz/math_error.h"
#include "rz/timeout.h"

namespace {

void increment(void* counter) { ++*static_cast<std::atomic<int>*>(counter); }

void incrementLate(void* counter) {
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  increment(counter);
}

void throwFoundation(void*) { throw rzMathError::Singular("dropped"); }
void throwForeign(void*) { throw std::runtime_error("kept"); }

enum Seen { eNothing, eExpired, eInternalExpired };

void lookOnce(void* seen) {
  auto& result = *static_cast<Seen*>(seen);
  try {
    rzAttention::check();
    result = eNothing;
  } catch (const rzTimeout::Expired&) {
    result = eExpired;
  } catch (const rzTimeout::InternalExpired&) {
    result = eInternalExpired;
  }
}

Seen seenByNewThread() {
  Seen seen = eNothing;
  rzThreadID id = rfCreateThreadKit(&lookOnce, &seen, -1, -1);
  rfWaitForThreadTermination(id);
  return seen;
}

}  // namespace

TEST(Thread, WaitingDestructorAndReassignmentSeeTheWorkDone) {
  std::atomic<int> counter = 0;
  {
    rzThreadID id = rfCreateThreadKit(&incrementLate, &counter, -1, -1);
    rfWaitForThreadTermination(id);
    rfWaitForThreadTermination(id);
    EXPECT_EQ(counter, 1);
    id = rfCreateThreadKit(&incrementLate, &counter, -1, -1);
    id = rfCreateThreadKit(&incrementLate, &counter, -1, -1);
    EXPECT_GE(counter, 2);
  }
  EXPECT_EQ(counter, 3);
}

TEST(Thread, OwnExceptionsEndTheThreadOthersComeBack) {
  rzThreadID own = rfCreateThreadKit(&throwFoundation, nullptr, -1, -1);
  EXPECT_NO_THROW(rfWaitForThreadTermination(own));
  rzThreadID foreign = rfCreateThreadKit(&throwForeign, nullptr, -1, -1);
  EXPECT_THROW(rfWaitForThreadTermination(foreign), std::runtime_error);
  const rzThreadID unasked = rfCreateThreadKit(&throwForeign, nullptr, -1, -1);
}

TEST(Thread, InheritsScopesButNotTags) {
  rzAttentionTag tag(true);
  tag.attachTimeoutCustom(0.0, 1);
  EXPECT_EQ(seenByNewThread(), eNothing);
  rzAttentionSource source;
  const rzAttentionScope scope(source);
  EXPECT_EQ(seenByNewThread(), eNothing);
  source.requestStop();
  EXPECT_EQ(seenByNewThread(), eExpired);
}
