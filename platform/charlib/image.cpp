// SPDX-License-Identifier: Apache-2.0
#include "rz/charlib/image.h"

#include "platform/charlib/image_block.h"
#include "rz/charlib/image_wrap.h"
#include "rz/pel_functions.h"

static_assert(sizeof(rimg_imageConst) == 40);

namespace {

void retain(rimg_block* block) {
  if (block) block->references.fetch_add(1, std::memory_order_relaxed);
}

void release(rimg_block* block) {
  if (block && block->references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete block;
}

}  // namespace

void constructImage(rimg_imageConst& image, const rzPelBuffer_const<unsigned char>& buffer) {
  const rzPelRect& window = buffer.window();
  const bool hasPels = buffer.isBound() && !window.isNull();
  image = {new rimg_block(buffer),
           hasPels ? buffer.pointToPel(window.x(), window.y()) : nullptr,
           hasPels ? buffer.rowUpdate() : 0,
           window.x(),
           window.y(),
           window.width(),
           window.height()};
}

rsys_result rimg_imageConst_constructUnbound(rimg_imageConst* image) {
  if (!image) return RSYS_BAD_ARGUMENT;
  *image = {};
  return RSYS_SUCCESS;
}

rsys_result rimg_imageConst_constructCopy(rimg_imageConst* image, const std::uint8_t* pels,
                                          std::int64_t rowStep, std::int32_t x, std::int32_t y,
                                          std::int32_t width, std::int32_t height) {
  if (!image) return RSYS_BAD_ARGUMENT;
  return resultOf([&] {
    rzPelBuffer<unsigned char> copy = rfPelBufferFromPels(pels, width, height, rowStep);
    copy.offset(rzPair<rzLong>(x, y));
    constructImage(*image, copy);
  });
}

rsys_result rimg_imageConst_assign(rimg_imageConst* destination, const rimg_imageConst* source) {
  if (!destination || !source) return RSYS_BAD_ARGUMENT;
  retain(source->block);
  release(destination->block);
  *destination = *source;
  return RSYS_SUCCESS;
}

void rimg_imageConst_destruct(rimg_imageConst* image) {
  if (!image) return;
  release(image->block);
  *image = {};
}

rz_Image::rz_Image(const rzPelBuffer_const<unsigned char>& buffer) {
  constructImage(image_, buffer);
}

rzPelBuffer_const<unsigned char> rfConvertImage(const rimg_image8Const& image) {
  return image.block ? image.block->buffer : rzPelBuffer_const<unsigned char>();
}
