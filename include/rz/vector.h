// SPDX-License-Identifier: Apache-2.0
//
// rzVector<2>: a point of the plane or a difference of two points, with the arithmetic that lets
// geometry be written in points instead of loose x and y.
//
// Pel coordinates are corner based: the pel in column x and row y covers [x, x + 1) by [y, y + 1)
// and its centre is (x + 0.5, y + 0.5). y grows downwards in an image.
#pragma once

#include <cmath>

#include "rz/angle.h"
#include "rz/export.h"

class rzArchive;

template <int Dimension>
class rzVector;

template <>
class rzVector<2> {
 public:
  /// The null vector.
  constexpr rzVector() = default;
  constexpr rzVector(double x, double y) : x_(x), y_(y) {}
  /// From polar coordinates: `length` units in the direction `angle`.
  rzVector(double length, const rzRadian& angle)
      : x_(length * std::cos(angle.toDouble())), y_(length * std::sin(angle.toDouble())) {}

  constexpr double x() const { return x_; }
  constexpr double y() const { return y_; }
  constexpr void x(double value) { x_ = value; }
  constexpr void y(double value) { y_ = value; }

  /// Length.
  double len() const { return std::sqrt(x_ * x_ + y_ * y_); }
  /// Direction in [-pi, pi]; 0 for the null vector.
  rzRadian angle() const { return rzRadian(isNull() ? 0.0 : std::atan2(y_, x_)); }
  /// Both coordinates are exactly 0.
  constexpr bool isNull() const { return x_ == 0.0 && y_ == 0.0; }
  /// Both coordinates are finite.
  bool isFinite() const { return std::isfinite(x_) && std::isfinite(y_); }

  constexpr double dot(const rzVector& other) const { return x_ * other.x_ + y_ * other.y_; }
  /// The z of the cross product: positive when `other` lies a positive turn below pi on from this.
  constexpr double cross(const rzVector& other) const { return x_ * other.y_ - y_ * other.x_; }
  /// Length of the difference.
  double distance(const rzVector& other) const { return (*this - other).len(); }

  constexpr rzVector operator-() const { return {-x_, -y_}; }
  constexpr rzVector operator+(const rzVector& other) const {
    return {x_ + other.x_, y_ + other.y_};
  }
  constexpr rzVector operator-(const rzVector& other) const {
    return {x_ - other.x_, y_ - other.y_};
  }
  constexpr rzVector operator*(double factor) const { return {x_ * factor, y_ * factor}; }
  constexpr rzVector operator/(double divisor) const { return {x_ / divisor, y_ / divisor}; }
  friend constexpr rzVector operator*(double factor, const rzVector& v) { return v * factor; }
  constexpr rzVector& operator+=(const rzVector& other) { return *this = *this + other; }
  constexpr rzVector& operator-=(const rzVector& other) { return *this = *this - other; }
  constexpr rzVector& operator*=(double factor) { return *this = *this * factor; }
  constexpr rzVector& operator/=(double divisor) { return *this = *this / divisor; }

  /// Exact.
  constexpr bool operator==(const rzVector& other) const = default;

 private:
  double x_ = 0.0;
  double y_ = 0.0;
};

/// Archive form: x, y.
RZ_API rzArchive& operator||(rzArchive& ar, rzVector<2>& v);
