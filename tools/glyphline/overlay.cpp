// SPDX-License-Identifier: Apache-2.0
#include "overlay.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <vector>

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

constexpr Colour kFound[] = {kMatched,           {0.55, 0.25, 0.85}, {0.90, 0.30, 0.15},
                             {0.00, 0.60, 0.70}, {0.80, 0.15, 0.50}, {0.45, 0.45, 0.05}};
constexpr Colour kPaper{1.0, 1.0, 1.0};
constexpr Colour kText{0.15, 0.15, 0.15};

constexpr double kWantedBox = 90.0;  // pels of the drawing: room for a label above each box
constexpr double kLargestZoom = 6.0;
constexpr double kLargestSide = 4000.0;  // of the drawing, in its pels
constexpr double kFontSize = 11.0;       // all further lengths are pels of the drawing
constexpr double kNarrowest = 420.0;     // that the notes below the picture fit in
constexpr double kNoteHeight = 20.0;
constexpr double kIndent = 10.0;

/// How large a pel of the picture is drawn: boxes of this height want room for their labels.
double zoomFor(const Picture& picture, std::vector<double> boxHeights) {
  double wanted = kNarrowest / picture.width();
  if (!boxHeights.empty()) {
    const auto middle = boxHeights.begin() + static_cast<std::ptrdiff_t>(boxHeights.size() / 2);
    std::nth_element(boxHeights.begin(), middle, boxHeights.end());
    wanted = std::max(wanted, kWantedBox / std::max(1.0, *middle));
  }
  const double possible = kLargestSide / std::max(picture.width(), picture.height());
  return std::max(1.0, std::round(std::min({wanted, possible, kLargestZoom})));
}

double heightOf(const Place& place) { return place.box[0].distance(place.box[3]); }

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
  cairo_new_path(cairo);
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

void drawLine(cairo_t* cairo, const LineReport& line, double zoom) {
  cairo_new_path(cairo);
  for (const rzVector<2>& p : line.shape.curve) {
    cairo_line_to(cairo, zoom * p.x(), zoom * p.y());
  }
  setColour(cairo, kLine, 0.8);
  cairo_set_line_width(cairo, 1.4);
  cairo_stroke(cairo);
}

/// A line of text below the picture, behind a patch of its colour if it has one.
struct Note {
  std::string text;
  std::optional<Colour> colour;
};

void drawNotes(cairo_t* cairo, const std::vector<Note>& notes, double top) {
  double y = top + 0.5 * kNoteHeight;
  for (const Note& note : notes) {
    double x = kIndent;
    if (note.colour) {
      cairo_rectangle(cairo, x, y - 0.5 * kFontSize, kFontSize, kFontSize);
      setColour(cairo, *note.colour);
      cairo_fill(cairo);
      x += 1.8 * kFontSize;
    }
    cairo_set_font_size(cairo, kFontSize);
    setColour(cairo, kText);
    cairo_move_to(cairo, x, y + 0.36 * kFontSize);
    cairo_show_text(cairo, note.text.c_str());
    cairo_new_path(cairo);
    y += kNoteHeight;
  }
}

/// What is drawn besides the picture itself.
struct Layer {
  std::vector<double> boxHeights;
  std::vector<Note> notes;
  std::function<void(cairo_t*, double zoom)> draw;
};

void drawAll(cairo_t* cairo, const Picture& picture, const Layer& layer, double zoom) {
  cairo_select_font_face(cairo, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  setColour(cairo, kPaper);
  cairo_paint(cairo);
  drawPicture(cairo, picture, zoom);
  cairo_save(cairo);
  cairo_rectangle(cairo, 0, 0, zoom * picture.width(), zoom * picture.height());
  cairo_clip(cairo);
  layer.draw(cairo, zoom);
  cairo_restore(cairo);
  drawNotes(cairo, layer.notes, zoom * picture.height());
}

void require(cairo_status_t status) {
  if (status == CAIRO_STATUS_SUCCESS) return;
  throw Failure(std::string("drawing failed: ") + cairo_status_to_string(status));
}

std::string drawn(Format format, const Picture& picture, const Layer& layer) {
  const double zoom = zoomFor(picture, layer.boxHeights);
  const double width = std::max(zoom * picture.width(), kNarrowest);
  const double height =
      zoom * picture.height() + kNoteHeight * static_cast<double>(layer.notes.size());
  std::string bytes;
  const Surface surface = newSurface(format, width, height, bytes);
  {
    const Cairo cairo(cairo_create(surface.get()));
    drawAll(cairo.get(), picture, layer, zoom);
    require(cairo_status(cairo.get()));
  }
  if (format == Format::kPng) {
    require(cairo_surface_write_to_png_stream(surface.get(), append, &bytes));
  }
  cairo_surface_finish(surface.get());
  require(cairo_surface_status(surface.get()));
  return bytes;
}

std::string labelOf(const std::string& character, double score) {
  return character + " " + rfDbl(score, 2, false);
}

std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what;
}

