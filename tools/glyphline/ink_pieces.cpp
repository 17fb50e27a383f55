// SPDX-License-Identifier: Apache-2.0
#include "ink_pieces.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "rz/pel_functions.h"
#include "rz/threshold.h"

namespace glyphline {
namespace {

using Picture = rzPelBuffer<unsigned char>;

constexpr rzLong kLeastContrast = 10;  // grey levels between ink and paper: less is noise

// Whether most of the picture's border is dark, so that the ink is light.
bool borderIsDark(const Picture& picture) {
  rzThresholdResult otsu;
  rfThresholdWGV(picture, otsu);
  const rzPelRect window = picture.window();
  int dark = 0;
  int light = 0;
  const auto vote = [&](rzLong x, rzLong y) {
    ++(*picture.pointToPel(x, y) < otsu.threshold() ? dark : light);
  };
  for (rzLong x = window.x(); x < window.ur().x(); ++x) {
    vote(x, window.y());
    vote(x, window.ll().y() - 1);
  }
  for (rzLong y = window.y(); y < window.ll().y(); ++y) {
    vote(window.x(), y);
    vote(window.ur().x() - 1, y);
  }
  return dark > light;
}

/// The grey of bare paper, measured in tiles and interpolated between their middles.
class PaperMap {
 public:
  PaperMap(const Picture& picture, bool isDark) : window_(picture.window()) {
    // Wide enough that no tile lies within a stroke, small enough to follow uneven light.
    constexpr rzLong kSmallest = 32;
    tile_ = std::max(kSmallest, std::min(window_.width(), window_.height()) / 3);
    columns_ = (window_.width() + tile_ - 1) / tile_;
    rows_ = (window_.height() + tile_ - 1) / tile_;
    for (rzLong row = 0; row < rows_; ++row) {
      for (rzLong column = 0; column < columns_; ++column) {
        greys_.push_back(paperOf(picture, tileAt(column, row), isDark));
      }
    }
  }

  double at(rzLong x, rzLong y) const {
    const Place across = placeOf(x - window_.x(), columns_);
    const Place down = placeOf(y - window_.y(), rows_);
    const double upper = between(across, down.low);
    const double lower = between(across, std::min(down.low + 1, rows_ - 1));
    return upper + down.share * (lower - upper);
  }

 private:
  struct Place {
    rzLong low = 0;  // tile whose middle lies before
    double share = 0.0;
  };

  Place placeOf(rzLong offset, rzLong count) const {
    const double at = std::clamp((offset + 0.5) / tile_ - 0.5, 0.0, count - 1.0);
    const auto low = static_cast<rzLong>(at);
    return {low, at - low};
  }

  double between(const Place& across, rzLong row) const {
    const double left = grey(across.low, row);
    return left + across.share * (grey(std::min(across.low + 1, columns_ - 1), row) - left);
  }

  double grey(rzLong column, rzLong row) const {
    return greys_[static_cast<std::size_t>(row * columns_ + column)];
  }

  // Tiles at the far sides are moved in, so that all have the full size if the picture has.
  rzPelRect tileAt(rzLong column, rzLong row) const {
    const rzLong width = std::min(tile_, window_.width());
    const rzLong height = std::min(tile_, window_.height());
    return {window_.x() + std::min(column * tile_, window_.width() - width),
            window_.y() + std::min(row * tile_, window_.height() - height), width, height};
  }

  // A fifth of a tile at least is paper, whatever is printed.
  static double paperOf(const Picture& picture, const rzPelRect& tile, bool isDark) {
    constexpr double kPaperShare = 0.2;
    rzPelBuffer_const<unsigned char> part = picture;
    part.window(tile, false);
    const std::vector<rzLong> histogram = rfPelHistogram(part);
    const double wanted = (isDark ? kPaperShare : 1.0 - kPaperShare) * tile.width() * tile.height();
    double sum = 0.0;
    for (std::size_t grey = 0; grey < histogram.size(); ++grey) {
      sum += histogram[grey];
      if (sum >= wanted) return static_cast<double>(grey);
    }
    return 255.0;
  }

  rzPelRect window_;
  rzLong tile_ = 1;
  rzLong columns_ = 1;
  rzLong rows_ = 1;
  std::vector<double> greys_;
};

// How far each pel lies on the ink's side of the paper.
Picture differences(const Picture& picture, bool isLight) {
  const rzPelRect window = picture.window();
  const PaperMap paper(picture, isLight);
  Picture result(window, 32);
  for (rzLong y = window.y(); y < window.ll().y(); ++y) {
    for (rzLong x = window.x(); x < window.ur().x(); ++x) {
      const double beyond = paper.at(x, y) - *picture.pointToPel(x, y);
      const double grey = std::round(std::clamp(isLight ? -beyond : beyond, 0.0, 255.0));
      *result.pointToPel(x, y) = static_cast<unsigned char>(grey);
    }
  }
  return result;
}

// Takes the piece that `start` belongs to out of the waiting pels.
InkPiece takePiece(InkPieces& found, std::vector<bool>& waiting, std::size_t start) {
  const auto width = static_cast<std::size_t>(found.window.width());
  const int label = static_cast<int>(found.pieces.size());
  rzLong left = found.window.width(), right = 0, top = found.window.height(), bottom = 0;
  InkPiece piece;
  std::vector<std::size_t> open{start};
  waiting[start] = false;
  while (!open.empty()) {
    const std::size_t i = open.back();
    open.pop_back();
    found.labels[i] = label;
    ++piece.numPels;
    const auto x = static_cast<rzLong>(i % width);
    const auto y = static_cast<rzLong>(i / width);
    left = std::min(left, x);
    right = std::max(right, x);
    top = std::min(top, y);
    bottom = std::max(bottom, y);
    for (rzLong v = std::max(y - 1, 0); v <= std::min(y + 1, found.window.height() - 1); ++v) {
      for (rzLong u = std::max(x - 1, 0); u <= std::min(x + 1, found.window.width() - 1); ++u) {
        const std::size_t next = static_cast<std::size_t>(v) * width + static_cast<std::size_t>(u);
        if (!waiting[next]) continue;
        waiting[next] = false;
        open.push_back(next);
      }
    }
  }
  piece.box = rzPelRect(found.window.x() + left, found.window.y() + top, right - left + 1,
                        bottom - top + 1);
  return piece;
}

}  // namespace

InkPieces findInkPieces(const Picture& picture, Polarity polarity) {
  InkPieces found;
  found.window = picture.window();
  found.isLight =
      polarity == Polarity::kAuto ? borderIsDark(picture) : polarity == Polarity::kLight;
  const Picture ink = differences(picture, found.isLight);
  rzThresholdResult otsu;
  rfThresholdWGV(ink, otsu);
  const rzLong least = std::max(otsu.threshold(), kLeastContrast);
  std::vector<bool> waiting;
  for (rzLong y = found.window.y(); y < found.window.ll().y(); ++y) {
    for (rzLong x = found.window.x(); x < found.window.ur().x(); ++x) {
      waiting.push_back(*ink.pointToPel(x, y) >= least);
    }
  }
  found.labels.assign(waiting.size(), InkPieces::kNone);
  for (std::size_t i = 0; i < waiting.size(); ++i) {
    if (!waiting[i]) continue;
    const InkPiece piece = takePiece(found, waiting, i);
    found.pieces.push_back(piece);
  }
  return found;
}

}  // namespace glyphline
