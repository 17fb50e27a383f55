// SPDX-License-Identifier: Apache-2.0
//
// rzXform<2>: an affine transform of the plane, p -> matrix * p + trans. The value to reach for
// when a transform is known to be linear; rz2XformBase is the kind held by handle that need not be.
//
// A product maps from right to left: (a * b)(p) = a(b(p)). A transform named clientFromImage takes
// image coordinates and gives client coordinates.
#pragma once

#include "rz/angle.h"
#include "rz/export.h"
#include "rz/matrix.h"
#include "rz/real_eq.h"
#include "rz/vector.h"

class rzArchive;

template <int Dimension>
class rzXform;

template <>
class rzXform<2> {
 public:
  /// The identity.
  constexpr rzXform() = default;
  constexpr rzXform(const rzMatrix<2>& matrix, const rzVector<2>& trans)
      : matrix_(matrix), trans_(trans) {}
  /// Matrix with the x axis turned by `rotation` and scaled by `scale`, the y axis turned by
  /// `rotation` + `skew` and scaled by `scale` * `aspect`. Aspect 1 and skew 0 give a similarity.
  rzXform(const rzVector<2>& trans, double scale, double aspect, const rzRadian& skew,
          const rzRadian& rotation)
      : matrix_(rotation, rotation + skew, scale, scale * aspect), trans_(trans) {}

  constexpr const rzMatrix<2>& matrix() const { return matrix_; }
  constexpr const rzVector<2>& trans() const { return trans_; }

  constexpr rzVector<2> mapPoint(const rzVector<2>& p) const { return matrix_ * p + trans_; }
  constexpr rzVector<2> operator*(const rzVector<2>& p) const { return mapPoint(p); }
  /// Maps a difference of points: the matrix alone.
  constexpr rzVector<2> mapVector(const rzVector<2>& v) const { return matrix_ * v; }

  constexpr rzXform operator*(const rzXform& inner) const {
    return {matrix_ * inner.matrix_, mapPoint(inner.trans_)};
  }
  /// Throws rzMathError::Singular when there is none.
  rzXform inverse() const {
    const rzMatrix<2> inverse = matrix_.inverse();
    return {inverse, -(inverse * trans_)};
  }

  rzRadian xRot() const { return matrix_.xRot(); }
  rzRadian yRot() const { return matrix_.yRot(); }
  double xScale() const { return matrix_.xScale(); }
  double yScale() const { return matrix_.yScale(); }
  bool isFinite() const { return matrix_.isFinite() && trans_.isFinite(); }

  /// Exact.
  constexpr bool operator==(const rzXform& other) const = default;

 private:
  rzMatrix<2> matrix_;
  rzVector<2> trans_;
};

/// Each of the six numbers differs by at most `epsilon`.
inline bool rfRealEq(const rzXform<2>& a, const rzXform<2>& b, double epsilon) {
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 2; ++column) {
      if (!rfRealEq(a.matrix()(row, column), b.matrix()(row, column), epsilon)) return false;
    }
  }
  return rfRealEq(a.trans().x(), b.trans().x(), epsilon) &&
         rfRealEq(a.trans().y(), b.trans().y(), epsilon);
}

/// Archive form: the matrix by rows, then the translation. Throws rzArchive::BadFormat when a
/// number that is loaded is not finite, and then leaves `xform` as it was.
RZ_API rzArchive& operator||(rzArchive& ar, rzXform<2>& xform);
