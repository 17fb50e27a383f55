// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/gradient.h"

#include <algorithm>

#include "platform/vision/finder/cpu_variants.h"
#include "rz/attention.h"

namespace finder {

namespace {

constexpr int kMaskFrom = 128;
constexpr int kRowsPerLook = 32;  // between two looks at the attention

// Smoothing and derivative weights of the two filters as integers; the smoothing ones sum to 129.
constexpr int kSmooth0 = 55, kSmooth1 = 32, kSmooth2 = 5;
constexpr int kSlope1 = 71, kSlope2 = 28;

// One row, filtered downwards: `down` keeps the row smoothed, `slope` its derivative. Both get two
// more elements on each side.
RZ_ALWAYS_INLINE void filterColumns(const std::uint8_t* const rows[5], int width,
                                    std::int16_t* __restrict smooth,
                                    std::int16_t* __restrict slope) {
  const std::uint8_t* r0 = rows[0];
  const std::uint8_t* r1 = rows[1];
  const std::uint8_t* r2 = rows[2];
  const std::uint8_t* r3 = rows[3];
  const std::uint8_t* r4 = rows[4];
  for (int x = 0; x < width; ++x) {
    // At most 32895 and 25245, halved so that all fits 16 bits.
    const int s = kSmooth0 * r2[x] + kSmooth1 * (r1[x] + r3[x]) + kSmooth2 * (r0[x] + r4[x]);
    const int d = kSlope1 * (r3[x] - r1[x]) + kSlope2 * (r4[x] - r0[x]);
    smooth[x] = static_cast<std::int16_t>((s + 1) >> 1);
    slope[x] = static_cast<std::int16_t>(d >> 1);
  }
}

// `smooth` and `slope` point to the element of column 0 and are readable two beyond both ends.
RZ_ALWAYS_INLINE void filterRow(const std::int16_t* smooth, const std::int16_t* slope, int width,
                                Gradient* out) {
  constexpr int kShift = 8;
  constexpr int kRound = 1 << (kShift - 1);
  for (int x = 0; x < width; ++x) {
    const int gx =
        kSlope1 * (smooth[x + 1] - smooth[x - 1]) + kSlope2 * (smooth[x + 2] - smooth[x - 2]);
    const int gy = kSmooth0 * slope[x] + kSmooth1 * (slope[x - 1] + slope[x + 1]) +
                   kSmooth2 * (slope[x - 2] + slope[x + 2]);
    out[x] = Gradient((gx + kRound) >> kShift, (gy + kRound) >> kShift);
  }
}

void continueEnds(std::int16_t* row, int width) {
  row[-2] = row[-1] = row[0];
  row[width] = row[width + 1] = row[width - 1];
}

RZ_ALWAYS_INLINE void gradientRows(const PelView& picture, int begin, int end, std::int16_t* smooth,
                                   std::int16_t* slope, Gradient* out) {
  for (int y = begin; y < end; ++y) {
    const std::uint8_t* rows[5];
    for (int k = 0; k < 5; ++k) {
      rows[k] = picture.pels + std::clamp(y + k - 2, 0, picture.height - 1) * picture.stride;
    }
    filterColumns(rows, picture.width, smooth, slope);
    continueEnds(smooth, picture.width);
    // A row of slopes goes on beyond the ends as the row of pels does.
    continueEnds(slope, picture.width);
    filterRow(smooth, slope, picture.width, out + static_cast<std::ptrdiff_t>(y) * picture.width);
  }
}

RZ_CPU_VARIANTS(gradientRows,
                (const PelView& picture, int begin, int end, std::int16_t* smooth,
                 std::int16_t* slope, Gradient* out),
                (picture, begin, end, smooth, slope, out))

// Clears the gradients that may owe something to pels that are masked out.
void clearMasked(const PelView& picture, int reach, GradientMap& map) {
  for (int y = 0; y < picture.height; ++y) {
    const int top = std::max(y - reach, 0);
    const int bottom = std::min(y + reach, picture.height - 1);
    const std::uint8_t* maskRow = picture.mask + y * picture.maskStride;
    for (int x = 0; x < picture.width; ++x) {
      if (maskRow[x] >= kMaskFrom) continue;
      const int left = std::max(x - reach, 0);
      const int right = std::min(x + reach, picture.width - 1);
      for (int v = top; v <= bottom; ++v) {
        Gradient* out = map.values.get() + static_cast<std::ptrdiff_t>(v) * map.width;
        std::fill(out + left, out + right + 1, Gradient(0, 0));
      }
    }
    if (y % kRowsPerLook == 0) rzAttention::check();
  }
}

}  // namespace

GradientMap gradientsOf(const PelView& picture, int reach) {
  GradientMap map{picture.width, picture.height, {}};
  if (picture.width <= 0 || picture.height <= 0) return map;
  map.values = makeLargeArray<Gradient>(static_cast<std::size_t>(picture.width) *
                                        static_cast<std::size_t>(picture.height));
  const auto rowSize = static_cast<std::size_t>(picture.width + 2 * kGradientReach);
  std::vector<std::int16_t> smooth(rowSize);
  std::vector<std::int16_t> slope(rowSize);
  for (int y = 0; y < picture.height; y += kRowsPerLook) {
    rzAttention::check();
    RZ_BEST_VARIANT(gradientRows)
    (picture, y, std::min(y + kRowsPerLook, picture.height), smooth.data() + kGradientReach,
     slope.data() + kGradientReach, map.values.get());
  }
  if (picture.mask != nullptr) clearMasked(picture, reach, map);
  return map;
}

namespace {

template <class Combine>
GreyImage halvedBy(const std::uint8_t* pels, std::ptrdiff_t stride, int width, int height,
                   Combine combine) {
  GreyImage half{(width + 1) / 2, (height + 1) / 2, {}};
  half.pels.resize(static_cast<std::size_t>(half.width) * static_cast<std::size_t>(half.height));
  const int whole = width / 2;
  for (int y = 0; y < half.height; ++y) {
    if (y % kRowsPerLook == 0) rzAttention::check();
    const std::uint8_t* a = pels + 2 * y * stride;
    const std::uint8_t* b = pels + std::min(2 * y + 1, height - 1) * stride;
    std::uint8_t* out = half.pels.data() + static_cast<std::ptrdiff_t>(y) * half.width;
    for (int x = 0; x < whole; ++x) {
      out[x] = combine(a[2 * x], a[2 * x + 1], b[2 * x], b[2 * x + 1]);
    }
    if (whole < half.width) {
      out[whole] = combine(a[width - 1], a[width - 1], b[width - 1], b[width - 1]);
    }
  }
  return half;
}

}  // namespace

GreyImage halved(const PelView& picture) {
  return halvedBy(picture.pels, picture.stride, picture.width, picture.height,
                  [](int a, int b, int c, int d) {
                    return static_cast<std::uint8_t>((a + b + c + d + 2) >> 2);
                  });
}

GreyImage halvedMask(const PelView& picture) {
  return halvedBy(picture.mask, picture.maskStride, picture.width, picture.height,
                  [](int a, int b, int c, int d) {
                    return static_cast<std::uint8_t>(std::min(std::min(a, b), std::min(c, d)));
                  });
}

}  // namespace finder
