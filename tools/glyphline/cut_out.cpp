// SPDX-License-Identifier: Apache-2.0
#include "cut_out.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "ink_map.h"

namespace glyphline {
namespace {

using Picture = rzPelBuffer<unsigned char>;

constexpr rzLong kTaps = 4;          // of the cubic interpolation
constexpr double kUnshifted = 0.02;  // pels that are not worth an interpolation

/// Paper as a plane of grey over the picture, so that uneven light leaves no seam.
struct Paper {
  double flat = 255.0;  // grey at `middle`
  rzVector<2> slope;
  rzVector<2> middle;
  double darkest = 0.0;  // the plane is not trusted beyond the greys it was fitted to
  double lightest = 255.0;

  double at(rzLong x, rzLong y) const {
    return std::clamp(flat + slope.dot(rzVector<2>(x, y) - middle), darkest, lightest);
  }
};

struct Sample {
  rzVector<2> at;
  double grey;
};

// Pels of bare paper: away from ink, and on the paper's side of a rim.
std::vector<Sample> paperSamples(const Picture& picture, const InkMap& map) {
  std::vector<Sample> samples;
  const rzPelRect seen = map.region.intersect(picture.window());
  for (rzLong y = seen.y(); y < seen.ll().y(); ++y) {
    for (rzLong x = seen.x(); x < seen.ur().x(); ++x) {
      const double grey = *picture.pointToPel(x, y);
      if (map.at(x, y) != PelKind::kPaper || map.scale.isTinged(grey)) continue;
      if (map.isNear(x, y, PelKind::kOwn, 1) || map.isNear(x, y, PelKind::kForeign, 1)) continue;
      samples.push_back({rzVector<2>(x, y), grey});
    }
  }
  return samples;
}

// The plane of least squares through bare paper; level where there is too little of it.
Paper fitPaper(const Picture& picture, const InkMap& map) {
  constexpr std::size_t kFewest = 12;
  const std::vector<Sample> samples = paperSamples(picture, map);
  Paper paper;
  paper.flat = map.scale.paper;
  if (samples.size() < kFewest) return paper;
  const auto [darkest, lightest] =
      std::minmax_element(samples.begin(), samples.end(),
                          [](const Sample& a, const Sample& b) { return a.grey < b.grey; });
  paper.darkest = darkest->grey;
  paper.lightest = lightest->grey;
  double sum = 0.0;
  for (const Sample& s : samples) {
    sum += s.grey;
    paper.middle += s.at;
  }
  paper.flat = sum / static_cast<double>(samples.size());
  paper.middle = paper.middle / static_cast<double>(samples.size());
  double xx = 0, xy = 0, yy = 0, xg = 0, yg = 0;
  for (const Sample& s : samples) {
    const rzVector<2> d = s.at - paper.middle;
    xx += d.x() * d.x();
    xy += d.x() * d.y();
    yy += d.y() * d.y();
    xg += d.x() * (s.grey - paper.flat);
    yg += d.y() * (s.grey - paper.flat);
  }
  const double determinant = xx * yy - xy * xy;
  if (determinant > 0.0) {
    paper.slope = rzVector<2>(xg * yy - yg * xy, yg * xx - xg * xy) / determinant;
  }
  return paper;
}

// What of a pel is kept, the rest becoming paper: ink of neighbours and its rim go, the rim of the
// character's own ink stays.
double keptShare(const Picture& picture, const InkMap& map, rzLong x, rzLong y) {
  const PelKind kind = map.at(x, y);
  if (kind == PelKind::kOutside || kind == PelKind::kForeign) return 0.0;
  if (kind == PelKind::kOwn) return 1.0;
  const bool isOwnRim = map.isNear(x, y, PelKind::kOwn, 1);
  if (map.isNear(x, y, PelKind::kForeign, 1)) return isOwnRim ? 0.5 : 0.0;
  // Further out a tinge is the rim of a neighbour, or dirt.
  const bool isTinged = map.scale.isTinged(*picture.pointToPel(x, y));
  return isTinged && !map.isNear(x, y, PelKind::kOwn, 2) ? 0.0 : 1.0;
}

/// The surroundings of the character with nothing else in them.
struct Cleaned {
  rzPelRect region;
  std::vector<double> greys;

