// SPDX-License-Identifier: Apache-2.0
#include "rz/sampling.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/foundation/pels/sample_grid.h"
#include "platform/foundation/pels/sample_reach.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

constexpr rzLong kRowAlign = 32;

// Halves go up, also those that the last digits of the sum have left a little below.
constexpr double kTieSlack = 1e-9;

unsigned char rounded(double value) {
  return static_cast<unsigned char>(std::floor(std::clamp(value, 0.0, 255.0) + 0.5 + kTieSlack));
}

// The window as samplers see it: pels by column and row from 0, and the border pels repeated for
// ever beyond it.
class PelPlane {
 public:
  explicit PelPlane(const Image& image)
      : origin_(image.window().ul()),
        width_(image.width()),
        height_(image.height()),
        pels_(image.pointToPel(image.window().x(), image.window().y())),
        rowStep_(image.rowUpdate()) {}

  // In columns and rows, and so near to the window that it can be rounded to whole numbers. All
  // places beyond the border pels' centres see the same value along that axis.
  rzVector<2> local(const rzVector<2>& place) const {
    return {kept(place.x() - origin_.x(), width_), kept(place.y() - origin_.y(), height_)};
  }
  const unsigned char* row(rzLong y) const {
    return pels_ + std::clamp(y, rzLong{0}, height_ - 1) * rowStep_;
  }
  rzLong column(rzLong x) const { return std::clamp(x, rzLong{0}, width_ - 1); }

 private:
  static double kept(double coordinate, rzLong size) {
    constexpr double kBeyond = 4.0;  // further out than any interpolation reaches
    if (!(coordinate > -kBeyond)) return -kBeyond;
    return std::min(coordinate, size + kBeyond);
  }

  rzVector<2> origin_;
  rzLong width_;
  rzLong height_;
  const unsigned char* pels_;
  std::ptrdiff_t rowStep_;
};

unsigned char nearest(const PelPlane& plane, const rzVector<2>& place) {
  return plane.row(nearestPel(place.y()))[plane.column(nearestPel(place.x()))];
}

unsigned char bilinear(const PelPlane& plane, const rzVector<2>& place) {
  const PelFraction x = pelFraction(place.x());
  const PelFraction y = pelFraction(place.y());
  const rzLong left = plane.column(x.pel);
  const rzLong right = plane.column(x.pel + 1);
  const auto along = [&](const unsigned char* row) {
    return row[left] + x.fraction * (row[right] - row[left]);
  };
  const double upper = along(plane.row(y.pel));
  const double lower = along(plane.row(y.pel + 1));
  return rounded(upper + y.fraction * (lower - upper));
}

// Keys' kernel with a = -1/2 for the pels -1, 0, 1, 2 of a place at the fraction t.
std::array<double, 4> bicubicWeights(double t) {
  return {((-0.5 * t + 1.0) * t - 0.5) * t, (1.5 * t - 2.5) * t * t + 1.0,
          ((-1.5 * t + 2.0) * t + 0.5) * t, (0.5 * t - 0.5) * t * t};
}

unsigned char bicubic(const PelPlane& plane, const rzVector<2>& place) {
  const PelFraction x = pelFraction(place.x());
  const PelFraction y = pelFraction(place.y());
  const auto xWeights = bicubicWeights(x.fraction);
  const auto yWeights = bicubicWeights(y.fraction);
  double sum = 0.0;
  for (rzLong j = 0; j < 4; ++j) {
    const unsigned char* row = plane.row(y.pel - 1 + j);
    double rowSum = 0.0;
    for (rzLong i = 0; i < 4; ++i) {
      rowSum += xWeights[static_cast<std::size_t>(i)] * row[plane.column(x.pel - 1 + i)];
    }
    sum += yWeights[static_cast<std::size_t>(j)] * rowSum;
  }
  return rounded(sum);
}

template <auto sampler>
void sampleAll(const Image& src, const SampleGrid& grid, const rzPelBuffer<unsigned char>& out) {
  const PelPlane plane(src);
  const auto columns = grid.columnOffsets();
  for (rzLong j = 0; j < grid.numRows(); ++j) {
    const rzVector<2> start = grid.rowStart(j);
    std::transform(columns.begin(), columns.end(), out.pointToPel(0, j),
                   [&](const rzVector<2>& column) {
                     return sampler(plane, plane.local(grid.place(start + column)));
                   });
  }
}

}  // namespace

rzPelBuffer<unsigned char> rfAffineTransformImage(const Image& src,
                                                  const rzAffineSamplingParams& params) {
  src.requireBound();
  if (src.window().isNull()) throw rzPel::BadWindow("The window shows no pels");
  rzPelBuffer<unsigned char> out(rzPelRect(0, 0, params.xNumSamples(), params.yNumSamples()),
                                 kRowAlign);
  out.clientFromImageXform(params.clientFromSamples());
  const SampleGrid grid(src, params);
  switch (params.interpolation()) {
    case rzAffineSamplingParams::eNearest:
      sampleAll<nearest>(src, grid, out);
      break;
    case rzAffineSamplingParams::eBilinear:
      sampleAll<bilinear>(src, grid, out);
      break;
    case rzAffineSamplingParams::eBicubic:
      sampleAll<bicubic>(src, grid, out);
      break;
  }
  return out;
}

void rfAffineTransformImage(const Image& src, rzPelBuffer<unsigned char>& out,
                            const rzAffineSamplingParams& params) {
  out = rfAffineTransformImage(src, params);
}
