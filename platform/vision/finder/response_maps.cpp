// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <vector>

#include "platform/vision/finder/cpu_variants.h"
#include "platform/vision/finder/picture_features.h"
#include "rz/attention.h"

namespace finder {

namespace {

constexpr int kUnit = 181;  // length of a unit vector in 16-bit integers; twice its square fits
constexpr int kRowsPerLook = 16;  // between two looks at the attention
constexpr int kSpread = 2;        // pels by which a gradient may be displaced
// Responses to the angle between two directions fall from the best to none between these.
constexpr double kBestWithin = 18.0;
constexpr double kNoneBeyond = 62.0;

double cosOfDegrees(double degrees) { return std::cos(degrees * std::numbers::pi / 180.0); }

RZ_ALWAYS_INLINE void squaredSizes(const Gradient* row, int width, std::int32_t* out) {
  for (int x = 0; x < width; ++x) out[x] = row[x].x() * row[x].x() + row[x].y() * row[x].y();
}

// Unit vectors of the gradients that are strong enough and ridges across their direction; null
// vectors elsewhere. `size` holds the squared sizes of this row and its neighbours, readable one
// beyond both ends.
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

RZ_CPU_VARIANTS(squaredSizes, (const Gradient* row, int width, std::int32_t* out),
                (row, width, out))
RZ_CPU_VARIANTS(unitVectors,
                (const Gradient* row, const std::int32_t* above, const std::int32_t* size,
                 const std::int32_t* below, int width, std::int32_t floor, std::int16_t* unitX,
                 std::int16_t* unitY),
                (row, above, size, below, width, floor, unitX, unitY))

std::size_t sizeOf(int a, int b) {
  return static_cast<std::size_t>(a) * static_cast<std::size_t>(b);
}

// How strongly a unit vector responds to each direction.
class Responder {
 public:
  Responder() {
    constexpr double kSquare = double{kUnit} * kUnit;
    const double none = kSquare * cosOfDegrees(kNoneBeyond);
    none_ = static_cast<int>(none);
    step_ = static_cast<int>((kSquare * cosOfDegrees(kBestWithin) - none) / (kBestResponse - 1));
    for (std::size_t d = 0; d < kHalfTurn; ++d) {
      const double angle = 2.0 * std::numbers::pi * static_cast<double>(d) / kDirections;
      normals_[d] = {static_cast<int>(std::lround(kUnit * std::cos(angle))),
                     static_cast<int>(std::lround(kUnit * std::sin(angle)))};
    }
  }

  void respond(int x, int y, std::array<std::uint8_t, kDirections>& responses) const {
    for (std::size_t d = 0; d < kHalfTurn; ++d) {
      const int agreement = x * normals_[d].x + y * normals_[d].y;
      responses[d] = response_(agreement);
      responses[d + kHalfTurn] = response_(-agreement);
    }
  }

 private:
  static constexpr std::size_t kHalfTurn = kDirections / 2;
  struct Normal {
    int x;
    int y;
  };

  std::uint8_t response_(int agreement) const {
    int response = 0;
    for (int k = 0; k < kBestResponse; ++k) response += agreement > none_ + k * step_ ? 1 : 0;
    return static_cast<std::uint8_t>(response);
  }

  int none_;
  int step_;
  std::array<Normal, kHalfTurn> normals_;
};

// Puts the responses of single pels into the maps, spread over their neighbourhood: whole up to a
// pel away, one less up to kSpread pels away. Of several the greatest stays. Only the few pels that
// are edges are touched, whatever the size of the picture.
class Spreader {
 public:
  explicit Spreader(ResponseMaps& maps, int width, int height)
      : maps_(maps), width_(width), height_(height) {
    // From a pel's own element to its neighbours', by the remainders of its coordinates.
    for (int phase = 0; phase < 4; ++phase) {
      const int x = phase & 1;
      const int y = phase >> 1;
      std::size_t nearCount = 0;
      std::size_t farCount = 0;
      for (int dy = -kSpread; dy <= kSpread; ++dy) {
        for (int dx = -kSpread; dx <= kSpread; ++dx) {
          const std::ptrdiff_t step = maps.indexOf(x + dx, y + dy) - maps.indexOf(x, y);
          const bool isNear = std::max(std::abs(dx), std::abs(dy)) <= 1;
          Steps& steps = steps_[static_cast<std::size_t>(phase)];
          (isNear ? steps.near[nearCount++] : steps.far[farCount++]) = step;
        }
      }
    }
  }

