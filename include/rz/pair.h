// SPDX-License-Identifier: Apache-2.0
//
// rzPair<T>: two numbers of one type, mostly a whole pel position or a size. Converts to the
// rzVector<2> of the same place.
#pragma once

#include "rz/vector.h"

template <class T>
class rzPair {
 public:
  constexpr rzPair() = default;
  constexpr rzPair(T x, T y) : x_(x), y_(y) {}

  constexpr T x() const { return x_; }
  constexpr T y() const { return y_; }
  constexpr void x(T value) { x_ = value; }
  constexpr void y(T value) { y_ = value; }

  constexpr rzPair operator+(const rzPair& other) const {
    return {static_cast<T>(x_ + other.x_), static_cast<T>(y_ + other.y_)};
  }
  constexpr rzPair operator-(const rzPair& other) const {
    return {static_cast<T>(x_ - other.x_), static_cast<T>(y_ - other.y_)};
  }
  constexpr bool operator==(const rzPair& other) const = default;

  constexpr operator rzVector<2>() const {
    return {static_cast<double>(x_), static_cast<double>(y_)};
  }

 private:
  T x_ = T();
  T y_ = T();
};
