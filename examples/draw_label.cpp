// SPDX-License-Identifier: Apache-2.0
//
// Draws the label that the demonstration reads: two printed lines at a slant, lit from one side,
// with the noise of a camera. The noise comes from a fixed seed, so the picture is the same each
// time on machines with the same fonts.
//
//   draw_label label.png
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>

namespace {

constexpr int kWidth = 460;
constexpr int kHeight = 220;
constexpr double kSlant = 5.5 / 180.0 * 3.14159265358979;
constexpr double kFontSize = 32.0;  // pels of the em square, as the demonstration trains it
constexpr double kNoise = 5.0;      // standard deviation in grey values

void drawPrint(cairo_t* cairo) {
  cairo_set_source_rgb(cairo, 0.42, 0.42, 0.42);
  cairo_paint(cairo);
  cairo_translate(cairo, 0.5 * kWidth, 0.5 * kHeight);
  cairo_rotate(cairo, kSlant);
  cairo_set_source_rgb(cairo, 0.86, 0.86, 0.86);
  cairo_rectangle(cairo, -160, -74, 320, 148);
  cairo_fill(cairo);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(cairo, options);
  cairo_font_options_destroy(options);
  cairo_select_font_face(cairo, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(cairo, kFontSize);
  cairo_set_source_rgb(cairo, 0.16, 0.16, 0.16);
  cairo_move_to(cairo, -112, -18);
  cairo_show_text(cairo, "LOT 4471B");
  cairo_move_to(cairo, -112, 40);
  cairo_show_text(cairo, "EXP 2027-03");
}

void lightAndNoise(cairo_surface_t* surface) {
  std::mt19937 random(20270301);
  std::normal_distribution<double> noise(0.0, kNoise);
  cairo_surface_flush(surface);
  for (int y = 0; y < kHeight; ++y) {
    auto* row = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(surface) +
                                                 y * cairo_image_surface_get_stride(surface));
    for (int x = 0; x < kWidth; ++x) {
      const double light = 0.85 + 0.25 * x / kWidth - 0.10 * y / kHeight;
      const double grey = std::clamp((row[x] & 0xFF) * light + noise(random), 0.0, 255.0);
      row[x] = static_cast<std::uint32_t>(std::lround(grey)) * 0x010101U;
    }
  }
  cairo_surface_mark_dirty(surface);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return std::fputs("usage: draw_label PICTURE.png\n", stderr), 2;
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight);
  cairo_t* cairo = cairo_create(surface);
  drawPrint(cairo);
  cairo_destroy(cairo);
  lightAndNoise(surface);
  const cairo_status_t status = cairo_surface_write_to_png(surface, argv[1]);
  cairo_surface_destroy(surface);
  return status == CAIRO_STATUS_SUCCESS ? 0 : 1;
}
