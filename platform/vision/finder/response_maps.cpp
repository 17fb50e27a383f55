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
#include "platform/vision/finder/sum_tile.h"
#include "rz/attention.h"

namespace finder {

namespace {

constexpr int kUnit = 181;  // length of a unit vector in 16-bit integers; twice its square fits
constexpr int kRowsPerLook = 16;  // between two looks at the attention
// Responses to the angle between two directions fall from the best to none between these.
constexpr double kBestWithin = 18.0;
constexpr double kNoneBeyond = 62.0;

double cosOfDegrees(double degrees) { return std::cos(degrees * std::numbers::pi / 180.0); }

RZ_ALWAYS_INLINE void squaredSizes(const Gradient* row, int width, std::int32_t* out) {
  for (int x = 0; x < width; ++x) out[x] = row[x].x() * row[x].x() + row[x].y() * row[x].y();
}

// Marks the gradients that are strong enough and ridges across their direction. `size` holds the
// squared sizes of this row and its neighbours, readable one beyond both ends.
RZ_ALWAYS_INLINE void markEdges(const Gradient* row, const std::int32_t* above,
                                const std::int32_t* size, const std::int32_t* below, int width,
                                std::int32_t floor, std::uint8_t* isEdge) {
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
    isEdge[x] = size[x] >= std::max(floor, other) ? 1 : 0;
  }
}

RZ_CPU_VARIANTS(squaredSizes, (const Gradient* row, int width, std::int32_t* out),
                (row, width, out))
RZ_CPU_VARIANTS(markEdges,
                (const Gradient* row, const std::int32_t* above, const std::int32_t* size,
                 const std::int32_t* below, int width, std::int32_t floor, std::uint8_t* isEdge),
                (row, above, size, below, width, floor, isEdge))

std::size_t sizeOf(int a, int b) {
  return static_cast<std::size_t>(a) * static_cast<std::size_t>(b);
}

// How strongly a gradient responds to each direction.
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