  double at(rzLong x, rzLong y) const {
    const rzLong column = std::clamp(x - region.x(), 0, region.width() - 1);
    const rzLong row = std::clamp(y - region.y(), 0, region.height() - 1);
    return greys[static_cast<std::size_t>(row) * static_cast<std::size_t>(region.width()) +
                 static_cast<std::size_t>(column)];
  }
};

Cleaned cleaned(const Picture& picture, const InkMap& map) {
  const Paper paper = fitPaper(picture, map);
  Cleaned clean{map.region, {}};
  clean.greys.reserve(map.kinds.size());
  for (rzLong y = map.region.y(); y < map.region.ll().y(); ++y) {
    for (rzLong x = map.region.x(); x < map.region.ur().x(); ++x) {
      const double share = keptShare(picture, map, x, y);
      const double seen = share > 0.0 ? *picture.pointToPel(x, y) : 0.0;
      clean.greys.push_back(share * seen + (1.0 - share) * paper.at(x, y));
    }
  }
  return clean;
}

/// A row of pels along one axis whose middle is that of the ink.
struct Span {
  rzLong count = 0;
  double start = 0.0;
};

// Of the two whole lengths next to the exact one, that with which the shift is the smaller: a
// quarter of a pel at most. Always to take the longer one would push neighbours' boxes together.
Span spanAround(double ink, double length, rzLong margin) {
  const auto spanOf = [&](double whole) {
    Span span{static_cast<rzLong>(whole) + 2 * margin, 0.0};
    span.start = ink + 0.5 * (length - span.count);
    return span;
  };
  const auto shiftOf = [](const Span& span) {
    return std::abs(span.start - std::round(span.start));
  };
  const Span shorter = spanOf(std::max(1.0, std::floor(length)));
  const Span longer = spanOf(std::max(1.0, std::ceil(length)));
  Span span = shiftOf(longer) < shiftOf(shorter) ? longer : shorter;
  if (shiftOf(span) < kUnshifted) span.start = std::round(span.start);
  return span;
}

// Weights of four samples for a place `t` past the second (R. Keys, "Cubic convolution
// interpolation for digital image processing", IEEE Trans. ASSP 29, 1981, a = -1/2).
std::array<double, kTaps> cubicWeights(double t) {
  return {t * (-0.5 + t * (1.0 - 0.5 * t)), 1.0 + t * t * (-2.5 + 1.5 * t),
          t * (0.5 + t * (2.0 - 1.5 * t)), t * t * (-0.5 + 0.5 * t)};
}

Picture sampled(const Cleaned& clean, const Span& columns, const Span& rows) {
  Picture image(rzPelRect(0, 0, columns.count, rows.count), 32);
  const auto left = static_cast<rzLong>(std::floor(columns.start));
  const auto top = static_cast<rzLong>(std::floor(rows.start));
  const std::array<double, kTaps> across = cubicWeights(columns.start - left);
  const std::array<double, kTaps> down = cubicWeights(rows.start - top);
  for (rzLong y = 0; y < rows.count; ++y) {
    for (rzLong x = 0; x < columns.count; ++x) {
      double sum = 0.0;
      for (rzLong v = 0; v < kTaps; ++v) {
        for (rzLong u = 0; u < kTaps; ++u) {
          sum += down[static_cast<std::size_t>(v)] * across[static_cast<std::size_t>(u)] *
                 clean.at(left + x + u - 1, top + y + v - 1);
        }
      }
      *image.pointToPel(x, y) =
          static_cast<unsigned char>(std::lround(std::clamp(sum, 0.0, 255.0)));
    }
  }
  return image;
}

}  // namespace

CutOut cutOut(const Picture& picture, const rzPelRect& box, rzLong margin, Polarity polarity) {
  constexpr rzLong kSupport = 4;  // a pel that the ink may stick out, one to centre, two to sample
  const InkMap map = mapInk(picture, box, margin + kSupport, polarity);
  CutOut cut;
  cut.ink = inkBox(picture, map, box);
  const Span columns = spanAround(cut.ink.x(), cut.ink.width(), margin);
  const Span rows = spanAround(cut.ink.y(), cut.ink.height(), margin);
  cut.corner = rzVector<2>(columns.start, rows.start);
  cut.image = sampled(cleaned(picture, map), columns, rows);
  return cut;
}

}  // namespace glyphline
