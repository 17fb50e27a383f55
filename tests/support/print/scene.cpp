// SPDX-License-Identifier: Apache-2.0
#include "tests/support/print/scene.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_BBOX_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace scene {

struct Font::Face {
  FT_Library library = nullptr;
  FT_Face face = nullptr;

  ~Face() {
    if (face) FT_Done_Face(face);
    if (library) FT_Done_FreeType(library);
  }
};

namespace {

constexpr int kOversize = 16;  // outlines are loaded so much larger, for finer coordinates

void require(FT_Error error, const char* what) {
  if (error != 0) throw std::runtime_error(what);
}

FT_Outline& loaded(FT_Face face, char32_t code) {
  require(FT_Load_Char(face, code, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP), "no such glyph");
  return face->glyph->outline;
}

std::size_t index(const Canvas& canvas, int x, int y) {
  return static_cast<std::size_t>(y) * static_cast<std::size_t>(canvas.width) +
         static_cast<std::size_t>(x);
}

void blurAlong(std::vector<float>& values, int count, int step, std::size_t start,
               const std::vector<double>& kernel) {
  const int radius = static_cast<int>(kernel.size() / 2);
  std::vector<float> line(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    double sum = 0.0;
    for (int k = -radius; k <= radius; ++k) {
      const int j = std::clamp(i + k, 0, count - 1);
      sum += kernel[static_cast<std::size_t>(k + radius)] *
             static_cast<double>(values[start + static_cast<std::size_t>(j * step)]);
    }
    line[static_cast<std::size_t>(i)] = static_cast<float>(sum);
  }
  for (int i = 0; i < count; ++i) {
    values[start + static_cast<std::size_t>(i * step)] = line[static_cast<std::size_t>(i)];
  }
}

void blur(Canvas& canvas, double sigma) {
  if (sigma <= 0.0) return;
  const int radius = static_cast<int>(std::ceil(4.0 * sigma));
  std::vector<double> kernel;
  double sum = 0.0;
  for (int k = -radius; k <= radius; ++k) {
    kernel.push_back(std::exp(-0.5 * k * k / (sigma * sigma)));
    sum += kernel.back();
  }
  for (double& k : kernel) k /= sum;
  for (int y = 0; y < canvas.height; ++y) {
    blurAlong(canvas.ink, canvas.width, 1, index(canvas, 0, y), kernel);
  }
  for (int x = 0; x < canvas.width; ++x) {
    blurAlong(canvas.ink, canvas.height, canvas.width, index(canvas, x, 0), kernel);
  }
}

}  // namespace

Font::Font(const std::string& file, double sizePx) : face_(std::make_unique<Face>()) {
  require(FT_Init_FreeType(&face_->library), "FreeType");
  require(FT_New_Face(face_->library, file.c_str(), 0, &face_->face), file.c_str());
  const auto size = static_cast<FT_F26Dot6>(std::lround(sizePx * 64.0 * kOversize));
  require(FT_Set_Char_Size(face_->face, size, size, 72, 72), "font size");
}

Font::~Font() = default;

double Font::sizeForCapHeight(const std::string& file, double height) {
  const InkBox box = Font(file, 100.0).inkBox(U'H');
  return 100.0 * height / (box.bottom - box.top);
}

InkBox Font::inkBox(char32_t code) const {
  FT_BBox box;
  require(FT_Outline_Get_BBox(&loaded(face_->face, code), &box), "outline");
  const double unit = 64.0 * kOversize;
  return {static_cast<double>(box.xMin) / unit, -static_cast<double>(box.yMax) / unit,
          static_cast<double>(box.xMax) / unit, -static_cast<double>(box.yMin) / unit};
}