std::vector<Note> notesOf(const ArrangeReport& report) {
  std::string unknown;
  std::size_t numInferred = 0;
  for (const PositionReport& position : report.positions) {
    if (position.isBlank) continue;
    if (position.status == rzOCArrangeDefs::eInferred) ++numInferred;
    if (position.status == rzOCArrangeDefs::eUnknown) unknown += " " + position.character;
  }
  std::vector<Note> notes{
      {std::filesystem::path(report.image).filename().string() + ": " +
           (report.passes() ? "pass" : "fail") + ", " + std::to_string(report.matched) + " of " +
           counted(static_cast<std::size_t>(report.expected), "characters matched"),
       std::nullopt},
      {"matched, with score", kMatched}};
  if (numInferred > 0) notes.push_back({counted(numInferred, "inferred"), kInferred});
  if (!unknown.empty()) notes.push_back({"unknown:" + unknown, std::nullopt});
  return notes;
}

Layer layerOf(const ArrangeReport& report) {
  Layer layer;
  layer.notes = notesOf(report);
  for (const PositionReport& position : report.positions) {
    if (position.place && !position.isBlank) layer.boxHeights.push_back(heightOf(*position.place));
  }
  layer.draw = [&report](cairo_t* cairo, double zoom) {
    for (const LineReport& line : report.lines) drawLine(cairo, line, zoom);
    for (const PositionReport& position : report.positions) {
      if (!position.place || position.isBlank) continue;
      const bool isMatched = position.status == rzOCArrangeDefs::eMatched;
      const Colour& colour = isMatched ? kMatched : kInferred;
      drawBox(cairo, *position.place, colour, zoom);
      drawLabel(cairo, *position.place,
                isMatched ? labelOf(position.character, position.score) : position.character + " ?",
                colour, zoom);
    }
  };
  return layer;
}

Layer layerOf(const FindReport& report) {
  Layer layer;
  const auto colourOf = [](std::size_t i) { return kFound[i % std::size(kFound)]; };
  for (std::size_t i = 0; i < report.characters.size(); ++i) {
    const FoundCharacter& found = report.characters[i];
    std::string text = found.character + ": " + counted(found.instances.size(), "found");
    if (!found.obstacle.empty()) text = found.character + ": " + found.obstacle;
    layer.notes.push_back({text, colourOf(i)});
    for (const FoundInstance& one : found.instances) {
      layer.boxHeights.push_back(heightOf(one.place));
    }
  }
  layer.draw = [&report, colourOf](cairo_t* cairo, double zoom) {
    for (std::size_t i = 0; i < report.characters.size(); ++i) {
      const FoundCharacter& found = report.characters[i];
      for (const FoundInstance& one : found.instances) {
        drawBox(cairo, one.place, colourOf(i), zoom);
        drawLabel(cairo, one.place, labelOf(found.character, one.score), colourOf(i), zoom);
      }
    }
  };
  return layer;
}

}  // namespace

void requireDrawable(const std::string& path) { formatOf(path); }

void writeOverlay(const std::string& path, const Picture& picture, const ArrangeReport& report) {
  writeWhole(path, drawn(formatOf(path), picture, layerOf(report)));
}

void writeOverlay(const std::string& path, const Picture& picture, const FindReport& report) {
  writeWhole(path, drawn(formatOf(path), picture, layerOf(report)));
}

}  // namespace glyphline
