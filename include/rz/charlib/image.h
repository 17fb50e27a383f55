// SPDX-License-Identifier: Apache-2.0
//
// rimg_imageConst: a read-only 8-bit grey image as a plain record of 40 bytes, for programs in C
// and for the images of a character record (rz/charlib/char_record.h).
//
// The record refers to counted pels. It starts by rimg_imageConst_constructUnbound, which needs no
// memory, and ends by rimg_imageConst_destruct; do not copy it by plain assignment, which counts
// nothing, but by rimg_imageConst_assign. An image without pels is unbound: `pels` is null.
//
// Pel coordinates: the pel in column c and row r of the window has the address
// pels + (r - y) * rowStep + (c - x) and covers [c, c + 1) by [r, r + 1). The client transforms of
// the buffer that an image was made from travel with it, out of sight of C.
//
// One record belongs to one thread; several records may share pels across threads.
#pragma once

#include <stdint.h>

#include "rz/charlib/result.h"
#include "rz/export.h"

#ifdef __cplusplus
extern "C" {
#endif

// Owns the pels; counted.
struct rimg_block;

typedef struct rimg_imageConst {
  struct rimg_block* block;
  const uint8_t* pels;  // the window's first pel; null when there is none
  int64_t rowStep;      // from a pel to the one below it, in bytes
  int32_t x;            // the window
  int32_t y;
  int32_t width;
  int32_t height;
} rimg_imageConst;

// The same record, where pels of 8 bits are meant.
typedef rimg_imageConst rimg_image8Const;

// Makes an unbound image of raw memory.
RZ_API rsys_result rimg_imageConst_constructUnbound(rimg_imageConst* image);

// Makes an image of raw memory: a copy of width times height pels that start at `pels`, with its
// upper left pel numbered (x, y).
RZ_API rsys_result rimg_imageConst_constructCopy(rimg_imageConst* image, const uint8_t* pels,
                                                 int64_t rowStep, int32_t x, int32_t y,
                                                 int32_t width, int32_t height);

// Lets `destination` refer to the pels of `source`, whatever becomes of `source`; what
// `destination` referred to is released.
RZ_API rsys_result rimg_imageConst_assign(rimg_imageConst* destination,
                                          const rimg_imageConst* source);

// Releases the pels and leaves an unbound image; a second call does no harm.
RZ_API void rimg_imageConst_destruct(rimg_imageConst* image);

#ifdef __cplusplus
}
#endif
