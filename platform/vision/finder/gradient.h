// SPDX-License-Identifier: Apache-2.0
//
// Grey value gradients of a picture.
//
// The filters are the five-tap pair of smoothing and derivative by H. Farid and E. P. Simoncelli
// ("Differentiation of discrete multidimensional signals", IEEE Transactions on Image Processing
// 13, 2004), whose direction hardly depends on how an edge lies to the grid. Their width is that of
// a Gaussian of some 0.9 pels.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/large_array.h"

namespace finder {

/// Pels with their own storage, rows without gaps.
struct GreyImage {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pels;
};

/// Two 16-bit numbers in one word, so that loops can fetch both at once.
class Gradient {
 public:
  Gradient() = default;
  constexpr Gradient(int x, int y)
      : word_(static_cast<std::int32_t>((static_cast<std::uint32_t>(y) << 16) |
                                        (static_cast<std::uint32_t>(x) & 0xFFFFU))) {}

  constexpr int x() const { return static_cast<std::int16_t>(word_); }
  constexpr int y() const { return word_ >> 16; }

  /// Both in one, for loops that take several gradients in a step: `x(word)` and `y(word)` take
  /// them apart again, in numbers as well as in vectors of them.
  constexpr std::int32_t word() const { return word_; }
  template <class Words>
  static constexpr Words x(Words words) {
    return (words << 16) >> 16;
  }
  template <class Words>
  static constexpr Words y(Words words) {
    return words >> 16;
  }

 private:
  std::int32_t word_;
};

/// How many pels on each side of a pel its gradient looks at.
inline constexpr int kGradientReach = 2;

/// The largest gradient at an ideal step of one grey level.
inline constexpr double kGradientOfStep = 24.9;

/// Gradients in units of kGradientOfStep. They point to the bright side.
struct GradientMap {
  int width = 0;
  int height = 0;
  LargeArray<Gradient> values;

  const Gradient* row(int y) const { return values.get() + static_cast<std::ptrdiff_t>(y) * width; }
};

/// Gradients of all pels; beyond the border the border's pels go on. Where a pel that the gradient
/// looks at, `reach` pels away at most, is masked out, the gradient is null.
GradientMap gradientsOf(const PelView& picture, int reach);

/// The picture at half its size: means of two by two pels.
GreyImage halved(const PelView& picture);
/// The mask at half its size; a pel is looked at only if all four are.
GreyImage halvedMask(const PelView& picture);

}  // namespace finder
