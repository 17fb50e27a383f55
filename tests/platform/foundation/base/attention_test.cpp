// SPDX-License-Identifier: Apache-2.0
#include "rz/attention.h"

#include <gtest/gtest.h>

#include <limits>
#include <thread>

#include "rz/timeout.h"
#include "rz/timer.h"

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void waitUntilExpired() {
  for (;;) rzAttention::check();
}

rzULong codeOfCheck() {
  try {
    rzAttention::check();
  } catch (const rzTimeout::InternalExpired& expired) {
    return expired.code();
  }
  return 0;
}

}  // namespace

TEST(Attention, RequestedStopThrowsAtEachLookUntilCleared) {
  rzAttentionSource source;
  {
    const rzAttentionScope scope(source);
    EXPECT_NO_THROW(rzAttention::check());
    source.requestStop();
    EXPECT_THROW(rzAttention::check(), rzTimeout::Expired);
    EXPECT_THROW(rzAttention::check(), rzTimeout::Expired);
    source.clear();
    EXPECT_NO_THROW(rzAttention::check());
    source.requestStop();
  }
  EXPECT_NO_THROW(rzAttention::check()) << "the scope has ended";
}

TEST(Attention, StopFromAnotherThreadPassesThroughInnerScopes) {
  rzAttentionSource outer;
  rzAttentionSource inner;
  const rzAttentionScope outerScope(outer);
  const rzTimeoutScope deadline(1e6);
  const rzAttentionScope innerScope(inner);
  std::thread other([&outer] { outer.requestStop(); });
  EXPECT_THROW(waitUntilExpired(), rzTimeout::Expired);
  other.join();
}

TEST(Attention, LimitsThatHavePassedAndLimitsThatNeverPass) {
  for (const double seconds : {0.0, -1.0, -kInf, kNaN}) {
    const rzTimeoutScope scope(seconds);
    EXPECT_THROW(rzAttention::check(), rzTimeout::Expired) << seconds;
  }
  for (const double seconds : {0.0, -0.0, -1.0, kNaN}) {
    rzAttentionTag tag(true);
    tag.attachTimeoutCustom(seconds, 7);
    EXPECT_THROW(rzAttention::check(), rzTimeout::InternalExpired) << seconds;
  }
  for (const double seconds : {3600.0, 1e9, 1e300, kInf}) {
    const rzTimeoutScope scope(seconds);
    rzAttentionTag tag(true);
    tag.attachTimeoutCustom(seconds, 7);
    EXPECT_NO_THROW(rzAttention::check()) << seconds;
  }
}

TEST(Attention, ShortLimitPassesInItsTimeInSeconds) {
  const rzTimer timer(true);
  rzAttentionTag tag(true);
  tag.attachTimeoutCustom(0.02, 7);
  EXPECT_THROW(waitUntilExpired(), rzTimeout::InternalExpired);
  EXPECT_GE(timer.msec(), 20.0);
}

TEST(Attention, InnermostTagAloneCountsAfterTheStopOfTheWork) {
  rzAttentionTag outer(true);
  outer.attachTimeoutCustom(0.0, 0x80000064);
  {
    rzAttentionTag inner(true);
    EXPECT_EQ(codeOfCheck(), 0u);
    inner.attachTimeoutCustom(0.0, 5);
    EXPECT_EQ(codeOfCheck(), 5u);
    rzAttentionTag idle(false);
    idle.attachTimeoutCustom(0.0, 6);
    EXPECT_EQ(codeOfCheck(), 0u) << "a tag that is not active never stops";
  }
  EXPECT_EQ(codeOfCheck(), 0x80000064u);
  const rzTimeoutScope scope(0.0);
  EXPECT_THROW(rzAttention::check(), rzTimeout::Expired) << "the work's stop comes first";
}
