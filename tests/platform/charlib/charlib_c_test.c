// SPDX-License-Identifier: Apache-2.0
//
// The C-level character library as a C program sees it.
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include "rz/charlib/char_record.h"
#include "rz/charlib/fixed_rect.h"

static int failures = 0;

static void expect(int holds, const char* claim, int line) {
  if (holds) return;
  fprintf(stderr, "line %d: not true: %s\n", line, claim);
  ++failures;
}

#define EXPECT(claim) expect((claim) ? 1 : 0, #claim, __LINE__)

static int textsEqual(const char* a, const char* b) {
  while (*a != 0 && *a == *b) {
    ++a;
    ++b;
  }
  return *a == *b;
}

static void an_empty_record_is_valid_and_may_end_twice(void) {
  roc_char record;
  EXPECT(roc_char_construct(&record) == RSYS_SUCCESS);
  EXPECT(record.key.characterCode == ROC_UNKNOWN_CODE && record.key.fontID == ROC_UNSPECIFIED);
  EXPECT(record.polarity == roc_polarityUnknown && record.metrics.fixedPointBits == 16);
  EXPECT(record.image.pels == NULL && record.name32 == NULL && record.name == NULL);
  roc_char_destruct(&record);
  roc_char_destruct(&record);
  EXPECT(roc_char_construct(NULL) < 0);
}

static void strings_are_copies(void) {
  const rstd_char32 wide[] = {0x394, 0x1F600, 0};
  char text[] = "Delta";
  roc_char record;
  roc_char_construct(&record);
  EXPECT(rstd_string_cloneA(text, &record.name) == RSYS_SUCCESS);
  EXPECT(rstd_string_clone32(wide, &record.name32) == RSYS_SUCCESS);
  text[0] = 'd';
  EXPECT(textsEqual(record.name, "Delta"));
  EXPECT(record.name32[0] == 0x394 && record.name32[1] == 0x1F600 && record.name32[2] == 0);
  EXPECT(rstd_string_cloneA(NULL, &record.name) < 0);
  roc_char_destruct(&record);
  EXPECT(record.name == NULL && record.name32 == NULL);
}

static void a_mark_is_cut_from_the_binarized_image(void) {
  const uint8_t pels[] = {10,  20,  30,  0,    //
                          200, 128, 127, 0,    //
                          1,   255, 90,  250,  //
                          0,   0,   0,   0};
  const int32_t area[4] = {5, 7, 3, 3};
  roc_char record;
  rimg_imageConst image;
  rimg_imageConst mark;
  roc_char_construct(&record);
  rimg_imageConst_constructUnbound(&mark);
  EXPECT(rimg_imageConst_constructCopy(&image, pels, 4, 5, 7, 3, 3) == RSYS_SUCCESS);
  EXPECT(roc_char_getBinarizedImageMarkRect8(&record, &mark) == ROC_THRESHOLD_NOT_SPECIFIED);
  EXPECT(roc_char_setNormalizedImageThresholdAndInvert8(&record, &image, 1, 128, 0, area) ==
         RSYS_SUCCESS);
  rimg_imageConst_destruct(&image);
  record.metrics.specifiedRects |= roc_markRectImage;
  const double rect[4] = {5.5, 8.0, 90.0, 1.5};
  EXPECT(roc_rect32FixedInitFromRectD_(record.metrics.markRectImage, 16, rect) == RSYS_SUCCESS);
  EXPECT(roc_char_getBinarizedImageMarkRect8(&record, &mark) == RSYS_SUCCESS);
  EXPECT(mark.x == 5 && mark.y == 8 && mark.width == 3 && mark.height == 2);
  const uint8_t expected[2][3] = {{255, 255, 0}, {0, 255, 0}};
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 3; ++column) {
      EXPECT(mark.pels[row * mark.rowStep + column] == expected[row][column]);
    }
  }
  roc_char_destruct(&record);
  EXPECT(mark.pels[0] == 255);
  rimg_imageConst_destruct(&mark);
  rimg_imageConst_destruct(&mark);
}

int main(void) {
  an_empty_record_is_valid_and_may_end_twice();
  strings_are_copies();
  a_mark_is_cut_from_the_binarized_image();
  return failures == 0 ? 0 : 1;
}
