// SPDX-License-Identifier: Apache-2.0
//
// rzRectangle<T> and rzPelRect: a rectangle of whole pels, upper left corner and size, as windows
// of images are given. It covers the columns x to x + width - 1 and the rows y to y + height - 1;
// its corners ur, ll and lr are therefore one past the last column or row. For rectangles with
// real-valued corners use rzRect.
//
// The four numbers are kept as given, also sizes below 0. A rectangle without pels (width or
// height not above 0) is null. Corners are compared in 64 bits, so that no rectangle overflows.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "rz/export.h"
#include "rz/pair.h"
#include "rz/types.h"

class rzArchive;

template <class T>
class rzRectangle {
 public:
  /// At (0, 0), without pels.
  constexpr rzRectangle() = default;
  constexpr rzRectangle(T x, T y, T width, T height)
      : x_(x), y_(y), width_(width), height_(height) {}
  /// From upper left corner to lower right corner, the latter one past the last pel.
  constexpr rzRectangle(const rzPair<T>& ul, const rzPair<T>& lr)
      : x_(ul.x()),
        y_(ul.y()),
        width_(clamp_(wide_(lr.x()) - ul.x())),
        height_(clamp_(wide_(lr.y()) - ul.y())) {}

  constexpr T x() const { return x_; }
  constexpr T y() const { return y_; }
  constexpr T width() const { return width_; }
  constexpr T height() const { return height_; }
  constexpr rzPair<T> size() const { return {width_, height_}; }
  constexpr rzPair<T> sz() const { return size(); }

  constexpr rzPair<T> ul() const { return {x_, y_}; }
  constexpr rzPair<T> ur() const { return {clamp_(right_()), y_}; }
  constexpr rzPair<T> ll() const { return {x_, clamp_(bottom_())}; }
  constexpr rzPair<T> lr() const { return {clamp_(right_()), clamp_(bottom_())}; }

  /// Has no pels.
  constexpr bool isNull() const { return width_ <= 0 || height_ <= 0; }
  /// Number of pels; 0 for a null rectangle.
  constexpr std::int64_t area() const { return isNull() ? 0 : wide_(width_) * height_; }

  constexpr bool contains(const rzPair<T>& p) const {
    return p.x() >= x_ && p.x() < right_() && p.y() >= y_ && p.y() < bottom_();
  }
  /// Each corner of `inner` lies in this rectangle or on its border.
  constexpr bool contains(const rzRectangle& inner) const {
    return inner.x_ >= x_ && inner.right_() <= right_() && inner.y_ >= y_ &&
           inner.bottom_() <= bottom_();
  }
  /// The pels that both have; the default rectangle when there are none.
  constexpr rzRectangle intersect(const rzRectangle& other) const {
    const std::int64_t left = std::max(wide_(x_), wide_(other.x_));
    const std::int64_t top = std::max(wide_(y_), wide_(other.y_));
    const std::int64_t right = std::min(right_(), other.right_());
    const std::int64_t bottom = std::min(bottom_(), other.bottom_());
    if (left >= right || top >= bottom) return {};
    return fromSides_(left, top, right, bottom);
  }
  /// The smallest rectangle that holds both; a null one counts for nothing.
  constexpr rzRectangle enclose(const rzRectangle& other) const {
    if (isNull()) return other;
    if (other.isNull()) return *this;
    return fromSides_(std::min(wide_(x_), wide_(other.x_)), std::min(wide_(y_), wide_(other.y_)),
                      std::max(right_(), other.right_()), std::max(bottom_(), other.bottom_()));
  }
  /// Less so many columns and rows on each side; negative numbers grow. The last argument has no
  /// effect.
  constexpr rzRectangle trim(T left, T right, T top, T bottom, bool = false) const {
    return fromSides_(wide_(x_) + left, wide_(y_) + top, right_() - right, bottom_() - bottom);
  }

  /// The four numbers are equal.
  constexpr bool operator==(const rzRectangle& other) const = default;

 private:
  static constexpr std::int64_t wide_(T value) { return value; }
  static constexpr T clamp_(std::int64_t value) {
    return static_cast<T>(std::clamp<std::int64_t>(value, std::numeric_limits<T>::min(),
                                                   std::numeric_limits<T>::max()));
  }
  static constexpr rzRectangle fromSides_(std::int64_t left, std::int64_t top, std::int64_t right,
                                          std::int64_t bottom) {
    return {clamp_(left), clamp_(top), clamp_(right - left), clamp_(bottom - top)};
  }
  constexpr std::int64_t right_() const { return wide_(x_) + width_; }
  constexpr std::int64_t bottom_() const { return wide_(y_) + height_; }

  T x_ = 0;
  T y_ = 0;
  T width_ = 0;
  T height_ = 0;
};

using rzPelRect = rzRectangle<rzLong>;

/// Moves a rectangle that belongs to another object's archive form: x, y, width, height, no
/// version.
template <class T>
void rf_PersistenceHelper(rzArchive& ar, rzRectangle<T>& rect) = delete;

template <>
RZ_API void rf_PersistenceHelper<rzLong>(rzArchive& ar, rzRectangle<rzLong>& rect);
