// SPDX-License-Identifier: Apache-2.0
#include "cut_out.h"

#include <algorithm>
#include <vector>

#include "rz/histogram.h"
#include "rz/pel_functions.h"
#include "rz/threshold.h"

namespace glyphline {
namespace {

using Picture = rzPelBuffer<unsigned char>;

/// What a grey value means near one character.
struct InkScale {
  double background = 255.0;
  double threshold = 128.0;
  bool isLight = false;  // ink is lighter than background

  bool isInk(double grey) const { return isLight ? grey >= threshold : grey < threshold; }
  /// More ink than background, but maybe only the blurred rim of it.
  bool isTinged(double grey) const {
    const double limit = 0.5 * (background + threshold);
    return isLight ? grey >= limit : grey < limit;
  }
};

template <class Visit>
void forEachPel(const rzPelRect& rect, Visit visit) {
  for (rzLong y = rect.y(); y < rect.ll().y(); ++y) {
    for (rzLong x = rect.x(); x < rect.ur().x(); ++x) visit(x, y);
  }
}

rzPelRect grown(const rzPelRect& rect, rzLong by) { return rect.trim(-by, -by, -by, -by); }

// Whether the pels just around the box are mostly dark, so that the ink is light.
bool surroundingsAreDark(const Picture& picture, const rzPelRect& box, double threshold) {
  int dark = 0;
  int all = 0;
  forEachPel(grown(box, 2).intersect(picture.window()), [&](rzLong x, rzLong y) {
    if (box.contains(rzPair<rzLong>(x, y))) return;
    dark += *picture.pointToPel(x, y) < threshold ? 1 : 0;
    ++all;
  });
  return 2 * dark > all;
}

InkScale measureInk(const Picture& picture, const rzPelRect& box, rzLong margin,
                    Polarity polarity) {
  rzPelBuffer_const<unsigned char> region = picture;
  region.window(grown(box, margin + 2), true);
  rzThresholdResult otsu;
  rfThresholdWGV(region, otsu);
  InkScale scale;
  scale.threshold = otsu.threshold();
  scale.isLight = polarity == Polarity::kAuto ? surroundingsAreDark(picture, box, otsu.threshold())
                                              : polarity == Polarity::kLight;
  std::vector<rzLong> histogram = rfPelHistogram(region);
  for (std::size_t grey = 0; grey < histogram.size(); ++grey) {
    if (scale.isInk(static_cast<double>(grey))) histogram[grey] = 0;
  }
  scale.background = rzHistoStats(histogram, false).median();
  return scale;
}

// The smallest rectangle of the ink in the box; the box itself when it holds none.
rzPelRect drawnIn(const Picture& picture, const rzPelRect& box, const InkScale& scale) {
  rzPelRect ink;
  forEachPel(box, [&](rzLong x, rzLong y) {
    if (scale.isInk(*picture.pointToPel(x, y))) ink = ink.enclose(rzPelRect(x, y, 1, 1));
  });
  return ink.isNull() ? box : ink;
}

// How far a pel lies outside the rectangle: 0 inside, 1 for the ring around it, and so on.
rzLong ringOf(const rzPelRect& rect, rzLong x, rzLong y) {
  const rzLong dx = std::max({rect.x() - x, x - (rect.ur().x() - 1), 0});
  const rzLong dy = std::max({rect.y() - y, y - (rect.ll().y() - 1), 0});
  return std::max(dx, dy);
}

}  // namespace

CutOut cutOut(const Picture& picture, const rzPelRect& box, rzLong margin, Polarity polarity) {
  const InkScale scale = measureInk(picture, box, margin, polarity);
  CutOut cut;
  cut.ink = drawnIn(picture, box, scale);
  const rzPelRect area = grown(cut.ink, margin);
  // Foreign is the ink of neighbours. In the first ring a tinge is the character's own blurred rim;
  // further out it is the rim of a neighbour.
  const auto isForeign = [&](rzLong x, rzLong y) {
    const rzLong ring = ringOf(cut.ink, x, y);
    if (ring == 0 || !picture.window().contains(rzPair<rzLong>(x, y))) return false;
    const double grey = *picture.pointToPel(x, y);
    return ring == 1 ? scale.isInk(grey) : scale.isTinged(grey);
  };
  const auto isNearForeign = [&](rzLong x, rzLong y) {
    if (ringOf(cut.ink, x, y) < 2) return isForeign(x, y);
    for (rzLong v = y - 1; v <= y + 1; ++v) {
      for (rzLong u = x - 1; u <= x + 1; ++u) {
        if (isForeign(u, v)) return true;
      }
    }
    return false;
  };
  const auto background = static_cast<unsigned char>(scale.background);
  cut.image = Picture(rzPelRect(0, 0, area.width(), area.height()), 32);
  forEachPel(area, [&](rzLong x, rzLong y) {
    const bool isKept =
        picture.window().contains(rzPair<rzLong>(x, y)) && !isNearForeign(x, y);
    *cut.image.pointToPel(x - area.x(), y - area.y()) =
        isKept ? *picture.pointToPel(x, y) : background;
  });
  return cut;
}

}  // namespace glyphline
