// SPDX-License-Identifier: Apache-2.0
//
// Straight lines in three forms: rzLine runs from a point in a direction, rzFLine is given by its
// angle and its distance from the origin (the form of a fit), rzLineSeg joins two points.
#pragma once

#include <cmath>

#include "rz/angle.h"
#include "rz/export.h"
#include "rz/vector.h"
#include "rz/xform.h"

/// A directed line through a point. Places along it are measured from that point.
class rzLine {
 public:
  /// The x axis.
  rzLine() = default;
  rzLine(const rzRadian& direction, const rzVector<2>& pos)
      : pos_(pos), dir_(1.0, direction), angle_(direction) {}
  /// `direction` need not be a unit vector; a null one stands for the x axis.
  rzLine(const rzVector<2>& direction, const rzVector<2>& pos) : rzLine(direction.angle(), pos) {}

  const rzVector<2>& pos() const { return pos_; }
  /// Unit vector.
  const rzVector<2>& dir() const { return dir_; }
  /// Direction as given, not brought into a turn.
  const rzRadian& angle() const { return angle_; }

  /// How far on from pos() the foot of `p` lies: pos() + offset(p) * dir() is that foot.
  double offset(const rzVector<2>& p) const { return (p - pos_).dot(dir_); }
  rzVector<2> nearestPoint(const rzVector<2>& p) const { return pos_ + offset(p) * dir_; }

  bool operator==(const rzLine& other) const = default;

 private:
  rzVector<2> pos_;
  rzVector<2> dir_{1.0, 0.0};
  rzRadian angle_;
};

/// All points p with p . (-sin angle, cos angle) = distance. The point of it that is nearest to the
/// origin is the vector of length `distance` at `angle` plus a quarter turn.
class rzFLine {
 public:
  /// The x axis.
  rzFLine() = default;
  rzFLine(const rzRadian& angle, double distance)
      : angle_(angle), distance_(distance), dir_(1.0, angle) {}

  const rzRadian& angle() const { return angle_; }
  /// Signed distance of the line from the origin.
  double distance() const { return distance_; }
  /// Unit vector at angle().
  const rzVector<2>& dir() const { return dir_; }

  /// Place of the foot of `p` on the line, measured from the point nearest to the origin.
  double distanceAlong(const rzVector<2>& p) const { return p.dot(dir_); }
  /// Signed distance of `p` from the line.
  double distanceFrom(const rzVector<2>& p) const { return dir_.cross(p) - distance_; }

  bool operator==(const rzFLine& other) const = default;

 private:
  rzRadian angle_;
  double distance_ = 0.0;
  rzVector<2> dir_{1.0, 0.0};
};

/// The straight connection of two points.
class rzLineSeg {
 public:
  constexpr rzLineSeg() = default;
  constexpr rzLineSeg(const rzVector<2>& p1, const rzVector<2>& p2) : p1_(p1), p2_(p2) {}

  constexpr const rzVector<2>& p1() const { return p1_; }
  constexpr const rzVector<2>& p2() const { return p2_; }
  double len() const { return p1_.distance(p2_); }

  constexpr rzLineSeg map(const rzXform<2>& xform) const { return {xform * p1_, xform * p2_}; }

  constexpr bool operator==(const rzLineSeg& other) const = default;

 private:
  rzVector<2> p1_;
  rzVector<2> p2_;
};
