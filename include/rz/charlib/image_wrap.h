// SPDX-License-Identifier: Apache-2.0
//
// The C++ side of rimg_imageConst: pel buffers become C-level images and back, sharing their pels.
// Window, root and client transforms travel along; an unbound buffer becomes an unbound image.
#pragma once

#include "rz/charlib/image.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"

/// A C-level image of a buffer, released when this object goes.
class RZ_API rz_Image {
 public:
  /// Throws std::bad_alloc.
  explicit rz_Image(const rzPelBuffer_const<unsigned char>& buffer);
  rz_Image(const rz_Image&) = delete;
  rz_Image& operator=(const rz_Image&) = delete;
  ~rz_Image() { rimg_imageConst_destruct(&image_); }

  const rimg_imageConst* imageConst() const { return &image_; }
  operator const rimg_image8Const*() const { return &image_; }

 private:
  rimg_imageConst image_;
};

/// The buffer that a C-level image was made from, sharing its pels.
RZ_API rzPelBuffer_const<unsigned char> rfConvertImage(const rimg_image8Const& image);
