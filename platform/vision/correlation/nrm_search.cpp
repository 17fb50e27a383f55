// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/nrm_search.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "rz/archive.h"
#include "rz/attention.h"
#include "rz/xform_base.h"

RZ_DEFINE_EXCEPTION_LEAF(rzNrmSearchDefs::Errors, rzExceptionWithString, 0x10000410)

namespace {

constexpr double kLikenessRange = 0.2;  // a correlation so far below 1 scores 0

double scoreOf(double correlation) {
  return std::max(0.0, 1.0 - (1.0 - correlation) / kLikenessRange);
}

// Correlation at each place of the template that is looked at, in pel coordinates of the picture.
struct Surface {
  rzPelRect places;
  std::vector<double> values;

  rzLong right() const { return places.lr().x() - 1; }
  rzLong bottom() const { return places.lr().y() - 1; }
  double at(rzLong x, rzLong y) const {
    const std::int64_t row = std::int64_t{y} - places.y();
    return values[static_cast<std::size_t>(row * places.width() + (x - places.x()))];
  }
};

// A place is a peak when no neighbour is better; among equals the first in reading order is it.
bool isPeak(const Surface& surface, rzLong x, rzLong y) {
  const double value = surface.at(x, y);
  for (rzLong v = std::max(y - 1, surface.places.y()); v <= std::min(y + 1, surface.bottom());
       ++v) {
    for (rzLong u = std::max(x - 1, surface.places.x()); u <= std::min(x + 1, surface.right());
         ++u) {
      const bool isBefore = v < y || (v == y && u < x);
      const double other = surface.at(u, v);
      if (other > value || (isBefore && other == value)) return false;
    }
  }
  return true;
}

// The vertex of the parabola through three values a step apart, from the middle one; at most half
// a step, since the middle one is the largest.
double parabolaVertex(double before, double middle, double after) {
  const double bend = before - 2.0 * middle + after;
  return bend < 0.0 ? std::clamp(0.5 * (before - after) / bend, -0.5, 0.5) : 0.0;
}

rzVector<2> subPelPeak(const Surface& surface, rzLong x, rzLong y) {
  double dx = 0.0;
  double dy = 0.0;
  const double value = surface.at(x, y);
  if (x > surface.places.x() && x < surface.right()) {
    dx = parabolaVertex(surface.at(x - 1, y), value, surface.at(x + 1, y));
  }
  if (y > surface.places.y() && y < surface.bottom()) {
    dy = parabolaVertex(surface.at(x, y - 1), value, surface.at(x, y + 1));
  }
  return {x + dx, y + dy};
}

struct Peak {
  rzLong x;
  rzLong y;
  double score;
};

// The share of its area that one template has in common with another.
double commonShare(const Peak& a, const Peak& b, rzPair<rzLong> size) {
  const rzPelRect boxA(a.x, a.y, size.x(), size.y());
  const rzPelRect boxB(b.x, b.y, size.x(), size.y());
  return static_cast<double>(boxA.intersect(boxB).area()) / static_cast<double>(boxA.area());
}

std::vector<Peak> peaksOf(const Surface& surface, double accept) {
  std::vector<Peak> peaks;
  for (rzLong y = surface.places.y(); y <= surface.bottom(); ++y) {
    for (rzLong x = surface.places.x(); x <= surface.right(); ++x) {
      const double score = scoreOf(surface.at(x, y));
      if (score >= accept && isPeak(surface, x, y)) peaks.push_back({x, y, score});
    }
  }
  return peaks;
}

// The best peaks that do not lie on a better one.
std::vector<Peak> separatePeaks(std::vector<Peak> peaks, rzPair<rzLong> size,
                                const rzNrmSearchRunParams& params) {
  const std::size_t limit =
      params.maxNumResults() < 0 ? peaks.size() : static_cast<std::size_t>(params.maxNumResults());
  std::stable_sort(peaks.begin(), peaks.end(),
                   [](const Peak& a, const Peak& b) { return a.score > b.score; });
  std::vector<Peak> kept;
  for (const Peak& peak : peaks) {
    if (kept.size() >= limit) break;
    const bool isCovered = std::any_of(kept.begin(), kept.end(), [&](const Peak& better) {
      return commonShare(peak, better, size) > params.xyOverlap();
    });
    if (!isCovered) kept.push_back(peak);
  }
  return kept;
}

// Where the template's corner may stand so that it lies in `window`.
rzPelRect placesOf(rzPair<rzLong> size, const rzPelRect& window, const rzPelRect& searchRect) {
  constexpr rzPelRect kUnrestricted(0, 0, 1, 1);
  const rzPelRect inside(window.x(), window.y(), window.width() - size.x() + 1,
                         window.height() - size.y() + 1);
  if (inside.isNull()) return {};
  return searchRect == kUnrestricted ? inside : inside.intersect(searchRect);
}

}  // namespace

