// SPDX-License-Identifier: Apache-2.0
#include "rz/charlib/fixed_rect.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace {

using testing::ElementsAre;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

TEST(FixedRect, HalvesGoAwayFromZeroAndRangeEndsAreReachedAndNotPassed) {
  const double halves[4] = {0.5, -0.5, 2.49999, -1.5};
  std::int32_t rounded[4];
  ASSERT_EQ(roc_rect32FixedInitFromRectD_(rounded, 0, halves), RSYS_SUCCESS);
  EXPECT_THAT(rounded, ElementsAre(1, -1, 2, -2));
  struct {
    double value;
    std::int32_t bits;
    bool fits;
  } const cases[] = {
      {2147483647.49, 0, true},   {2147483647.5, 0, false}, {-2147483648.0, 0, true},
      {-2147483648.5, 0, false},  {32768.0, 16, false},     {1.0, kHighest, false},
      {1e300, kLowest, true},     {0.0, kHighest, true},    {std::nan(""), 0, false},
      {HUGE_VAL, kLowest, false},
  };
  for (const auto& c : cases) {
    const double rect[4] = {0.0, 0.0, 0.0, c.value};
    std::int32_t fixed[4] = {1, 2, 3, 4};
    const rsys_result result = roc_rect32FixedInitFromRectD_(fixed, c.bits, rect);
    EXPECT_EQ(result, c.fits ? RSYS_SUCCESS : ROC_FIXED_POINT_OVERFLOW) << c.value << c.bits;
    if (!c.fits) {
      EXPECT_THAT(fixed, ElementsAre(1, 2, 3, 4));
    }
  }
}

TEST(FixedRect, ReverseRefusesWhatIsBeyondAllNumbers) {
  const std::int32_t fixed[4] = {1, -1, 0, kLowest};
  double rect[4] = {5.0, 6.0, 7.0, 8.0};
  for (const std::int32_t bits : {-1023, kLowest}) {
    EXPECT_EQ(roc_rectDInitFromRect32Fixed_(rect, fixed, bits), ROC_INTEGER_OVERFLOW) << bits;
    EXPECT_THAT(rect, ElementsAre(5.0, 6.0, 7.0, 8.0));
  }
}

TEST(FixedRect, EveryFixedRectSurvivesTheWayToRealNumbersAndBack) {
  std::mt19937 random(5);
  for (int trial = 0; trial < 10000; ++trial) {
    std::int32_t fixed[4], back[4];
    for (std::int32_t& number : fixed) number = static_cast<std::int32_t>(random());
    const auto bits = static_cast<std::int32_t>(random() % 200) - 100;
    double rect[4];
    ASSERT_EQ(roc_rectDInitFromRect32Fixed_(rect, fixed, bits), RSYS_SUCCESS);
    ASSERT_EQ(roc_rect32FixedInitFromRectD_(back, bits, rect), RSYS_SUCCESS);
    EXPECT_THAT(back, testing::ElementsAreArray(fixed));
  }
}

}  // namespace