void Font::draw(char32_t code, const Placement& place, Canvas& canvas) const {
  FT_Outline& outline = loaded(face_->face, code);
  const double angle = place.degrees * std::numbers::pi / 180.0;
  const double c = place.scale * std::cos(angle) / kOversize;
  const double s = place.scale * std::sin(angle) / kOversize;
  FT_BBox box{1 << 30, 1 << 30, -(1 << 30), -(1 << 30)};
  for (int i = 0; i < outline.n_points; ++i) {
    FT_Vector& p = outline.points[i];
    const auto x = static_cast<double>(p.x);
    const auto y = -static_cast<double>(p.y);
    p.x = std::lround(64.0 * place.x + c * x - s * y);
    p.y = std::lround(64.0 * (canvas.height - place.y) - (s * x + c * y));
    box = {std::min(box.xMin, p.x), std::min(box.yMin, p.y), std::max(box.xMax, p.x),
           std::max(box.yMax, p.y)};
  }
  if (outline.n_points == 0) return;
  const int left = std::max(0, static_cast<int>(box.xMin / 64) - 1);
  const int low = std::max(0, static_cast<int>(box.yMin / 64) - 1);
  const int right = std::min(canvas.width, static_cast<int>(box.xMax / 64) + 2);
  const int high = std::min(canvas.height, static_cast<int>(box.yMax / 64) + 2);
  if (right <= left || high <= low) return;
  FT_Outline_Translate(&outline, -64 * left, -64 * low);
  std::vector<unsigned char> pels(static_cast<std::size_t>(right - left) *
                                  static_cast<std::size_t>(high - low));
  FT_Bitmap bitmap{};
  bitmap.width = static_cast<unsigned>(right - left);
  bitmap.rows = static_cast<unsigned>(high - low);
  bitmap.pitch = right - left;
  bitmap.buffer = pels.data();
  bitmap.num_grays = 256;
  bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
  require(FT_Outline_Get_Bitmap(face_->library, &outline, &bitmap), "drawing");
  for (int y = 0; y < high - low; ++y) {
    // The first row of the bitmap is its upper one.
    const int to = canvas.height - high + y;
    for (int x = 0; x < right - left; ++x) {
      float& ink = canvas.ink[index(canvas, left + x, to)];
      const auto cover = static_cast<float>(pels[static_cast<std::size_t>(y * (right - left) + x)]);
      ink = std::min(1.0F, ink + cover / 255.0F);
    }
  }
}

rzPelBuffer<unsigned char> photograph(const Canvas& canvas, const Look& look,
                                      std::mt19937& random) {
  Canvas seen = canvas;
  blur(seen, look.blur);
  rzPelBuffer<unsigned char> image(rzPelRect(0, 0, canvas.width, canvas.height), 32);
  std::normal_distribution<double> noise(0.0, 1.0);
  const double span = canvas.width + canvas.height;
  for (int y = 0; y < canvas.height; ++y) {
    for (int x = 0; x < canvas.width; ++x) {
      const auto ink = static_cast<double>(seen.ink[index(seen, x, y)]);
      const double light = look.ramp * (x + y) / span;
      const double grey = look.paper + ink * (look.ink - look.paper) - light;
      const double value = grey + (look.noise > 0.0 ? look.noise * noise(random) : 0.0);
      *image.pointToPel(x, y) =
          static_cast<unsigned char>(std::clamp(std::floor(value + 0.5), 0.0, 255.0));
    }
  }
  return image;
}

rzPelBuffer<unsigned char> trainingImage(const Font& font, char32_t code, double blurSigma,
                                         rzVector<2>& origin) {
  const InkBox box = font.inkBox(code);
  constexpr double kMargin = 3.0;
  const double left = std::floor(box.left) - kMargin;
  const double top = std::floor(box.top) - kMargin;
  Canvas canvas{static_cast<int>(std::ceil(box.right) + kMargin - left),
                static_cast<int>(std::ceil(box.bottom) + kMargin - top),
                {}};
  canvas.ink.assign(static_cast<std::size_t>(canvas.width * canvas.height), 0.0F);
  origin = rzVector<2>(-left, -top);
  font.draw(code, {-left, -top, 0.0, 1.0}, canvas);
  std::mt19937 random;
  Look look;
  look.blur = blurSigma;
  look.noise = 0.0;
  look.ramp = 0.0;
  return photograph(canvas, look, random);
}

}  // namespace scene
