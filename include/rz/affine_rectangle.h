// SPDX-License-Identifier: Apache-2.0
//
// rzAffineRectangle: a parallelogram given by three of its corners, the shape of a rectangle after
// an affine transform. It says what part of a picture to sample, and how a character's box lies.
//
//   Po ---- Px         Po = origin corner, Px = end of the x side, Py = end of the y side,
//    \       \         Popp = Px + Py - Po, the corner opposite to Po
//     Py ---- Popp
//
// The five measures are the lengths of the two sides, the direction of the x side, the skew (the
// angle by which the y side departs from a right angle to the x side) and the centre. A side of
// length 0 counts as unturned.
#pragma once

#include "rz/angle.h"
#include "rz/export.h"
#include "rz/pel_rect.h"
#include "rz/rect.h"
#include "rz/vector.h"
#include "rz/xform.h"

class RZ_API rzAffineRectangle {
 public:
  /// All corners at (0, 0).
  constexpr rzAffineRectangle() = default;
  constexpr rzAffineRectangle(const rzVector<2>& cornerPo, const rzVector<2>& cornerPx,
                              const rzVector<2>& cornerPy)
      : po_(cornerPo), px_(cornerPx), py_(cornerPy) {}
  rzAffineRectangle(const rzVector<2>& cornerPo, double xLength, double yLength,
                    const rzRadian& xRotation, const rzRadian& skew);
  explicit rzAffineRectangle(const rzPelRect& rect)
      : po_(rect.ul()), px_(rect.ur()), py_(rect.ll()) {}

  constexpr const rzVector<2>& cornerPo() const { return po_; }
  constexpr const rzVector<2>& cornerPx() const { return px_; }
  constexpr const rzVector<2>& cornerPy() const { return py_; }
  constexpr rzVector<2> cornerPopp() const { return px_ + py_ - po_; }

  double xLength() const { return (px_ - po_).len(); }
  double yLength() const { return (py_ - po_).len(); }
  rzRadian xRotation() const { return (px_ - po_).angle(); }
  /// Direction of the y side less a quarter turn.
  rzRadian yRotation() const;
  /// yRotation() - xRotation(), in (-pi, pi].
  rzRadian skew() const { return (yRotation() - xRotation()).signedNorm(); }
  constexpr rzVector<2> center() const { return (px_ + py_) * 0.5; }

  /// Each setter keeps the other four measures, the centre included.
  void xLength(double value);
  void yLength(double value);
  void xRotation(const rzRadian& value);
  void skew(const rzRadian& value);
  void center(const rzVector<2>& value);

  constexpr rzAffineRectangle map(const rzXform<2>& xform) const {
    return {xform * po_, xform * px_, xform * py_};
  }
  /// Takes (0, 0), (1, 0) and (0, 1) to Po, Px and Py.
  constexpr rzXform<2> affRectFromUnitSq() const {
    const rzVector<2> x = px_ - po_;
    const rzVector<2> y = py_ - po_;
    return {rzMatrix<2>(x.x(), y.x(), x.y(), y.y()), po_};
  }
  /// The smallest rectangle that holds the four corners.
  rzRect encloseRect() const;
  /// The smallest rectangle of whole pels that holds the four corners mapped by `imageFromClient`.
  /// Throws rzMathError::Overflow when that has no 32-bit form.
  rzPelRect encloseImageRect(const rzXform<2>& imageFromClient) const;

  constexpr bool operator==(const rzAffineRectangle& other) const = default;

 private:
  void sides_(const rzVector<2>& x, const rzVector<2>& y);

  rzVector<2> po_;
  rzVector<2> px_;
  rzVector<2> py_;
};
