// SPDX-License-Identifier: Apache-2.0
#include "ink_map.h"

#include <algorithm>
#include <limits>

#include "rz/histogram.h"
#include "rz/pel_functions.h"
#include "rz/threshold.h"

namespace glyphline {
namespace {

using Picture = rzPelBuffer<unsigned char>;
using Pel = rzPair<rzLong>;

rzPelRect grown(const rzPelRect& rect, rzLong by) { return rect.trim(-by, -by, -by, -by); }

template <class Visit>
void forEachPel(const rzPelRect& rect, Visit visit) {
  for (rzLong y = rect.y(); y < rect.ll().y(); ++y) {
    for (rzLong x = rect.x(); x < rect.ur().x(); ++x) visit(x, y);
  }
}

std::size_t indexIn(const rzPelRect& region, rzLong x, rzLong y) {
  return static_cast<std::size_t>(y - region.y()) * static_cast<std::size_t>(region.width()) +
         static_cast<std::size_t>(x - region.x());
}

// Whether the pels just around the box are mostly dark, so that the ink is light.
bool surroundingsAreDark(const Picture& picture, const rzPelRect& box, double threshold) {
  int dark = 0;
  int all = 0;
  forEachPel(grown(box, 2).intersect(picture.window()), [&](rzLong x, rzLong y) {
    if (box.contains(Pel(x, y))) return;
    dark += *picture.pointToPel(x, y) < threshold ? 1 : 0;
    ++all;
  });
  return 2 * dark > all;
}

double medianOfGreys(std::vector<rzLong> histogram, std::size_t from, std::size_t to) {
  for (std::size_t grey = 0; grey < histogram.size(); ++grey) {
    if (grey < from || grey >= to) histogram[grey] = 0;
  }
  return rzHistoStats(histogram, false).median();
}

InkScale measureScale(const Picture& picture, const rzPelRect& box, rzLong reach,
                      Polarity polarity) {
  rzPelBuffer_const<unsigned char> region = picture;
  region.window(grown(box, reach), true);
  rzThresholdResult otsu;
  rfThresholdWGV(region, otsu);
  const auto threshold = static_cast<std::size_t>(otsu.threshold());
  const std::vector<rzLong> histogram = rfPelHistogram(region);
  const double dark = medianOfGreys(histogram, 0, threshold);
  const double light = medianOfGreys(histogram, threshold, histogram.size());
  InkScale scale;
  scale.isLight = polarity == Polarity::kAuto ? surroundingsAreDark(picture, box, otsu.threshold())
                                              : polarity == Polarity::kLight;
  scale.paper = scale.isLight ? dark : light;
  scale.level = 0.5 * (dark + light);
  return scale;
}

/// A connected piece of ink.
struct Piece {
  std::vector<Pel> pels;
  std::size_t numInBox = 0;
  bool runsOn = false;  // past the pels next to the box
};

// The piece that holds (x, y); its pels, first marked as foreign, are taken out of `waiting`.
Piece pieceAt(const InkMap& map, const rzPelRect& box, std::vector<bool>& waiting, Pel start) {
  Piece piece;
  const rzPelRect next = grown(box, 1);
  std::vector<Pel> open{start};
  waiting[indexIn(map.region, start.x(), start.y())] = false;
  while (!open.empty()) {
    const Pel pel = open.back();
    open.pop_back();
    piece.pels.push_back(pel);
    piece.numInBox += box.contains(pel) ? 1 : 0;
    piece.runsOn |= !next.contains(pel);
    const rzPelRect around(pel.x() - 1, pel.y() - 1, 3, 3);
    forEachPel(around.intersect(map.region), [&](rzLong x, rzLong y) {
      const std::size_t i = indexIn(map.region, x, y);
      if (!waiting[i]) return;
      waiting[i] = false;
      open.emplace_back(x, y);
    });
  }
  return piece;
}

std::vector<Piece> piecesOf(const InkMap& map, const rzPelRect& box) {
  std::vector<bool> waiting(map.kinds.size());
  for (std::size_t i = 0; i < waiting.size(); ++i) waiting[i] = map.kinds[i] == PelKind::kForeign;
  std::vector<Piece> pieces;
  forEachPel(map.region, [&](rzLong x, rzLong y) {
    if (waiting[indexIn(map.region, x, y)]) pieces.push_back(pieceAt(map, box, waiting, {x, y}));
  });
  return pieces;
}

void claim(InkMap& map, const Piece& piece, const rzPelRect& box) {
  const rzPelRect limit = piece.runsOn ? box : grown(box, 1);
  for (const Pel& pel : piece.pels) {
    if (limit.contains(pel)) map.kinds[indexIn(map.region, pel.x(), pel.y())] = PelKind::kOwn;
  }
}

}  // namespace

PelKind InkMap::at(rzLong x, rzLong y) const {
  return region.contains(Pel(x, y)) ? kinds[indexIn(region, x, y)] : PelKind::kOutside;
}

bool InkMap::isNear(rzLong x, rzLong y, PelKind kind, rzLong reach) const {
  for (rzLong v = y - reach; v <= y + reach; ++v) {
    for (rzLong u = x - reach; u <= x + reach; ++u) {
      if (at(u, v) == kind) return true;
    }
  }
  return false;
}

InkMap mapInk(const Picture& picture, const rzPelRect& box, rzLong reach, Polarity polarity) {
  InkMap map;
  map.region = grown(box, reach);
  map.scale = measureScale(picture, box, reach, polarity);
  map.kinds.assign(static_cast<std::size_t>(map.region.area()), PelKind::kOutside);
  forEachPel(map.region.intersect(picture.window()), [&](rzLong x, rzLong y) {
    const bool isInk = map.scale.isInk(*picture.pointToPel(x, y));
    map.kinds[indexIn(map.region, x, y)] = isInk ? PelKind::kForeign : PelKind::kPaper;
  });
  const std::vector<Piece> pieces = piecesOf(map, box);
  std::size_t most = 1;
  for (const Piece& piece : pieces) most = std::max(most, piece.numInBox);
  for (const Piece& piece : pieces) {
    if (piece.numInBox == most || 2 * piece.numInBox >= piece.pels.size()) claim(map, piece, box);
  }
  return map;
}

rzRect inkBox(const Picture& picture, const InkMap& map, const rzPelRect& box) {
  constexpr double kFar = std::numeric_limits<double>::infinity();
  rzVector<2> low(kFar, kFar);
  rzVector<2> high(-kFar, -kFar);
  // How far beyond the middle of an own pel the outline runs in the direction of a neighbour.
  const auto beyond = [&](rzLong x, rzLong y, rzLong dx, rzLong dy) {
    if (map.at(x + dx, y + dy) != PelKind::kPaper) return 0.5;
    const double own = *picture.pointToPel(x, y);
    const double paper = *picture.pointToPel(x + dx, y + dy);
    return (map.scale.level - own) / (paper - own);
  };
  forEachPel(map.region, [&](rzLong x, rzLong y) {
    if (map.at(x, y) != PelKind::kOwn) return;
    low.x(std::min(low.x(), x + 0.5 - beyond(x, y, -1, 0)));
    low.y(std::min(low.y(), y + 0.5 - beyond(x, y, 0, -1)));
    high.x(std::max(high.x(), x + 0.5 + beyond(x, y, 1, 0)));
    high.y(std::max(high.y(), y + 0.5 + beyond(x, y, 0, 1)));
  });
  return low.x() < high.x() ? rzRect(low, high - low) : rzRect(box);
}

}  // namespace glyphline
