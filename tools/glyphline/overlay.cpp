// SPDX-License-Identifier: Apache-2.0
#include "overlay.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

#include "failure.h"
#include "output_file.h"
#include "rz/text.h"

namespace glyphline {
namespace {

using Picture = rzPelBuffer<unsigned char>;

struct Release {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
};
using Surface = std::unique_ptr<cairo_surface_t, Release>;
using Cairo = std::unique_ptr<cairo_t, Release>;

struct Colour {
  double red, green, blue;
};
constexpr Colour kMatched{0.10, 0.70, 0.30};
constexpr Colour kInferred{0.96, 0.55, 0.05};
constexpr Colour kLine{0.15, 0.45, 0.95};
constexpr Colour kLabelInk{1.0, 1.0, 1.0};

constexpr double kWantedSide = 1000.0;  // pels of the drawing's longer side, about
constexpr double kLargestZoom = 4.0;
constexpr double kFontSize = 11.0;  // pels of the drawing

/// How large a pel of the picture is drawn.
double zoomFor(const Picture& picture) {
  const double side = std::max(picture.width(), picture.height());
  return std::clamp(std::floor(kWantedSide / side), 1.0, kLargestZoom);
}

enum class Format { kPng, kSvg, kPdf };

Format formatOf(const std::string& path) {
  const auto ends = [&path](const char* ending) { return path.ends_with(ending); };
  if (ends(".png")) return Format::kPng;
  if (ends(".svg")) return Format::kSvg;
  if (ends(".pdf")) return Format::kPdf;
  throw Failure(path + ": --overlay: the name must end in .png, .svg or .pdf");
}

cairo_status_t append(void* closure, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

Surface newSurface(Format format, double width, double height, std::string& bytes) {
  switch (format) {
    case Format::kSvg:
      return Surface(cairo_svg_surface_create_for_stream(append, &bytes, width, height));
    case Format::kPdf:
      return Surface(cairo_pdf_surface_create_for_stream(append, &bytes, width, height));
    default:
      return Surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width),
                                                static_cast<int>(height)));
  }
}

void setColour(cairo_t* cairo, const Colour& colour, double opacity = 1.0) {
  cairo_set_source_rgba(cairo, colour.red, colour.green, colour.blue, opacity);
}

void drawPicture(cairo_t* cairo, const Picture& picture, double zoom) {
  const Surface grey(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, picture.width(), picture.height()));
  unsigned char* pels = cairo_image_surface_get_data(grey.get());
  if (pels == nullptr) throw Failure("the picture is too large to draw");
  const int step = cairo_image_surface_get_stride(grey.get());
  for (rzLong y = 0; y < picture.height(); ++y) {
    const unsigned char* from = picture.pointToPel(0, y);
    auto* to = reinterpret_cast<std::uint32_t*>(pels + std::ptrdiff_t{y} * step);
    for (rzLong x = 0; x < picture.width(); ++x) to[x] = from[x] * 0x010101U;
  }
  cairo_surface_mark_dirty(grey.get());
  cairo_save(cairo);
  cairo_scale(cairo, zoom, zoom);
  cairo_set_source_surface(cairo, grey.get(), 0, 0);
  cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_NEAREST);
  cairo_paint(cairo);
  cairo_restore(cairo);
}

void drawBox(cairo_t* cairo, const Place& place, const Colour& colour, double zoom) {
  for (const rzVector<2>& corner : place.box) {
    cairo_line_to(cairo, zoom * corner.x(), zoom * corner.y());
  }
  cairo_close_path(cairo);
  setColour(cairo, colour, 0.14);
  cairo_fill_preserve(cairo);
  setColour(cairo, colour);
  cairo_set_line_width(cairo, 1.6);
  cairo_stroke(cairo);
}

// A small tag that hangs above the character's upper side, upright on the drawing.
void drawLabel(cairo_t* cairo, const Place& place, const std::string& text, const Colour& colour,
               double zoom) {
  const rzVector<2> top = (place.box[0] + place.box[1]) * (0.5 * zoom);
  const rzVector<2> away = top - place.center * zoom;
  const rzVector<2> at = top + away * (0.8 * kFontSize / std::max(away.len(), 1.0));
  cairo_set_font_size(cairo, kFontSize);
  cairo_text_extents_t extents;
  cairo_text_extents(cairo, text.c_str(), &extents);
  constexpr double kPadding = 2.0;
  cairo_rectangle(cairo, at.x() - 0.5 * extents.width - kPadding,
                  at.y() - 0.5 * extents.height - kPadding, extents.width + 2 * kPadding,
                  extents.height + 2 * kPadding);
  setColour(cairo, colour, 0.9);
  cairo_fill(cairo);
  setColour(cairo, kLabelInk);
  cairo_move_to(cairo, at.x() - 0.5 * extents.width - extents.x_bearing,
                at.y() - 0.5 * extents.height - extents.y_bearing);
  cairo_show_text(cairo, text.c_str());
}

void drawLine(cairo_t* cairo, const ArrangeReport& report, const LineReport& line, double zoom) {
  for (const rzLong i : line.positions) {
    const std::optional<Place>& place = report.positions[static_cast<std::size_t>(i)].place;
    if (place) cairo_line_to(cairo, zoom * place->origin.x(), zoom * place->origin.y());
  }
  setColour(cairo, kLine, 0.8);
  cairo_set_line_width(cairo, 1.2);
  cairo_stroke(cairo);
}

std::string drawn(Format format, const Picture& picture,
                  const std::function<void(cairo_t*, double)>& draw) {
  const double zoom = zoomFor(picture);
  std::string bytes;
  const Surface surface =
      newSurface(format, zoom * picture.width(), zoom * picture.height(), bytes);
  {
    const Cairo cairo(cairo_create(surface.get()));
    cairo_select_font_face(cairo.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_BOLD);
    drawPicture(cairo.get(), picture, zoom);
    draw(cairo.get(), zoom);
    if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS) {
      throw Failure(std::string("drawing failed: ") +
                    cairo_status_to_string(cairo_status(cairo.get())));
    }
  }
  if (format == Format::kPng) cairo_surface_write_to_png_stream(surface.get(), append, &bytes);
  cairo_surface_finish(surface.get());
  return bytes;
}

std::string labelOf(const std::string& character, double score) {
  return character + " " + rfDbl(score, 2, false);
}

}  // namespace

void requireDrawable(const std::string& path) { formatOf(path); }

void writeOverlay(const std::string& path, const Picture& picture, const ArrangeReport& report) {
  writeWhole(path, drawn(formatOf(path), picture, [&](cairo_t* cairo, double zoom) {
    for (const LineReport& line : report.lines) drawLine(cairo, report, line, zoom);
    for (const PositionReport& position : report.positions) {
      if (!position.place || position.isBlank) continue;
      const bool isMatched = position.status == rzOCArrangeDefs::eMatched;
      const Colour& colour = isMatched ? kMatched : kInferred;
      drawBox(cairo, *position.place, colour, zoom);
      drawLabel(cairo, *position.place,
                isMatched ? labelOf(position.character, position.score) : position.character + " ?",
                colour, zoom);
    }
  }));
}

void writeOverlay(const std::string& path, const Picture& picture, const FindReport& report) {
  writeWhole(path, drawn(formatOf(path), picture, [&](cairo_t* cairo, double zoom) {
    for (const FoundCharacter& found : report.characters) {
      for (const FoundInstance& instance : found.instances) {
        drawBox(cairo, instance.place, kMatched, zoom);
        drawLabel(cairo, instance.place, labelOf(found.character, instance.score), kMatched, zoom);
      }
    }
  }));
}

}  // namespace glyphline