  void spread(int x, int y, std::uint8_t response, std::uint8_t* map) const {
    const bool isInside =
        x >= kSpread && y >= kSpread && x < width_ - kSpread && y < height_ - kSpread;
    if (!isInside) return spreadAtRim_(x, y, response, map);
    const Steps& steps = steps_[static_cast<std::size_t>((y & 1) * 2 + (x & 1))];
    std::uint8_t* at = map + maps_.indexOf(x, y);
    for (const std::ptrdiff_t step : steps.near) at[step] = std::max(at[step], response);
    if (response <= 1) return;
    const auto less = static_cast<std::uint8_t>(response - 1);
    for (const std::ptrdiff_t step : steps.far) at[step] = std::max(at[step], less);
  }

 private:
  struct Steps {
    std::array<std::ptrdiff_t, 9> near;
    std::array<std::ptrdiff_t, 16> far;
  };

  void spreadAtRim_(int x, int y, std::uint8_t response, std::uint8_t* map) const {
    for (int v = std::max(0, y - kSpread); v <= std::min(height_ - 1, y + kSpread); ++v) {
      for (int u = std::max(0, x - kSpread); u <= std::min(width_ - 1, x + kSpread); ++u) {
        const bool isNear = std::max(std::abs(u - x), std::abs(v - y)) <= 1;
        std::uint8_t& at = map[maps_.indexOf(u, v)];
        at = std::max(at, static_cast<std::uint8_t>(response - (isNear ? 0 : 1)));
      }
    }
  }

  const ResponseMaps& maps_;
  int width_;
  int height_;
  std::array<Steps, 4> steps_;
};

// Calls `use(x, unitX, unitY)` for the pels of one row that are edges.
template <class Use>
void forEachEdge(const std::int16_t* unitX, const std::int16_t* unitY, int width, Use use) {
  constexpr int kAtOnce = 4;
  int x = 0;
  for (; x + kAtOnce <= width; x += kAtOnce) {
    std::uint64_t ofX;
    std::uint64_t ofY;
    std::memcpy(&ofX, unitX + x, sizeof ofX);
    std::memcpy(&ofY, unitY + x, sizeof ofY);
    if ((ofX | ofY) == 0) continue;
    for (int k = x; k < x + kAtOnce; ++k) {
      if (unitX[k] != 0 || unitY[k] != 0) use(k, unitX[k], unitY[k]);
    }
  }
  for (; x < width; ++x) {
    if (unitX[x] != 0 || unitY[x] != 0) use(x, unitX[x], unitY[x]);
  }
}

// Calls `use(x, y, unitX, unitY)` for all pels that are edges.
template <class Use>
void forAllEdges(const GradientMap& gradients, double contrast, Use use) {
  const int width = gradients.width;
  const int height = gradients.height;
  const double least = contrast * kGradientOfStep;
  const auto floor = static_cast<std::int32_t>(std::clamp(least * least, 1.0, 1e9));
  std::vector<std::int16_t> unitX(static_cast<std::size_t>(width));
  std::vector<std::int16_t> unitY(static_cast<std::size_t>(width));
  const auto pitch = static_cast<std::size_t>(width + 2);
  std::vector<std::int32_t> sizes(3 * pitch, 0);
  const auto row = [&](int y) {
    return sizes.data() + static_cast<std::size_t>((y + 3) % 3) * pitch + 1;
  };
  RZ_BEST_VARIANT(squaredSizes)(gradients.row(0), width, row(0));
  for (int y = 0; y < height; ++y) {
    if (y % kRowsPerLook == 0) rzAttention::check();
    if (y + 1 < height) {
      RZ_BEST_VARIANT(squaredSizes)(gradients.row(y + 1), width, row(y + 1));
    } else {
      std::fill_n(row(y + 1), width, 0);
    }
    RZ_BEST_VARIANT(unitVectors)
    (gradients.row(y), row(y - 1), row(y), row(y + 1), width, floor, unitX.data(), unitY.data());
    forEachEdge(unitX.data(), unitY.data(), width,
                [&](int x, int ux, int uy) { use(x, y, ux, uy); });
  }
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

  for (auto& planes : maps.planes) {
    rzAttention::check();
    planes = std::make_unique<std::uint8_t[]>(maps.planeSize * kStride * kStride);
  }
  const Responder responder;
  const Spreader spreader(maps, width, height);
  std::array<std::uint8_t, kDirections> responses;
  forAllEdges(gradients, contrast, [&](int x, int y, int unitX, int unitY) {
    responder.respond(unitX, unitY, responses);
    for (std::size_t d = 0; d < kDirections; ++d) {
      if (responses[d] > 0) spreader.spread(x, y, responses[d], maps.planes[d].get());
    }
  });
  return maps;
}

}  // namespace finder
