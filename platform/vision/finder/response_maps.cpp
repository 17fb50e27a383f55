// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/vision/finder/cpu_variants.h"
#include "platform/vision/finder/picture_features.h"
#include "rz/attention.h"

namespace finder {

namespace {

constexpr int kUnit = 181;  // length of a unit vector in 16-bit integers; twice its square fits
constexpr int kRowsPerLook = 128;  // between two looks at the attention
constexpr int kSpread = 2;         // pels by which a gradient may be displaced
// Responses to the angle between two directions fall from the best to none between these.
constexpr double kBestWithin = 18.0;
constexpr double kNoneBeyond = 62.0;

double cosOfDegrees(double degrees) { return std::cos(degrees * std::numbers::pi / 180.0); }

// Unit vectors of the gradients that are strong enough and ridges across their direction; null
// vectors elsewhere.
struct UnitVectors {
  std::unique_ptr<std::int16_t[]> x;
  std::unique_ptr<std::int16_t[]> y;
};

RZ_ALWAYS_INLINE void squaredSizes(const Gradient* row, int width, std::int32_t* out) {
  for (int x = 0; x < width; ++x) out[x] = row[x].x() * row[x].x() + row[x].y() * row[x].y();
}

// `size` holds the squared sizes of this row and its neighbours, readable one beyond both ends.
RZ_ALWAYS_INLINE void unitVectors(const Gradient* row, const std::int32_t* above,
                                  const std::int32_t* size, const std::int32_t* below, int width,
                                  std::int32_t floor, std::int16_t* unitX, std::int16_t* unitY) {
  for (int x = 0; x < width; ++x) {
    const int gx = row[x].x();
    const int gy = row[x].y();
    const int ax = gx < 0 ? -gx : gx;
    const int ay = gy < 0 ? -gy : gy;
    // All neighbours are fetched, whichever count: so the loop can be done in vectors.
    const std::int32_t left = size[x - 1], right = size[x + 1];
    const std::int32_t up = above[x], down = below[x];
    const std::int32_t upLeft = above[x - 1], downRight = below[x + 1];
    const std::int32_t upRight = above[x + 1], downLeft = below[x - 1];
    // The greater neighbour across the edge, in the nearest of four directions; 12/5 is near
    // tan(67.5).
    const std::int32_t beside = std::max(left, right);
    const std::int32_t upright = std::max(up, down);
    const std::int32_t falling = std::max(upLeft, downRight);
    const std::int32_t rising = std::max(upRight, downLeft);
    std::int32_t other = (gx ^ gy) >= 0 ? falling : rising;
    other = 5 * ay > 12 * ax ? upright : other;
    other = 5 * ax > 12 * ay ? beside : other;
    const bool isRidge = (size[x] >= floor) & (size[x] >= other);
    const float length = std::sqrt(static_cast<float>(size[x]));
    const float factor = isRidge ? static_cast<float>(kUnit) / length : 0.0F;
    unitX[x] = static_cast<std::int16_t>(static_cast<float>(gx) * factor);
    unitY[x] = static_cast<std::int16_t>(static_cast<float>(gy) * factor);
  }
}

// The response of one row of unit vectors to a direction.
RZ_ALWAYS_INLINE void respond(const std::int16_t* unitX, const std::int16_t* unitY, int width,
                              std::int16_t nx, std::int16_t ny, std::int16_t none,
                              std::int16_t step, std::uint8_t* out) {
  for (int x = 0; x < width; ++x) {
    const auto agreement = static_cast<std::int16_t>(unitX[x] * nx + unitY[x] * ny);
    std::uint8_t response = 0;
    for (int k = 0; k < kBestResponse; ++k) {
      response = static_cast<std::uint8_t>(
          response + (agreement > static_cast<std::int16_t>(none + k * step) ? 1 : 0));
    }
    out[x] = response;
  }
}

// The greatest of three neighbours in a row; readable one beyond both ends.
RZ_ALWAYS_INLINE void widen(const std::uint8_t* in, int width, std::uint8_t* out) {
  for (int x = 0; x < width; ++x) out[x] = std::max(in[x], std::max(in[x - 1], in[x + 1]));
}

RZ_ALWAYS_INLINE void greatest(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* c,
                               int width, std::uint8_t* out) {
  for (int x = 0; x < width; ++x) out[x] = std::max(a[x], std::max(b[x], c[x]));
}

RZ_ALWAYS_INLINE void joinFar(const std::uint8_t* near, const std::uint8_t* far, int width,
                              std::uint8_t* out) {
  for (int x = 0; x < width; ++x) {
    const auto less = static_cast<std::uint8_t>(far[x] - (far[x] > 0 ? 1 : 0));
    out[x] = std::max(near[x], less);
  }
}

RZ_ALWAYS_INLINE void split(const std::uint8_t* in, int width, std::uint8_t* even,
                            std::uint8_t* odd) {
  for (int x = 0; x < width / 2; ++x) {
    even[x] = in[2 * x];
    odd[x] = in[2 * x + 1];
  }
  if (width % 2 != 0) even[width / 2] = in[width - 1];
}

// What the spreading of one direction works on.
struct DirectionJob {
  const std::int16_t* unitX;
  const std::int16_t* unitY;
  int width;
  int height;
  std::int16_t nx;  // the direction, of length kUnit
  std::int16_t ny;
  std::int16_t none;  // agreement up to which there is no response
  std::int16_t step;  // and from one response to the next
  std::uint8_t* scratch;
  std::uint8_t* planes[4];
  std::ptrdiff_t columns;  // of a plane
};

constexpr int kRing = 8;  // rows that are kept of each kind
constexpr int kScratchRows = 3 * kRing + 3;

// The rows from `begin` to `end` of the planes of one direction: responses, spread over their
// neighbourhood, written where they belong.
RZ_ALWAYS_INLINE void spreadRows(const DirectionJob& job, int begin, int end) {
  const int width = job.width;
  // Rings of rows with two empty elements on both sides. A row that lies outside is empty.
  const std::ptrdiff_t pitch = width + 2 * kSpread;
  std::uint8_t* const base = job.scratch + kSpread;
  const auto ring = [base, pitch](int which, int y) {
    return base + (which * kRing + (y & (kRing - 1))) * pitch;
  };
  constexpr int kRaw = 0, kNearX = 1, kFarX = 2;
  std::uint8_t* const near = base + 3 * kRing * pitch;
  std::uint8_t* const far = near + pitch;
  std::uint8_t* const both = far + pitch;
  for (int y = begin - kSpread; y < end + kSpread; ++y) {
    if (y >= 0 && y < job.height) {
      const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(y) * width;
      respond(job.unitX + at, job.unitY + at, width, job.nx, job.ny, job.none, job.step,
              ring(kRaw, y));
    } else {
      std::fill_n(ring(kRaw, y), width, std::uint8_t{0});
    }
    widen(ring(kRaw, y), width, ring(kNearX, y));
    widen(ring(kNearX, y), width, ring(kFarX, y));
    const int out = y - kSpread;
    if (out < begin) continue;
    greatest(ring(kNearX, out - 1), ring(kNearX, out), ring(kNearX, out + 1), width, near);
    greatest(ring(kFarX, out - 1), ring(kFarX, out), ring(kFarX, out + 1), width, far);
    greatest(ring(kFarX, out - 2), far, ring(kFarX, out + 2), width, both);
    joinFar(near, both, width, both);
    const int phase = (out & 1) * 2;
    split(both, width, job.planes[phase] + (out >> 1) * job.columns,
          job.planes[phase + 1] + (out >> 1) * job.columns);
  }
}

RZ_CPU_VARIANTS(squaredSizes, (const Gradient* row, int width, std::int32_t* out),
                (row, width, out))
RZ_CPU_VARIANTS(unitVectors,
                (const Gradient* row, const std::int32_t* above, const std::int32_t* size,
                 const std::int32_t* below, int width, std::int32_t floor, std::int16_t* unitX,
                 std::int16_t* unitY),
                (row, above, size, below, width, floor, unitX, unitY))
RZ_CPU_VARIANTS(spreadRows, (const DirectionJob& job, int begin, int end), (job, begin, end))

std::size_t sizeOf(int a, int b) {
  return static_cast<std::size_t>(a) * static_cast<std::size_t>(b);
}

// Unit vectors of the whole picture, x and y apart.
UnitVectors unitVectorsOf(const GradientMap& gradients, double contrast) {
  const int width = gradients.width;
  const int height = gradients.height;
  const double least = contrast * kGradientOfStep;
  const auto floor = static_cast<std::int32_t>(std::clamp(least * least, 1.0, 1e9));
  const std::size_t size = sizeOf(width, height);
  UnitVectors unit{std::make_unique_for_overwrite<std::int16_t[]>(size),
                   std::make_unique_for_overwrite<std::int16_t[]>(size)};
  const auto pitch = static_cast<std::size_t>(width + 2);
  std::vector<std::int32_t> sizes(3 * pitch, 0);
  const auto row = [&](int y) {
    return sizes.data() + static_cast<std::size_t>((y + 3) % 3) * pitch + 1;
  };
  RZ_BEST_VARIANT(squaredSizes)(gradients.row(0), width, row(0));
  for (int y = 0; y < height; ++y) {
    if (y % 32 == 0) rzAttention::check();
    if (y + 1 < height) {
      RZ_BEST_VARIANT(squaredSizes)(gradients.row(y + 1), width, row(y + 1));
    } else {
      std::fill_n(row(y + 1), width, 0);
    }
    const std::size_t at = sizeOf(width, y);
    RZ_BEST_VARIANT(unitVectors)
    (gradients.row(y), row(y - 1), row(y), row(y + 1), width, floor, unit.x.get() + at,
     unit.y.get() + at);
  }
  return unit;
}

}  // namespace

int directionOf(Vec2 normal) {
  const double turns = std::atan2(normal.y, normal.x) / (2.0 * std::numbers::pi);
  const int direction = static_cast<int>(std::lround(turns * kDirections));
  return ((direction % kDirections) + kDirections) % kDirections;
}

ResponseMaps responsesOf(const GradientMap& gradients, double contrast) {
  ResponseMaps maps;
  const int width = gradients.width;
  const int height = gradients.height;
  if (width <= 0 || height <= 0) return maps;
  maps.margin = kGreatestRadius + 2;
  maps.pictureColumns = (width + kStride - 1) / kStride;
  maps.pictureRows = (height + kStride - 1) / kStride;
  maps.columns = maps.pictureColumns + maps.margin / kStride;
  maps.rows = maps.pictureRows + 2 * (maps.margin / kStride);
  constexpr std::size_t kReadBehind = 512;  // whole tiles are read
  maps.planeSize = sizeOf(maps.columns, maps.rows + 1) + kReadBehind;

  const UnitVectors unit = unitVectorsOf(gradients, contrast);
  std::vector<std::uint8_t> scratch(kScratchRows * static_cast<std::size_t>(width + 2 * kSpread));
  constexpr double kSquare = double{kUnit} * kUnit;
  const double none = kSquare * cosOfDegrees(kNoneBeyond);
  const double step = (kSquare * cosOfDegrees(kBestWithin) - none) / (kBestResponse - 1);
  for (int d = 0; d < kDirections; ++d) {
    rzAttention::check();
    auto& planes = maps.planes[static_cast<std::size_t>(d)];
    planes = std::make_unique<std::uint8_t[]>(maps.planeSize * kStride * kStride);
    const double angle = 2.0 * std::numbers::pi * d / kDirections;
    DirectionJob job{unit.x.get(),
                     unit.y.get(),
                     width,
                     height,
                     static_cast<std::int16_t>(std::lround(kUnit * std::cos(angle))),
                     static_cast<std::int16_t>(std::lround(kUnit * std::sin(angle))),
                     static_cast<std::int16_t>(none),
                     static_cast<std::int16_t>(step),
                     scratch.data(),
                     {},
                     maps.columns};
    for (int p = 0; p < 4; ++p) job.planes[p] = planes.get() + maps.indexOf(p & 1, p >> 1);
    for (int y = 0; y < height; y += kRowsPerLook) {
      rzAttention::check();
      RZ_BEST_VARIANT(spreadRows)(job, y, std::min(y + kRowsPerLook, height));
    }
  }
  return maps;
}

}  // namespace finder
