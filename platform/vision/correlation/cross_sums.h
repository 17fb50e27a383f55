// SPDX-License-Identifier: Apache-2.0
//
// Sums of products of a template with the windows of a picture, in integers: exact, and the same
// in any order of summation, so that the instructions of the machine make no difference.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "rz/pel_buffer.h"

/// Twice as wide as a sum of squares: holds count times sum of squares of any picture.
__extension__ typedef __int128 rz_WideInteger;

/// A table of pels widened to 16 bits. Zeros surround each row: `margin()` of them, and as many
/// more as a kernel that works in whole vectors may read.
class rz_WidePels {
 public:
  static constexpr std::size_t kLane = 16;  // elements that a kernel step reads

  rz_WidePels() = default;
  /// All zero.
  rz_WidePels(std::size_t width, std::size_t height, std::size_t margin = 0);
  /// The window of `pels`.
  explicit rz_WidePels(const rzPelBuffer_const<unsigned char>& pels, std::size_t margin = 0);

  std::size_t width() const { return width_; }
  std::size_t height() const { return height_; }
  std::size_t margin() const { return margin_; }
  /// Width rounded up to whole vectors.
  std::size_t paddedWidth() const { return (width_ + kLane - 1) / kLane * kLane; }
  /// Elements from a row to the next.
  std::size_t step() const { return step_; }

  /// The first pel of a row.
  const std::int16_t* row(std::size_t y) const { return pels_.data() + y * step_ + margin_; }
  std::int16_t* row(std::size_t y) { return pels_.data() + y * step_ + margin_; }

 private:
  std::size_t width_ = 0;
  std::size_t height_ = 0;
  std::size_t margin_ = 0;
  std::size_t step_ = 0;
  std::vector<std::int16_t> pels_;
};

/// Sums of pels and of their squares over any window, from two summed-area tables
/// (F. Crow, "Summed-area tables for texture mapping", SIGGRAPH 1984).
class rz_WindowSums {
 public:
  rz_WindowSums() = default;
  explicit rz_WindowSums(const rz_WidePels& pels);

  std::int64_t sum(std::size_t x, std::size_t y, std::size_t width, std::size_t height) const {
    return over_(sums_, x, y, width, height);
  }
  std::int64_t squares(std::size_t x, std::size_t y, std::size_t width, std::size_t height) const {
    return over_(squares_, x, y, width, height);
  }

 private:
  std::int64_t over_(const std::vector<std::int64_t>& table, std::size_t x, std::size_t y,
                     std::size_t width, std::size_t height) const;

  std::size_t step_ = 0;
  std::vector<std::int64_t> sums_;
  std::vector<std::int64_t> squares_;
};

/// The sum of template times picture, pels from 0 to 255, with the template's corner at (x, y).
/// The template may hang over: x lies between -margin and the picture's width plus its margin less
/// the template's width, y anywhere; what lies outside the picture counts as 0.
std::int64_t rf_CrossSum(const rz_WidePels& pattern, const rz_WidePels& picture, std::ptrdiff_t x,
                         std::ptrdiff_t y);

/// The plain kernel, whatever the machine: what rf_CrossSum gives.
std::int64_t rf_CrossSumPlain(const rz_WidePels& pattern, const rz_WidePels& picture,
                              std::ptrdiff_t x, std::ptrdiff_t y);
