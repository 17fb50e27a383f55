// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/edge_points.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "rz/attention.h"

namespace finder {

namespace {

constexpr double kWeakest = 0.2;         // of the strong edges' gradient
constexpr double kStrongShare = 0.1;     // the share of edge points that counts as strong
constexpr double kWeakestStep = 5.0;     // grey levels of an ideal step
constexpr double kClose = 0.6;           // pels from a ridge at which it is measured again
constexpr double kOwnPel = 0.52;         // half a pel, and a little for noise
constexpr double kNeighbour = 1.8;       // pels across and down between neighbours of a piece
constexpr double kShortestPiece = 4.0;   // times the smoothing: shorter ones are noise
constexpr double kShortestShare = 0.02;  // of all edge points

// R. G. Keys, "Cubic convolution interpolation for digital image processing", 1981.
std::array<double, 4> cubicWeights(double t) {
  const double u = 1.0 - t;
  return {-0.5 * t * u * u, 1.0 - t * t * (2.5 - 1.5 * t), 1.0 - u * u * (2.5 - 1.5 * u),
          -0.5 * u * t * t};
}

struct Field {
  int width;
  int height;
  std::vector<Vec2> values;

  Vec2 at(int x, int y) const {
    x = std::clamp(x, 0, width - 1);
    y = std::clamp(y, 0, height - 1);
    return values[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
  // Between the samples, by cubic convolution; sample (0, 0) lies at (0, 0). Straight lines between
  // them would flatten the ridges.
  Vec2 between(double x, double y) const {
    const int ix = static_cast<int>(std::floor(x));
    const int iy = static_cast<int>(std::floor(y));
    const std::array<double, 4> wx = cubicWeights(x - ix);
    const std::array<double, 4> wy = cubicWeights(y - iy);
    Vec2 sum;
    for (int j = 0; j < 4; ++j) {
      Vec2 row;
      for (int i = 0; i < 4; ++i) {
        row = row + wx[static_cast<std::size_t>(i)] * at(ix + i - 1, iy + j - 1);
      }
      sum = sum + wy[static_cast<std::size_t>(j)] * row;
    }
    return sum;
  }
};

struct Kernel {
  int radius;
  std::vector<double> smooth;
  std::vector<double> slope;
};

Kernel kernelOf(double sigma) {
  const int radius = static_cast<int>(std::ceil(3.0 * sigma));
  Kernel kernel{radius, {}, {}};
  double sum = 0.0;
  double moment = 0.0;
  for (int i = -radius; i <= radius; ++i) {
    const double g = std::exp(-0.5 * i * i / (sigma * sigma));
    kernel.smooth.push_back(g);
    kernel.slope.push_back(i * g);
    sum += g;
    moment += i * i * g;
  }
  for (double& v : kernel.smooth) v /= sum;
  for (double& v : kernel.slope) v /= moment;  // a ramp of 1 per pel gives 1
  return kernel;
}

// The row, with its ends going on for `reach` more on both sides.
void extendRow(const std::uint8_t* pels, int width, int reach, std::vector<double>& row) {
  for (int i = 0; i < width + 2 * reach; ++i) {
    row[static_cast<std::size_t>(i)] = pels[std::clamp(i - reach, 0, width - 1)];
  }
}

// out[x] += weight * in[x]
void addRow(double weight, const double* in, int width, double* out) {
  for (int x = 0; x < width; ++x) out[x] += weight * in[x];
}

Field gradientField(const PelView& view, double sigma) {
  const Kernel kernel = kernelOf(sigma);
  const auto width = static_cast<std::size_t>(view.width);
  const std::size_t size = width * static_cast<std::size_t>(view.height);
  const int taps = 2 * kernel.radius + 1;
  // Filtered along x.
  std::vector<double> slopes(size, 0.0);
  std::vector<double> smooths(size, 0.0);
  std::vector<double> row(width + 2 * static_cast<std::size_t>(kernel.radius));
  for (int y = 0; y < view.height; ++y) {
    rzAttention::check();
    extendRow(view.pels + y * view.stride, view.width, kernel.radius, row);
    const std::size_t at = static_cast<std::size_t>(y) * width;
    for (int k = 0; k < taps; ++k) {
      const auto i = static_cast<std::size_t>(k);
      addRow(kernel.slope[i], row.data() + k, view.width, slopes.data() + at);
      addRow(kernel.smooth[i], row.data() + k, view.width, smooths.data() + at);
    }
  }
  Field field{view.width, view.height, std::vector<Vec2>(size)};
  std::vector<double> gx(width);
  std::vector<double> gy(width);
  for (int y = 0; y < view.height; ++y) {
    rzAttention::check();
    std::fill(gx.begin(), gx.end(), 0.0);
    std::fill(gy.begin(), gy.end(), 0.0);
    for (int k = 0; k < taps; ++k) {
      const int from = std::clamp(y + k - kernel.radius, 0, view.height - 1);
      const std::size_t at = static_cast<std::size_t>(from) * width;
      const auto i = static_cast<std::size_t>(k);
      addRow(kernel.smooth[i], slopes.data() + at, view.width, gx.data());
      addRow(kernel.slope[i], smooths.data() + at, view.width, gy.data());
    }
    Vec2* values = field.values.data() + static_cast<std::size_t>(y) * width;
    for (std::size_t x = 0; x < width; ++x) values[x] = {gx[x], gy[x]};
  }
  return field;
}

// Where a parabola through three even steps has its peak, in steps from the middle one.
double peakBetween(double before, double here, double after) {
  const double bend = before - 2.0 * here + after;
  return bend < 0.0 ? std::clamp(0.5 * (before - after) / bend, -1.0, 1.0) : 0.0;
}

// The edge point in pel (x, y), if the gradient's magnitude has its ridge there.
bool ridgeAt(const Field& field, int x, int y, double weakest, EdgePoint& point) {
  const Vec2 g = field.at(x, y);
  const double here = length(g);
  if (here < weakest) return false;
  const Vec2 n = (1.0 / here) * g;
  const double before = length(field.between(x - n.x, y - n.y));
  const double after = length(field.between(x + n.x, y + n.y));
  if (here < before || here <= after) return false;
  double offset = peakBetween(before, here, after);
  // Ridge points of a straight edge stand once in every row, or every column, that it crosses.
  const double steepness = std::max(std::abs(n.x), std::abs(n.y));
  const auto sizeAt = [&](double along) {
    return length(field.between(x + along * n.x, y + along * n.y));
  };
  offset += peakBetween(sizeAt(offset - kClose), sizeAt(offset), sizeAt(offset + kClose)) * kClose;
  if (std::abs(offset) > kOwnPel * steepness) return false;
  const Vec2 place{x + offset * n.x, y + offset * n.y};
  point.place = place + Vec2{0.5, 0.5};
  point.gradient = field.between(place.x, place.y);
  if (length(point.gradient) <= 0.0) return false;
  point.length = 1.0 / steepness;
  return true;
}

// Of points in the order of their pels, row by row: those, first and end, that may lie as near to
// point `k` as neighbours do.
std::pair<std::size_t, std::size_t> nearRows(const std::vector<EdgePoint>& points, std::size_t k) {
  // Places of one row may be that much above or below those of the next.
  constexpr double kWindow = kNeighbour + 2.0 * kOwnPel;
  const double y = points[k].place.y;
  std::size_t first = k;
  while (first > 0 && points[first - 1].place.y >= y - kWindow) --first;
  std::size_t end = k + 1;
  while (end < points.size() && points[end].place.y <= y + kWindow) ++end;
  return {first, end};
}

// Drops pieces of the outline that are too short to be more than noise.
void dropShortPieces(std::vector<EdgePoint>& points, double shortest) {
  const std::size_t count = points.size();
  std::vector<char> seen(count, 0);
  std::vector<EdgePoint> kept;
  for (std::size_t i = 0; i < count; ++i) {
    if (seen[i]) continue;
    std::vector<std::size_t> piece{i};
    seen[i] = 1;
    for (std::size_t k = 0; k < piece.size(); ++k) {
      const auto [first, end] = nearRows(points, piece[k]);
      for (std::size_t j = first; j < end; ++j) {
        if (seen[j]) continue;
        const Vec2 d = points[j].place - points[piece[k]].place;
        if (std::abs(d.x) > kNeighbour || std::abs(d.y) > kNeighbour) continue;
        if (dot(points[j].gradient, points[piece[k]].gradient) <= 0.0) continue;
        seen[j] = 1;
        piece.push_back(j);
      }
    }
    if (static_cast<double>(piece.size()) < shortest) continue;
    for (const std::size_t k : piece) kept.push_back(points[k]);
  }
  points = std::move(kept);
}

double strongGradient(const std::vector<EdgePoint>& points) {
  std::vector<double> sizes;
  sizes.reserve(points.size());
  for (const EdgePoint& p : points) sizes.push_back(length(p.gradient));
  const auto rank = static_cast<std::ptrdiff_t>(kStrongShare * static_cast<double>(sizes.size()));
  std::nth_element(sizes.begin(), sizes.begin() + rank, sizes.end(), std::greater<>());
  return sizes[static_cast<std::size_t>(rank)];
}

}  // namespace

std::vector<EdgePoint> edgePointsOf(const PelView& view, double sigma) {
  std::vector<EdgePoint> points;
  if (view.width < 3 || view.height < 3) return points;
  const Field field = gradientField(view, sigma);
  const double weakest = kWeakestStep / (sigma * std::sqrt(2.0 * std::numbers::pi));
  for (int y = 1; y < view.height - 1; ++y) {
    for (int x = 1; x < view.width - 1; ++x) {
      EdgePoint point;
      if (ridgeAt(field, x, y, weakest, point)) points.push_back(point);
    }
  }
  if (points.empty()) return points;
  const double floor = kWeakest * strongGradient(points);
  std::erase_if(points, [floor](const EdgePoint& p) { return length(p.gradient) < floor; });
  dropShortPieces(points, std::max(kShortestPiece * sigma,
                                   kShortestShare * static_cast<double>(points.size())));
  return points;
}

}  // namespace finder
