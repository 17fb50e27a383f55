// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <limits>

#include "platform/foundation/pels/sample_grid.h"
#include "platform/foundation/pels/sample_reach.h"
#include "rz/archive.h"
#include "rz/math_error.h"
#include "rz/sampling.h"

RZ_DEFINE_EXCEPTION_LEAF(rzAffineSamplingDefs::BadParams, rzExceptionWithString, 0x10000300)

namespace {

using Interpolation = rzAffineSamplingParams::Interpolation;

bool isKnown(Interpolation interpolation) {
  return interpolation >= rzAffineSamplingParams::eNearest &&
         interpolation <= rzAffineSamplingParams::eBicubic;
}

bool isFinite(const rzAffineRectangle& rectangle) {
  return rectangle.cornerPo().isFinite() && rectangle.cornerPx().isFinite() &&
         rectangle.cornerPy().isFinite();
}

bool reachesBeyond(double coordinate, rzLong start, rzLong size, Interpolation interpolation) {
  const double end = static_cast<double>(start) + size;
  if (!(coordinate > start - 1.0 && coordinate < end + 1.0)) return true;
  const PelReach reach = pelReach(coordinate, interpolation);
  return reach.first < start || std::int64_t{reach.last} >= std::int64_t{start} + size;
}

bool reachesBeyond(const rzVector<2>& place, const rzPelRect& window, Interpolation interpolation) {
  return reachesBeyond(place.x(), window.x(), window.width(), interpolation) ||
         reachesBeyond(place.y(), window.y(), window.height(), interpolation);
}

bool cornersReachBeyond(const SampleGrid& grid, const rzPelRect& window,
                        Interpolation interpolation) {
  const auto columns = grid.columnOffsets();
  for (const rzLong j : {rzLong{0}, grid.numRows() - 1}) {
    const rzVector<2> row = grid.rowStart(j);
    for (const rzVector<2>& column : {columns.front(), columns.back()}) {
      if (reachesBeyond(row + column, window, interpolation)) return true;
    }
  }
  return false;
}

bool anyReachesBeyond(const SampleGrid& grid, const rzPelRect& window,
                      Interpolation interpolation) {
  const auto columns = grid.columnOffsets();
  for (rzLong j = 0; j < grid.numRows(); ++j) {
    const rzVector<2> row = grid.rowStart(j);
    for (const rzVector<2>& column : columns) {
      if (reachesBeyond(grid.place(row + column), window, interpolation)) return true;
    }
  }
  return false;
}

}  // namespace

rzAffineSamplingParams::rzAffineSamplingParams(const rzAffineRectangle& affineRectangle, rzLong nx,
                                               rzLong ny, Interpolation interpolation)
    : affineRectangle_(affineRectangle), nx_(nx), ny_(ny), interpolation_(interpolation) {
  if (nx <= 0 || ny <= 0 || !isFinite(affineRectangle) || !isKnown(interpolation)) {
    throw rzAffineSamplingDefs::BadParams("Sampling parameters out of range");
  }
}

void rzAffineSamplingParams::interpolation(Interpolation interpolation) {
  if (!isKnown(interpolation)) {
    throw rzAffineSamplingDefs::BadParams("Sampling parameters out of range");
  }
  interpolation_ = interpolation;
}

rzXform<2> rzAffineSamplingParams::clientFromSamples() const {
  const rzVector<2> po = affineRectangle_.cornerPo();
  const rzVector<2> x = (affineRectangle_.cornerPx() - po) / nx_;
  const rzVector<2> y = (affineRectangle_.cornerPy() - po) / ny_;
  return {rzMatrix<2>(x.x(), y.x(), x.y(), y.y()), po};
}

// Along a straight grid the outermost samples are the corner ones. They decide, but for bicubic
// interpolation: there a corner sample on a pel's centre needs that pel alone, and the one next to
// it two pels further out. Within a margin of two pels more, no sample can reach beyond.
bool rzAffineSamplingParams::willClip(const rz_PelBuffer& buffer) const {
  constexpr rzLong kBicubicReach = 2;
  buffer.requireBound();
  const rzPelRect window = buffer.window();
  if (window.isNull()) return true;
  const SampleGrid grid(buffer, *this);
  if (!grid.isLinear()) {
    try {
      return anyReachesBeyond(grid, window, interpolation_);
    } catch (const rzMathError::Singular&) {
      return true;  // the sample has no place at all
    }
  }
  if (cornersReachBeyond(grid, window, interpolation_)) return true;
  if (interpolation_ != eBicubic) return false;
  const rzPelRect inner =
      window.trim(kBicubicReach, kBicubicReach, kBicubicReach, kBicubicReach, false);
  const bool isFarInside = !inner.isNull() && !cornersReachBeyond(grid, inner, eBilinear);
  return !isFarInside && anyReachesBeyond(grid, window, interpolation_);
}
