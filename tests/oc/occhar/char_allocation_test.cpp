// SPDX-License-Identifier: Apache-2.0
//
// Whichever allocation fails in the exchange with C-level records, nothing stays behind and no
// object claims what it does not have.
#include <gmock/gmock.h>

#include <utility>

#include "char_kit.h"
#include "support/failing_new.h"

namespace {

using failing_new::attemptsUntilItSucceeds;
using failing_new::live;

// Calls `action` until no allocation fails, `check` after each call that failed.
template <class Action, class Check>
int failEachAllocation(Action action, Check check) {
  return attemptsUntilItSucceeds([&] {
    try {
      action();
      return true;
    } catch (const std::bad_alloc&) {
    } catch (const rzFailureCode&) {
    }
    failing_new::allocationsLeft = -1;
    check();
    return false;
  });
}

TEST(CharAllocation, FailedGetCharacterLeaksNothingAndClaimsNoCache) {
  const rzOCChar c = kit::filledChar();
  const std::int64_t before = live;
  for (const bool copyImages : {false, true}) {
    const int failed = failEachAllocation(
        [&] {
          roc_char record;
          roc_char_construct(&record);
          try {
            c.getCharacter(record, copyImages);
          } catch (...) {
            EXPECT_EQ(record.binarizedCached, 0);
            roc_char_destruct(&record);
            throw;
          }
          roc_char_destruct(&record);
        },
        [&] { EXPECT_EQ(live, before); });
    EXPECT_GE(failed, copyImages ? 16 : 8);
    EXPECT_EQ(live, before);
  }
}

TEST(CharAllocation, RecordFilledAgainGivesBackWhatItHeld) {
  const rzOCChar c = kit::filledChar();
  const std::int64_t before = live;
  roc_char record;
  roc_char_construct(&record);
  c.getCharacter(record, true);
  const std::int64_t filled = live;
  c.getCharacter(record, true);
  EXPECT_EQ(live, filled);
  roc_char_destruct(&record);
  EXPECT_EQ(live, before);
}

bool claimsACache(const rzOCChar& c) {
  roc_char record;
  roc_char_construct(&record);
  c.getCharacter(record, false);
  const bool claims = record.binarizedCached != 0;
  roc_char_destruct(&record);
  return claims;
}

TEST(CharAllocation, FailedSetCharacterClaimsNeitherCacheNorThreshold) {
  const rzOCChar c = kit::filledChar();
  rzOCChar other = c;
  other.name("no longer a short name");
  roc_char record;
  roc_char_construct(&record);
  c.getCharacter(record, false);
  const std::int64_t before = live;
  for (const bool assigns : {false, true}) {
    rzOCChar target;
    const int failed = failEachAllocation(
        [&] {
          const std::int64_t left = std::exchange(failing_new::allocationsLeft, -1);
          target = rzOCChar(assigns ? c : other);
          failing_new::allocationsLeft = left;
          if (assigns) {
            target = other;
          } else {
            target.setCharacter(record, true);
          }
        },
        [&] { EXPECT_FALSE(target.hasThresholdAndInvert() || claimsACache(target)); });
    EXPECT_GE(failed, assigns ? 1 : 4);
    EXPECT_TRUE(target == (assigns ? other : c));
  }
  EXPECT_EQ(live, before);
  roc_char_destruct(&record);
}

TEST(CharAllocation, FailedNormalizedImageLeaksNothing) {
  const std::int64_t before = live;
  {
    const rzOCChar original = kit::filledChar();
    const kit::Image source = kit::picture({"1999"}, 10, 20);
    const std::int64_t during = live;
    const int failed = failEachAllocation(
        [&] {
          rzOCChar c = original;
          c.normalizedImage(source, true, 100, false, rzPelRect(10, 20, 3, 1));
          c.binarizedImageMarkRect();
        },
        [&] { EXPECT_EQ(live, during); });
    EXPECT_GE(failed, 20);
    EXPECT_EQ(live, during);
  }
  EXPECT_EQ(live, before);
}

}  // namespace
