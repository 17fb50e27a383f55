// SPDX-License-Identifier: Apache-2.0
//
// Characters of a font as models: dark on light, the ink's box with a margin, the origin on the
// base line where the pen starts.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <memory>
#include <stdexcept>
#include <string>

#include "oc/model.h"
#include "rz/pel_buffer.h"
#include "rz/pel_functions.h"

class Font {
 public:
  Font(const std::string& file, unsigned pelSize) {
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) throw std::runtime_error("FreeType does not start");
    library_.reset(library);
    FT_Face face = nullptr;
    if (FT_New_Face(library, file.c_str(), 0, &face) != 0) throw std::runtime_error(file);
    face_.reset(face);
    FT_Set_Pixel_Sizes(face, 0, pelSize);
  }

  rzPtrHandle_const<rzOCModel> character(char code) const {
    constexpr rzLong kMargin = 3;
    constexpr int kPaper = 220;
    constexpr int kInk = 30;
    const FT_ULong charCode = static_cast<unsigned char>(code);
    if (FT_Load_Char(face_.get(), charCode, FT_LOAD_RENDER | FT_LOAD_NO_HINTING) != 0) {
      throw std::runtime_error("No such character");
    }
    const FT_GlyphSlot glyph = face_->glyph;
    const auto width = static_cast<rzLong>(glyph->bitmap.width);
    const auto height = static_cast<rzLong>(glyph->bitmap.rows);
    const rzPelRect window(0, 0, width + 2 * kMargin, height + 2 * kMargin);
    rzPelBuffer<unsigned char> image(window, 32);
    rfPelSet(image, kPaper);
    for (rzLong y = 0; y < height; ++y) {
      for (rzLong x = 0; x < width; ++x) {
        const int coverage = glyph->bitmap.buffer[y * glyph->bitmap.pitch + x];
        *image.pointToPel(kMargin + x, kMargin + y) =
            static_cast<unsigned char>(kPaper - coverage * (kPaper - kInk) / 255);
      }
    }
    image.clientFromImageXform(rzXform<2>(
        rzMatrix<2>(), rzVector<2>(glyph->bitmap_left - kMargin, -glyph->bitmap_top - kMargin)));
    return rzPtrHandle_const<rzOCModel>(
        new rzOCModel(code, image, window, rzOCModel::eNormal, std::string(1, code)));
  }

 private:
  struct Release {
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
    void operator()(FT_Face face) const { FT_Done_Face(face); }
  };
  std::unique_ptr<std::remove_pointer_t<FT_Library>, Release> library_;
  std::unique_ptr<std::remove_pointer_t<FT_Face>, Release> face_;
};
