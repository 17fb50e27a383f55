// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/cross_sums.h"

#include <algorithm>

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#define RZ_HAVE_AVX2_KERNEL 1
#endif

namespace {

// Rows of two tables that face one another. `width` is a multiple of rz_WidePels::kLane.
struct Facing {
  const std::int16_t* a = nullptr;
  const std::int16_t* b = nullptr;
  std::size_t stepA = 0;
  std::size_t stepB = 0;
  std::size_t width = 0;
  std::size_t rows = 0;
};

// Columns that a kernel takes at once, so that the sum of a row's products fits 32 bits:
// 255 * 255 * 2^15 < 2^31.
constexpr std::size_t kMostColumns = std::size_t{1} << 15;

std::int64_t productsPlain(const Facing& facing) {
  std::int64_t total = 0;
  for (std::size_t y = 0; y < facing.rows; ++y) {
    const std::int16_t* a = facing.a + y * facing.stepA;
    const std::int16_t* b = facing.b + y * facing.stepB;
    std::int32_t sum = 0;
    for (std::size_t x = 0; x < facing.width; ++x) sum += a[x] * b[x];
    total += sum;
  }
  return total;
}

#ifdef RZ_HAVE_AVX2_KERNEL
__attribute__((target("avx2"))) inline __m256i load(const std::int16_t* pels) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pels));
}

// Eight 32-bit sums at a time, widened to 64 bits before they can overflow: each takes two products
// a step, and 2 * 255 * 255 * 2^13 < 2^31.
__attribute__((target("avx2"))) std::int64_t productsAvx2(const Facing& facing) {
  constexpr std::size_t kMostSteps = std::size_t{1} << 13;
  const std::size_t stepsPerRow = facing.width / rz_WidePels::kLane;
  const __m256i zero = _mm256_setzero_si256();
  __m256i total = zero;
  __m256i sum = zero;
  std::size_t steps = 0;
  for (std::size_t y = 0; y < facing.rows; ++y) {
    const std::int16_t* a = facing.a + y * facing.stepA;
    const std::int16_t* b = facing.b + y * facing.stepB;
    for (std::size_t x = 0; x < facing.width; x += rz_WidePels::kLane) {
      sum = _mm256_add_epi32(sum, _mm256_madd_epi16(load(a + x), load(b + x)));
    }
    steps += stepsPerRow;
    if (steps + stepsPerRow > kMostSteps || y + 1 == facing.rows) {
      total = _mm256_add_epi64(total, _mm256_unpacklo_epi32(sum, zero));
      total = _mm256_add_epi64(total, _mm256_unpackhi_epi32(sum, zero));
      sum = zero;
      steps = 0;
    }
  }
  alignas(32) std::int64_t lanes[4];
  _mm256_store_si256(reinterpret_cast<__m256i*>(lanes), total);
  return lanes[0] + lanes[1] + lanes[2] + lanes[3];
}
#endif

using Kernel = std::int64_t (*)(const Facing&);

Kernel fastestKernel() {
#ifdef RZ_HAVE_AVX2_KERNEL
  if (__builtin_cpu_supports("avx2")) return productsAvx2;
#endif
  return productsPlain;
}

Facing facingRows(const rz_WidePels& pattern, const rz_WidePels& picture, std::ptrdiff_t x,
                  std::ptrdiff_t y) {
  const auto patternRows = static_cast<std::ptrdiff_t>(pattern.height());
  const auto pictureRows = static_cast<std::ptrdiff_t>(picture.height());
  const std::ptrdiff_t first = std::max<std::ptrdiff_t>(0, -y);
  const std::ptrdiff_t end = std::min(patternRows, pictureRows - y);
  if (first >= end) return {};
  return {pattern.row(static_cast<std::size_t>(first)),
          picture.row(static_cast<std::size_t>(first + y)) + x,
          pattern.step(),
          picture.step(),
          pattern.paddedWidth(),
          static_cast<std::size_t>(end - first)};
}

std::int64_t sumInPieces(Kernel kernel, Facing facing) {
  if (facing.width <= kMostColumns) return kernel(facing);
  std::int64_t total = 0;
  for (std::size_t left = facing.width; left > 0; left -= facing.width) {
    facing.width = std::min(left, kMostColumns);
    total += kernel(facing);
    facing.a += facing.width;
    facing.b += facing.width;
  }
  return total;
}

}  // namespace

rz_WidePels::rz_WidePels(std::size_t width, std::size_t height, std::size_t margin)
    : width_(width),
      height_(height),
      margin_(margin),
      step_(margin + paddedWidth() + margin + kLane),
      pels_(step_ * height) {}

rz_WidePels::rz_WidePels(const rzPelBuffer_const<unsigned char>& pels, std::size_t margin)
    : rz_WidePels(static_cast<std::size_t>(pels.width()), static_cast<std::size_t>(pels.height()),
                  margin) {
  const rzPelRect window = pels.window();
  for (std::size_t y = 0; y < height_; ++y) {
    const unsigned char* from =
        pels.pointToPel(window.ul().x(), window.ul().y() + static_cast<rzLong>(y));
    std::copy_n(from, width_, row(y));
  }
}

rz_WindowSums::rz_WindowSums(const rz_WidePels& pels)
    : step_(pels.width() + 1),
      sums_(step_ * (pels.height() + 1)),
      squares_(step_ * (pels.height() + 1)) {
  for (std::size_t y = 0; y < pels.height(); ++y) {
    const std::int16_t* row = pels.row(y);
    std::int64_t sum = 0;
    std::int64_t squares = 0;
    for (std::size_t x = 0; x < pels.width(); ++x) {
      const std::int64_t pel = row[x];
      sum += pel;
      squares += pel * pel;
      const std::size_t above = y * step_ + x + 1;
      sums_[above + step_] = sums_[above] + sum;
      squares_[above + step_] = squares_[above] + squares;
    }
  }
}

std::int64_t rz_WindowSums::over_(const std::vector<std::int64_t>& table, std::size_t x,
                                  std::size_t y, std::size_t width, std::size_t height) const {
  const std::size_t top = y * step_ + x;
  const std::size_t bottom = top + height * step_;
  return table[bottom + width] - table[bottom] - table[top + width] + table[top];
}

std::int64_t rf_CrossSum(const rz_WidePels& pattern, const rz_WidePels& picture, std::ptrdiff_t x,
                         std::ptrdiff_t y) {
  static const Kernel kKernel = fastestKernel();
  return sumInPieces(kKernel, facingRows(pattern, picture, x, y));
}

std::int64_t rf_CrossSumPlain(const rz_WidePels& pattern, const rz_WidePels& picture,
                              std::ptrdiff_t x, std::ptrdiff_t y) {
  return sumInPieces(productsPlain, facingRows(pattern, picture, x, y));
}
