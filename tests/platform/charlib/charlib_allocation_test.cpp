// SPDX-License-Identifier: Apache-2.0
//
// Whichever allocation fails, each operation answers a code, changes nothing and keeps nothing.
#include <gmock/gmock.h>

#include "platform/charlib/image_block.h"
#include "rz/charlib/char_record.h"
#include "rz/charlib/image_wrap.h"
#include "rz/pel_functions.h"
#include "support/failing_new.h"

namespace {

using failing_new::attemptsUntilItSucceeds;
using failing_new::live;

const std::uint8_t kPels[] = {1, 2, 3, 200, 201, 202};

TEST(CharlibAllocation, FailedStringCopyLeavesThePointer) {
  char* copy = nullptr;
  const std::int64_t before = live;
  EXPECT_EQ(attemptsUntilItSucceeds([&] {
              const rsys_result result = rstd_string_cloneA("character", &copy);
              EXPECT_TRUE(result == RSYS_SUCCESS || (result == RSYS_NO_MEMORY && !copy));
              return result == RSYS_SUCCESS;
            }),
            1);
  rstd_string_releaseA(&copy);
  EXPECT_EQ(live, before);
}

TEST(CharlibAllocation, FailedMarkImageKeepsTheFormerImage) {
  const std::int64_t before = live;
  {
    roc_char record;
    rimg_imageConst mark;
    const std::int32_t area[4] = {0, 0, 3, 2};
    roc_char_construct(&record);
    ASSERT_EQ(rimg_imageConst_constructCopy(&mark, kPels, 3, 0, 0, 3, 2), RSYS_SUCCESS);
    ASSERT_EQ(roc_char_setNormalizedImageThresholdAndInvert8(&record, &mark, 1, 100, 0, area),
              RSYS_SUCCESS);
    record.metrics.specifiedRects = roc_markRect;
    record.metrics.markRect[2] = record.metrics.markRect[3] = 2.0;
    const std::int64_t during = live;
    const std::uint8_t* former = mark.pels;
    const int failed = attemptsUntilItSucceeds([&] {
      const rsys_result result = roc_char_getBinarizedImageMarkRect8(&record, &mark);
      if (result == RSYS_SUCCESS) return true;
      EXPECT_EQ(result, RSYS_NO_MEMORY);
      EXPECT_EQ(mark.pels, former);
      EXPECT_EQ(live, during);
      return false;
    });
    EXPECT_GE(failed, 2);
    EXPECT_EQ(mark.width, 2);
    EXPECT_EQ(mark.pels[mark.rowStep], 255);
    rimg_imageConst_destruct(&mark);
    roc_char_destruct(&record);
  }
  EXPECT_EQ(live, before);
}

}  // namespace
