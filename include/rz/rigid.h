// SPDX-License-Identifier: Apache-2.0
//
// rz2Rigid: a turn followed by a shift, p -> R(angle) p + trans. The pose of a character in its
// line and of a line in its arrangement.
//
// The angle is kept in degrees as given and never brought into a turn: three steps of 100 degrees
// make 300 degrees, and 300 degrees is not equal to -60. A product maps from right to left.
#pragma once

#include "rz/angle.h"
#include "rz/export.h"
#include "rz/vector.h"
#include "rz/xform.h"

class rzArchive;

class rz2Rigid {
 public:
  /// The identity.
  constexpr rz2Rigid() = default;
  constexpr rz2Rigid(const rzDegree& angle, const rzVector<2>& trans)
      : angle_(angle), trans_(trans) {}

  constexpr const rzDegree& angle() const { return angle_; }
  constexpr const rzVector<2>& trans() const { return trans_; }

  /// The same motion as a transform.
  rzXform<2> linear() const { return {rzMatrix<2>(angle_, angle_, 1.0, 1.0), trans_}; }
  rzVector<2> mapPoint(const rzVector<2>& p) const { return linear().mapPoint(p); }
  rzVector<2> operator*(const rzVector<2>& p) const { return mapPoint(p); }

  rz2Rigid operator*(const rz2Rigid& inner) const {
    return {angle_ + inner.angle_, mapPoint(inner.trans_)};
  }
  rz2Rigid inverse() const {
    return {-angle_, -(rzMatrix<2>(-angle_, -angle_, 1.0, 1.0) * trans_)};
  }

  /// Exact, angles as numbers.
  constexpr bool operator==(const rz2Rigid& other) const = default;

 private:
  rzDegree angle_;
  rzVector<2> trans_;
};

/// Archive form: angle in degrees, x, y. Throws rzArchive::BadFormat when a number that is loaded
/// is not finite, and then leaves `rigid` as it was.
RZ_API rzArchive& operator||(rzArchive& ar, rz2Rigid& rigid);