void rzNrmSearchModel::train(const rzPelBuffer_const<unsigned char>& image,
                             const rzNrmSearchTrainParams&, rzDiagObject*, rzULong) {
  rz_WidePels pattern(image);
  const rz_WindowSums sums(pattern);
  rz_PairSums own;
  own.n = image.window().area();
  own.a = sums.sum(0, 0, pattern.width(), pattern.height());
  own.aa = sums.squares(0, 0, pattern.width(), pattern.height());
  if (rf_ScaledVariance(own.n, own.a, own.aa) == 0) {
    throw rzNrmSearchDefs::Errors("The template is flat.");
  }
  const rzVector<2> origin = image.imageFromClientXformBase()->mapPoint(rzVector<2>());
  pattern_ = std::move(pattern);
  size_ = image.window().size();
  origin_ = origin - rzVector<2>(image.window().ul());
  own_ = own;
}

// The correlation of the template with each window of the picture whose corner is one of `places`.
std::vector<double> rzNrmSearchModel::correlations_(const rzPelBuffer_const<unsigned char>& image,
                                                    const rzPelRect& places) const {
  const rz_WidePels picture(image);
  const rz_WindowSums windows(picture);
  std::vector<double> values;
  values.reserve(static_cast<std::size_t>(places.area()));
  rz_PairSums sums = own_;
  for (rzLong row = places.y(); row < places.lr().y(); ++row) {
    rzAttention::check();
    for (rzLong column = places.x(); column < places.lr().x(); ++column) {
      const auto x = static_cast<std::size_t>(column - image.window().x());
      const auto y = static_cast<std::size_t>(row - image.window().y());
      sums.b = windows.sum(x, y, pattern_.width(), pattern_.height());
      sums.bb = windows.squares(x, y, pattern_.width(), pattern_.height());
      sums.ab = rf_CrossSum(pattern_, picture, static_cast<std::ptrdiff_t>(x),
                            static_cast<std::ptrdiff_t>(y));
      values.push_back(rf_Correlation(sums));
    }
  }
  return values;
}

void rzNrmSearchModel::run(const rzPelBuffer_const<unsigned char>& image,
                           const rzNrmSearchRunParams& params, const rzPelRect& searchRect,
                           rzNrmSearchResultSet& set, rzDiagObject*, rzULong) const {
  set.results_.clear();
  rzAttention::check();
  const rzPelRect places = placesOf(size_, image.window(), searchRect);
  if (own_.n == 0 || places.isNull()) return;

  const Surface surface{places, correlations_(image, places)};
  const auto clientFromImage = image.clientFromImageXformBase();
  for (const Peak& peak : separatePeaks(peaksOf(surface, params.accept()), size_, params)) {
    const rzVector<2> corner = subPelPeak(surface, peak.x, peak.y);
    set.results_.emplace_back(peak.score, true, clientFromImage->mapPoint(corner + origin_));
  }
}
