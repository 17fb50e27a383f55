// SPDX-License-Identifier: Apache-2.0
#include "font_train.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_BBOX_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>

#include "char_list.h"
#include "failure.h"
#include "input_file.h"
#include "rz/pel_functions.h"

namespace glyphline {
namespace {

constexpr double kFixed = 64.0;            // FreeType's sub-pel units
constexpr int kPaper = 230;                // grey of the background, dark print
constexpr int kInk = 30;                   // grey of full ink, dark print
constexpr double kDefaultCapHeight = 0.7;  // of the em, for a font without capitals

struct LibraryRelease {
  void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};
struct FaceRelease {
  void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using Library = std::unique_ptr<std::remove_pointer_t<FT_Library>, LibraryRelease>;
using Face = std::unique_ptr<std::remove_pointer_t<FT_Face>, FaceRelease>;

Library openLibrary() {
  FT_Library library = nullptr;
  if (FT_Init_FreeType(&library) != 0) throw Failure("the font library does not start");
  return Library(library);
}

// `content` is the font file and has to outlive the face.
Face openFace(FT_Library library, const std::string& content, const FontTraining& training) {
  FT_Face face = nullptr;
  const auto* bytes = reinterpret_cast<const FT_Byte*>(content.data());
  if (FT_New_Memory_Face(library, bytes, static_cast<FT_Long>(content.size()), 0, &face) != 0) {
    throw Failure(training.file + ": --font: not a font");
  }
  Face opened(face);
  // At 72 dots an inch a point is a pel, so the size is that of the em square.
  if (FT_Set_Char_Size(face, 0, std::lround(training.size * kFixed), 72, 72) != 0) {
    throw Failure(training.file + ": --size: the font has no glyphs of this size");
  }
  return opened;
}

void loadGlyph(FT_Face face, char32_t character, FT_Int32 flags, const std::string& file) {
  const FT_UInt index = FT_Get_Char_Index(face, character);
  if (index == 0)
    throw Failure(file + ": --chars: the font has no character \"" + utf8Of(character) + "\"");
  if (FT_Load_Glyph(face, index, FT_LOAD_NO_HINTING | flags) != 0) {
    throw Failure(file + ": --chars: the character \"" + utf8Of(character) + "\" cannot be drawn");
  }
}

std::string sourceOf(const FontTraining& training) {
  return std::filesystem::path(training.file).filename().string();
}

double capHeight(FT_Face face, double size) {
  const FT_UInt index = FT_Get_Char_Index(face, U'H');
  if (index == 0 || FT_Load_Glyph(face, index, FT_LOAD_NO_HINTING) != 0) {
    return kDefaultCapHeight * size;
  }
  return static_cast<double>(face->glyph->metrics.height) / kFixed;
}

// The room that the glyphs' side bearings leave between neighbours, in the mean.
double usualSpacing(FT_Face face, const std::u32string& chars) {
  double sum = 0.0;
  int count = 0;
  for (const char32_t character : chars) {
    const FT_UInt index = FT_Get_Char_Index(face, character);
    if (index == 0 || FT_Load_Glyph(face, index, FT_LOAD_NO_HINTING) != 0) continue;
    const FT_Glyph_Metrics& metrics = face->glyph->metrics;
    if (metrics.width == 0) continue;
    sum += static_cast<double>(metrics.horiAdvance - metrics.width) / kFixed;
    ++count;
  }
  return count > 0 ? sum / count : 0.0;
}

BlankFrame blankFrameOf(FT_Face face, const FontTraining& training) {
  BlankFrame frame;
  frame.margin = training.margin;
  frame.spacing = usualSpacing(face, training.chars);
  frame.height = static_cast<rzLong>(std::max(1.0, std::round(capHeight(face, training.size))));
  return frame;
}

TrainedChar blankFrom(FT_Face face, char32_t character, const FontTraining& training) {
  loadGlyph(face, character, FT_LOAD_DEFAULT, training.file);
  const double advance = static_cast<double>(face->glyph->metrics.horiAdvance) / kFixed;
  return blankOf(character, advance, blankFrameOf(face, training), sourceOf(training));
}

unsigned char printed(unsigned char coverage, bool isLight) {
  const int from = isLight ? kInk : kPaper;
  const int to = isLight ? kPaper : kInk;
  return static_cast<unsigned char>(from + ((to - from) * coverage) / 255);
}

/// Where the ink comes to lie: a box of whole pels with the ink in its exact middle.
struct InkBox {
  rzLong width = 0;
  rzLong height = 0;
  double baseLine = 0.0;  // pels below the box's top
};

rzLong wholePels(FT_Pos length) { return static_cast<rzLong>((length + 63) / 64); }

// Moves the outline by parts of a pel, so that its ink box is centred in whole pels.
InkBox centreOutline(FT_Outline& outline) {
  FT_BBox ink;
  FT_Outline_Get_BBox(&outline, &ink);
  InkBox box{wholePels(ink.xMax - ink.xMin), wholePels(ink.yMax - ink.yMin), 0.0};
  const FT_Pos dx = (box.width * 64 - (ink.xMax - ink.xMin)) / 2 - ink.xMin;
  const FT_Pos dy = (box.height * 64 - (ink.yMax - ink.yMin)) / 2 - ink.yMin;
  FT_Outline_Translate(&outline, dx, dy);
  box.baseLine = box.height - static_cast<double>(dy) / kFixed;
  return box;
}

TrainedChar glyphFrom(FT_Face face, char32_t character, const FontTraining& training) {
  loadGlyph(face, character, FT_LOAD_NO_BITMAP, training.file);
  FT_GlyphSlot glyph = face->glyph;
  if (glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
    throw Failure(training.file + ": --font: not a font of outlines");
  }
  if (glyph->outline.n_points == 0) return blankFrom(face, character, training);
  const InkBox ink = centreOutline(glyph->outline);
  if (FT_Render_Glyph(glyph, FT_RENDER_MODE_NORMAL) != 0) {
    throw Failure(training.file + ": --chars: the character \"" + utf8Of(character) +
                  "\" cannot be drawn");
  }

  const bool isLight = training.polarity == Polarity::kLight;
  const rzLong margin = training.margin;
  TrainedChar trained;
  trained.character = character;
  trained.source = sourceOf(training);
  trained.area = rzPelRect(0, 0, ink.width + 2 * margin, ink.height + 2 * margin);
  trained.image = rzPelBuffer<unsigned char>(trained.area, 32);
  rfPelSet(trained.image, printed(0, isLight));
  const FT_Bitmap& bitmap = glyph->bitmap;
  const rzPelRect ruled(margin + glyph->bitmap_left, margin + ink.height - glyph->bitmap_top,
                        static_cast<rzLong>(bitmap.width), static_cast<rzLong>(bitmap.rows));
  for (rzLong y = 0; y < ruled.height() && trained.area.contains(ruled); ++y) {
    const unsigned char* row = bitmap.buffer + std::ptrdiff_t{y} * bitmap.pitch;
    std::transform(row, row + ruled.width(), trained.image.pointToPel(ruled.x(), ruled.y() + y),
                   [isLight](unsigned char coverage) { return printed(coverage, isLight); });
  }
  trained.origin = rzVector<2>(0.5 * trained.area.width(), margin + ink.baseLine);
  return trained;
}

}  // namespace

BlankFrame blankFrameOf(const FontTraining& training) {
  const std::string content = readInput(training.file, "--font");
  const Library library = openLibrary();
  return blankFrameOf(openFace(library.get(), content, training).get(), training);
}

std::vector<TrainedChar> trainFromFont(const FontTraining& training) {
  const std::string content = readInput(training.file, "--font");
  const Library library = openLibrary();
  const Face face = openFace(library.get(), content, training);
  std::vector<TrainedChar> trained;
  for (const char32_t character : training.chars) {
    trained.push_back(glyphFrom(face.get(), character, training));
  }
  return trained;
}

}  // namespace glyphline
