// SPDX-License-Identifier: Apache-2.0
//
// rzMatrix<2>: a real 2 by 2 matrix, the turning and scaling part of a transform.
//
// Any matrix can be taken apart into the rotations and the scales of its two axes, and is
//   [ xScale cos(xRot)   -yScale sin(yRot) ]
//   [ xScale sin(xRot)    yScale cos(yRot) ]
// The scales are lengths of columns and never negative; a matrix that mirrors shows it by a yRot
// that is half a turn away from xRot. Composing the four numbers again gives the matrix.
#pragma once

#include <cmath>

#include "rz/angle.h"
#include "rz/export.h"
#include "rz/vector.h"

/// Throws rzMathError::Singular with `what` as its message.
[[noreturn]] RZ_API void rf_ThrowSingular(const char* what);

template <int Dimension>
class rzMatrix;

template <>
class rzMatrix<2> {
 public:
  /// The identity.
  constexpr rzMatrix() = default;
  /// By rows: element(0, 0), element(0, 1), element(1, 0), element(1, 1).
  constexpr rzMatrix(double m00, double m01, double m10, double m11)
      : m00_(m00), m01_(m01), m10_(m10), m11_(m11) {}
  /// From the rotations and the scales of the axes.
  rzMatrix(const rzRadian& xRot, const rzRadian& yRot, double xScale, double yScale)
      : m00_(xScale * std::cos(xRot.toDouble())),
        m01_(0.0 - yScale * std::sin(yRot.toDouble())),  // no negative zero when unturned
        m10_(xScale * std::sin(xRot.toDouble())),
        m11_(yScale * std::cos(yRot.toDouble())) {}

  /// `row` and `column` are 0 or 1.
  constexpr double element(int row, int column) const {
    return row == 0 ? (column == 0 ? m00_ : m01_) : (column == 0 ? m10_ : m11_);
  }
  constexpr double operator()(int row, int column) const { return element(row, column); }

  /// Direction of the first column in [-pi, pi]; 0 when the column is null.
  rzRadian xRot() const { return rzVector<2>(m00_, m10_).angle(); }
  /// Direction of the second column less a quarter turn, in [-pi, pi]; 0 when the column is null.
  rzRadian yRot() const { return rzVector<2>(m11_, 0.0 - m01_).angle(); }
  /// Length of the first column.
  double xScale() const { return rzVector<2>(m00_, m10_).len(); }
  /// Length of the second column.
  double yScale() const { return rzVector<2>(m01_, m11_).len(); }

  constexpr double determinant() const { return m00_ * m11_ - m01_ * m10_; }
  /// Throws rzMathError::Singular when the determinant is 0 or not finite, or when the inverse has
  /// an element that is not finite.
  rzMatrix inverse() const {
    const double det = determinant();
    const rzMatrix result(m11_ / det, (0.0 - m01_) / det, (0.0 - m10_) / det, m00_ / det);
    if (det == 0.0 || !std::isfinite(det) || !result.isFinite()) {
      rf_ThrowSingular("Matrix has no inverse");
    }
    return result;
  }
  bool isFinite() const {
    return std::isfinite(m00_) && std::isfinite(m01_) && std::isfinite(m10_) && std::isfinite(m11_);
  }

  constexpr rzVector<2> operator*(const rzVector<2>& v) const {
    return {m00_ * v.x() + m01_ * v.y(), m10_ * v.x() + m11_ * v.y()};
  }
  constexpr rzMatrix operator*(const rzMatrix& b) const {
    return {m00_ * b.m00_ + m01_ * b.m10_, m00_ * b.m01_ + m01_ * b.m11_,
            m10_ * b.m00_ + m11_ * b.m10_, m10_ * b.m01_ + m11_ * b.m11_};
  }
  constexpr rzMatrix operator*(double factor) const {
    return {m00_ * factor, m01_ * factor, m10_ * factor, m11_ * factor};
  }

  /// Exact.
  constexpr bool operator==(const rzMatrix& other) const = default;

 private:
  double m00_ = 1.0;
  double m01_ = 0.0;
  double m10_ = 0.0;
  double m11_ = 1.0;
};
