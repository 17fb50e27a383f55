// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/nrm_search.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "rz/archive.h"
#include "rz/attention.h"
#include "rz/xform_base.h"

RZ_DEFINE_EXCEPTION_LEAF(rzNrmSearchDefs::Errors, rzExceptionWithString, 0x10000410)

namespace {

constexpr double kLeastCorrelation = 0.7;  // below it a place is not looked at more closely
// What scores 0, and the most that a likeness scores: what correlates well is ranked by that, since
// it tells the place best. A score of 0.3 asks for a correlation of 0.90 or a likeness of 0.85.
constexpr double kNoCorrelation = 0.86;
constexpr double kNoLikeness = 0.625;
constexpr double kMostForLikeness = 0.5;

constexpr rzLong kNumStrips = 4;    // of a template, from top to bottom
constexpr double kTooLow = -2.0;    // stands for a correlation that cannot be accepted
constexpr double kRounding = 1e-6;  // of a correlation in doubles, by far

// 0 at `zero`, 1 at 1.
double scaled(double value, double zero) { return std::max(0.0, (value - zero) / (1.0 - zero)); }

// Correlation at each place of the template that is looked at, in pel coordinates of the picture.
struct Surface {
  rzPelRect places;
  std::vector<double> values;

  rzLong right() const { return places.lr().x() - 1; }
  rzLong bottom() const { return places.lr().y() - 1; }
  double at(rzLong x, rzLong y) const { return values[index(x, y)]; }
  double& at(rzLong x, rzLong y) { return values[index(x, y)]; }
  std::size_t index(rzLong x, rzLong y) const {
    const std::int64_t row = std::int64_t{y} - places.y();
    return static_cast<std::size_t>(row * places.width() + (x - places.x()));
  }
};

// The k-th of the rows, from the middle one outwards: there the character is looked for, and the
// sooner it is seen, the sooner all else is passed over.
rzLong fromTheMiddle(rzLong first, rzLong count, rzLong k) {
  return first + count / 2 + (k % 2 == 0 ? k / 2 : -(k + 1) / 2);
}

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

std::vector<Peak> peaksOf(const Surface& surface, double accept, const rz_PrintLikeness& likeness,
                          const rzPelBuffer_const<unsigned char>& image) {
  std::vector<Peak> peaks;
  for (rzLong y = surface.places.y(); y <= surface.bottom(); ++y) {
    for (rzLong x = surface.places.x(); x <= surface.right(); ++x) {
      if (!isPeak(surface, x, y)) continue;
      const double r = surface.at(x, y);
      double score = scaled(r, kNoCorrelation);
      if (r >= kLeastCorrelation) {
        const double likenessThere = likeness.of(image, x, y);
        score = std::max(score, kMostForLikeness * scaled(likenessThere, kNoLikeness));
      }
      if (score >= accept) peaks.push_back({x, y, score});
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

// Correlates a template with the windows of one picture; places are pel coordinates of the picture.
class rz_NrmMatcher {
 public:
  rz_NrmMatcher(const rzNrmSearchModel& model, const rzPelBuffer_const<unsigned char>& image)
      : model_(model),
        corner_(image.window().ul()),
        width_(static_cast<std::size_t>(model.size_.x())),
        height_(static_cast<std::size_t>(model.size_.y())),
        picture_(image),
        windows_(picture_) {}

  /// The correlation there, or kTooLow when it is found out early to be less than `required`.
  double correlation(rzLong column, rzLong row, double required = kTooLow) const {
    const auto x = static_cast<std::size_t>(column - corner_.x());
    const auto y = static_cast<std::size_t>(row - corner_.y());
    rz_PairSums sums = model_.own_;
    sums.b = windows_.sum(x, y, width_, height_);
    sums.bb = windows_.squares(x, y, width_, height_);
    sums.ab = 0;
    for (const rzNrmSearchModel::Strip& strip : model_.strips_) {
      const std::size_t top = y + static_cast<std::size_t>(strip.y);
      sums.ab += rf_CrossSum(strip.pels, picture_, static_cast<std::ptrdiff_t>(x),
                             static_cast<std::ptrdiff_t>(top));
      const std::size_t height = top - y + strip.pels.height();
      if (height < height_ && isTooLow_(sums, strip, x, y, height, required)) return kTooLow;
    }
    return rf_Correlation(sums);
  }

  /// The vertex of the parabolas through the peak and its neighbours in `places`.
  rzVector<2> subPelPeak(rzLong x, rzLong y, const rzPelRect& places) const {
    double dx = 0.0;
    double dy = 0.0;
    const double value = correlation(x, y);
    if (x > places.x() && x + 1 < places.lr().x()) {
      dx = parabolaVertex(correlation(x - 1, y), value, correlation(x + 1, y));
    }
    if (y > places.y() && y + 1 < places.lr().y()) {
      dy = parabolaVertex(correlation(x, y - 1), value, correlation(x, y + 1));
    }
    return {x + dx, y + dy};
  }

 private:
  // The covariance of the rows so far is known; by the inequality of Cauchy and Schwarz the rows
  // below add no more than the root of the product of their energies.
  bool isTooLow_(const rz_PairSums& sums, const rzNrmSearchModel::Strip& strip, std::size_t x,
                 std::size_t y, std::size_t height, double required) const {
    const auto n = static_cast<double>(sums.n);
    const double meanA = static_cast<double>(sums.a) / n;
    const double meanB = static_cast<double>(sums.b) / n;
    const double energyA = static_cast<double>(sums.aa) - meanA * static_cast<double>(sums.a);
    const double energyB = static_cast<double>(sums.bb) - meanB * static_cast<double>(sums.b);
    const auto nAbove = static_cast<double>(strip.upToHere.n);
    const auto aAbove = static_cast<double>(strip.upToHere.a);
    const auto bAbove = static_cast<double>(windows_.sum(x, y, width_, height));
    const auto bbAbove = static_cast<double>(windows_.squares(x, y, width_, height));
    const double covariance =
        static_cast<double>(sums.ab) - meanA * bAbove - meanB * aAbove + nAbove * meanA * meanB;
    const double energyAbove = bbAbove - 2.0 * meanB * bAbove + nAbove * meanB * meanB;
    const double energyBelow = std::max(0.0, energyB - energyAbove);
    return covariance + std::sqrt(strip.energyBelow * energyBelow) <
           (required - kRounding) * std::sqrt(energyA * energyB);
  }

  const rzNrmSearchModel& model_;
  rzPair<rzLong> corner_;
  std::size_t width_;
  std::size_t height_;
  rz_WidePels picture_;
  rz_WindowSums windows_;
};

void rzNrmSearchModel::train(const rzPelBuffer_const<unsigned char>& image,
                             const rzNrmSearchTrainParams&, rzDiagObject*, rzULong) {
  const rzPelRect window = image.window();
  const rz_WidePels pattern(image);
  const rz_WindowSums sums(pattern);
  const std::size_t width = pattern.width();
  const auto rows = [](rzLong count) { return static_cast<std::size_t>(count); };
  rz_PairSums own;
  own.n = window.area();
  own.a = sums.sum(0, 0, width, pattern.height());
  own.aa = sums.squares(0, 0, width, pattern.height());
  if (rf_ScaledVariance(own.n, own.a, own.aa) == 0) {
    throw rzNrmSearchDefs::Errors("The template is flat.");
  }
  std::vector<Strip> strips;
  for (rzLong k = 0; k < kNumStrips; ++k) {
    const rzLong top = window.height() * k / kNumStrips;
    const rzLong bottom = window.height() * (k + 1) / kNumStrips;
    if (top == bottom) continue;
    rzPelBuffer_const<unsigned char> part = image;
    part.window(rzPelRect(window.x(), window.y() + top, window.width(), bottom - top), false);
    rz_PairSums above;
    above.n = std::int64_t{window.width()} * bottom;
    above.a = sums.sum(0, 0, width, rows(bottom));
    above.aa = sums.squares(0, 0, width, rows(bottom));
    const double mean = static_cast<double>(own.a) / static_cast<double>(own.n);
    const double energyBelow = static_cast<double>(own.aa - above.aa) -
                               2.0 * mean * static_cast<double>(own.a - above.a) +
                               mean * mean * static_cast<double>(own.n - above.n);
    strips.push_back({rz_WidePels(part), top, above, std::max(0.0, energyBelow)});
  }
  const rzVector<2> origin = image.imageFromClientXformBase()->mapPoint(rzVector<2>());
  strips_ = std::move(strips);
  size_ = window.size();
  origin_ = origin - rzVector<2>(window.ul());
  own_ = own;
  likeness_ = rz_PrintLikeness(image);
}

void rzNrmSearchModel::run(const rzPelBuffer_const<unsigned char>& image,
                           const rzNrmSearchRunParams& params, const rzPelRect& searchRect,
                           rzNrmSearchResultSet& set, rzDiagObject*, rzULong) const {
  set.results_.clear();
  rzAttention::check();
  const rzPelRect places = placesOf(size_, image.window(), searchRect);
  if (own_.n == 0 || places.isNull()) return;

  const rz_NrmMatcher matcher(*this, image);
  double required = params.accept() > 0.0 ? kLeastCorrelation : kTooLow;
  Surface surface{places, std::vector<double>(static_cast<std::size_t>(places.area()), kTooLow)};
  for (rzLong k = 0; k < places.height(); ++k) {
    rzAttention::check();
    const rzLong y = fromTheMiddle(places.y(), places.height(), k);
    for (rzLong x = places.x(); x < places.lr().x(); ++x) {
      const double r = matcher.correlation(x, y, required);
      surface.at(x, y) = r;
      // Of one result that is ranked by correlation, only a place that correlates better is one.
      const bool isClear = scaled(r, kNoCorrelation) > kMostForLikeness;
      if (params.maxNumResults() == 1 && isClear) required = std::max(required, r);
    }
  }
  const auto clientFromImage = image.clientFromImageXformBase();
  for (const Peak& peak :
       separatePeaks(peaksOf(surface, params.accept(), likeness_, image), size_, params)) {
    const rzVector<2> corner = matcher.subPelPeak(peak.x, peak.y, places);
    set.results_.emplace_back(peak.score, true, clientFromImage->mapPoint(corner + origin_));
  }
}