  void respond(const Gradient& gradient, std::array<std::uint8_t, kDirections>& responses) const {
    const auto gx = static_cast<float>(gradient.x());
    const auto gy = static_cast<float>(gradient.y());
    const float factor = static_cast<float>(kUnit) / std::sqrt(gx * gx + gy * gy);
    const int x = static_cast<int>(gx * factor);
    const int y = static_cast<int>(gy * factor);
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

// The two halves of a folded map, by the four bits that they have of each element.
struct LowerBits {
  static void raise(std::uint8_t& element, std::uint8_t response) {
    const auto raised = static_cast<std::uint8_t>((element & 0xF0) | response);
    element = (element & 0x0F) < response ? raised : element;
  }
};
struct UpperBits {
  static void raise(std::uint8_t& element, std::uint8_t response) {
    const auto upper = static_cast<std::uint8_t>(response << 4);
    const auto raised = static_cast<std::uint8_t>((element & 0x0F) | upper);
    element = element < upper ? raised : element;
  }
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

  // Near the fold a pel counts in both halves.
  void spread(int x, int y, std::uint8_t response, std::uint8_t* map) const {
    constexpr int kBeyond = kEmptyRows - 1;
    const int row = y / kStride;
    if (row < maps_.foldedRows + kBeyond) spread_<LowerBits>(x, y, 0, response, map);
    if (row >= maps_.foldedRows - kBeyond) {
      spread_<UpperBits>(x, y, kStride * maps_.foldedRows, response, map);
    }
  }

 private:
  struct Steps {
    std::array<std::ptrdiff_t, 9> near;
    std::array<std::ptrdiff_t, 16> far;
  };

  // `fold` is the first pel row of the half.
  template <class Bits>
  void spread_(int x, int y, int fold, std::uint8_t response, std::uint8_t* map) const {
    const bool isInside =
        x >= kSpread && y >= kSpread && x < width_ - kSpread && y < height_ - kSpread;
    if (!isInside) return spreadAtRim_<Bits>(x, y, fold, response, map);
    const Steps& steps = steps_[static_cast<std::size_t>((y & 1) * 2 + (x & 1))];
    std::uint8_t* at = map + maps_.indexOf(x, y - fold);
    for (const std::ptrdiff_t step : steps.near) Bits::raise(at[step], response);
    if (response <= 1) return;
    const auto less = static_cast<std::uint8_t>(response - 1);
    for (const std::ptrdiff_t step : steps.far) Bits::raise(at[step], less);
  }

  template <class Bits>
  void spreadAtRim_(int x, int y, int fold, std::uint8_t response, std::uint8_t* map) const {
    for (int v = std::max(0, y - kSpread); v <= std::min(height_ - 1, y + kSpread); ++v) {
      for (int u = std::max(0, x - kSpread); u <= std::min(width_ - 1, x + kSpread); ++u) {
        const bool isNear = std::max(std::abs(u - x), std::abs(v - y)) <= 1;
        Bits::raise(map[maps_.indexOf(u, v - fold)],
                    static_cast<std::uint8_t>(response - (isNear ? 0 : 1)));
      }
    }
  }

  const ResponseMaps& maps_;
  int width_;
  int height_;
  std::array<Steps, 4> steps_;
};

// Calls `use(x)` for the pels of one row that are edges.
template <class Use>
void forEachEdge(const std::uint8_t* isEdge, int width, Use use) {
  constexpr int kAtOnce = 8;
  int x = 0;
  for (; x + kAtOnce <= width; x += kAtOnce) {
    std::uint64_t any;
    std::memcpy(&any, isEdge + x, sizeof any);
    if (any == 0) continue;
    for (int k = x; k < x + kAtOnce; ++k) {
      if (isEdge[k] != 0) use(k);
    }
  }
  for (; x < width; ++x) {
    if (isEdge[x] != 0) use(x);
  }
}

// Calls `use(x, y)` for all pels that are edges.
template <class Use>
void forAllEdges(const GradientMap& gradients, double contrast, Use use) {
  const int width = gradients.width;
  const int height = gradients.height;
  const double least = contrast * kGradientOfStep;
  const auto floor = static_cast<std::int32_t>(std::clamp(least * least, 1.0, 1e9));
  std::vector<std::uint8_t> isEdge(static_cast<std::size_t>(width));
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
    RZ_BEST_VARIANT(markEdges)
    (gradients.row(y), row(y - 1), row(y), row(y + 1), width, floor, isEdge.data());
    forEachEdge(isEdge.data(), width, [&](int x) { use(x, y); });
  }
}

// One piece of memory, since allocators keep it for the next picture; cleared step by step, since
// that takes a while.
LargeArray<std::uint8_t> clearedElements(std::size_t count) {
  constexpr std::size_t kAtOnce = 1 << 18;
  auto elements = makeLargeArray<std::uint8_t>(count);
  for (std::size_t i = 0; i < count; i += kAtOnce) {
    rzAttention::check();
    std::fill_n(elements.get() + i, std::min(kAtOnce, count - i), std::uint8_t{0});
  }
  return elements;
}

}  // namespace

int directionOf(Vec2 normal) {
  static_assert(kDirections == 16);
  // Tangents of the angles halfway between the directions of a quarter turn.
  constexpr double kHalfway[] = {0.19891236737965800, 0.66817863791929892, 1.4966057626654890,
                                 5.0273394921258481};
  int steps = 0;
  for (const double tangent : kHalfway) steps += std::abs(normal.y) > tangent * std::abs(normal.x);
  if (normal.x < 0.0) steps = kDirections / 2 - steps;
  return normal.y < 0.0 ? (kDirections - steps) % kDirections : steps;
}

ResponseMaps responsesOf(const GradientMap& gradients, double contrast) {
  ResponseMaps maps;
  const int width = gradients.width;
  const int height = gradients.height;
  if (width <= 0 || height <= 0) return maps;
  maps.pictureColumns = (width + kStride - 1) / kStride;
  maps.pictureRows = (height + kStride - 1) / kStride;
  maps.columns = maps.pictureColumns + kEmptyColumns;
  maps.foldedRows = (maps.pictureRows + 1) / 2;
  // Whole tiles are read.
  maps.planeSize =
      sizeOf(maps.columns, maps.foldedRows + 2 * kEmptyRows + kTileRows + 1) + kTileColumns;

  maps.elements = clearedElements(kDirections * maps.mapSize());
  maps.edges = EdgeCells(width, height);
  const Responder responder;
  const Spreader spreader(maps, width, height);
  std::array<std::uint8_t, kDirections> responses;
  forAllEdges(gradients, contrast, [&](int x, int y) {
    maps.edges.add(x, y);
    responder.respond(gradients.row(y)[x], responses);
    for (std::size_t d = 0; d < kDirections; ++d) {
      if (responses[d] > 0)
        spreader.spread(x, y, responses[d], maps.elements.get() + d * maps.mapSize());
    }
  });
  maps.edges.sumUp();
  return maps;
}

}  // namespace finder
