// SPDX-License-Identifier: Apache-2.0
//
// Angles with their unit in the type: rzRadian and rzDegree hold one double and turn into each
// other by themselves, so that a function that wants radians can be handed degrees and no factor
// is ever written by hand. A plain double becomes an angle only when asked to.
//
// Angles grow from the x axis towards the y axis, which is clockwise on a screen whose y axis
// points down. Nothing is brought into a turn unless norm() or signedNorm() is called: 370 degrees
// is not equal to 10 degrees.
#pragma once

#include <cmath>
#include <compare>

inline constexpr double kRzPi = 3.141592653589793;
inline constexpr double kRzTwoPi = 6.283185307179586;
inline constexpr double kRzHalfPi = 1.5707963267948966;

/// `angle` modulo `turn`, at least 0 and less than `turn`, also for tiny negative angles. NaN for
/// an angle that is not finite.
inline double rf_WrapIntoTurn(double angle, double turn) {
  double rest = std::fmod(angle, turn);
  if (rest < 0.0) rest += turn;
  return rest < turn ? rest + 0.0 : rest - turn;  // + 0.0 turns a negative zero into a positive
}

/// `angle` modulo `turn`, above -`turn` / 2 and at most `turn` / 2. NaN for an angle that is not
/// finite.
inline double rf_WrapIntoHalfTurns(double angle, double turn) {
  const double rest = std::remainder(angle, turn);
  return rest > -0.5 * turn ? rest : rest + turn;
}

/// The arithmetic that the two units share. `Angle` is the unit's class.
template <class Angle>
class rz_AngleBase {
 public:
  constexpr rz_AngleBase() = default;
  constexpr explicit rz_AngleBase(double value) : value_(value) {}

  /// The value in the class's own unit.
  constexpr double toDouble() const { return value_; }

  constexpr Angle operator-() const { return Angle(-value_); }
  constexpr Angle operator+(const Angle& other) const { return Angle(value_ + other.toDouble()); }
  constexpr Angle operator-(const Angle& other) const { return Angle(value_ - other.toDouble()); }
  constexpr Angle operator*(double factor) const { return Angle(value_ * factor); }
  constexpr Angle operator/(double divisor) const { return Angle(value_ / divisor); }
  constexpr double operator/(const Angle& other) const { return value_ / other.toDouble(); }
  friend constexpr Angle operator*(double factor, const Angle& angle) { return angle * factor; }

  constexpr Angle& operator+=(const Angle& other) { return self_(value_ + other.toDouble()); }
  constexpr Angle& operator-=(const Angle& other) { return self_(value_ - other.toDouble()); }
  constexpr Angle& operator*=(double factor) { return self_(value_ * factor); }
  constexpr Angle& operator/=(double divisor) { return self_(value_ / divisor); }

  friend constexpr bool operator==(const Angle& a, const Angle& b) {
    return a.toDouble() == b.toDouble();
  }
  friend constexpr std::partial_ordering operator<=>(const Angle& a, const Angle& b) {
    return a.toDouble() <=> b.toDouble();
  }

 private:
  constexpr Angle& self_(double value) {
    value_ = value;
    return static_cast<Angle&>(*this);
  }

  double value_ = 0.0;
};

class rzDegree;

/// An angle in radians.
class rzRadian : public rz_AngleBase<rzRadian> {
 public:
  constexpr rzRadian() = default;
  constexpr explicit rzRadian(double radians) : rz_AngleBase(radians) {}
  constexpr rzRadian(const rzDegree& degrees);

  /// The same direction in [0, 2 pi).
  rzRadian norm() const {
    const double value = toDouble();
    return value >= 0.0 && value < kRzTwoPi ? *this : rzRadian(rf_WrapIntoTurn(value, kRzTwoPi));
  }
  /// The same direction in (-pi, pi].
  rzRadian signedNorm() const {
    const double value = toDouble();
    return value > -kRzPi && value <= kRzPi ? *this
                                            : rzRadian(rf_WrapIntoHalfTurns(value, kRzTwoPi));
  }
};

/// An angle in degrees.
class rzDegree : public rz_AngleBase<rzDegree> {
 public:
  constexpr rzDegree() = default;
  constexpr explicit rzDegree(double degrees) : rz_AngleBase(degrees) {}
  constexpr rzDegree(const rzRadian& radians) : rz_AngleBase(radians.toDouble() / kRzPi * 180.0) {}

  /// The same direction in [0, 360).
  rzDegree norm() const { return rzDegree(rf_WrapIntoTurn(toDouble(), 360.0)); }
  /// The same direction in (-180, 180].
  rzDegree signedNorm() const { return rzDegree(rf_WrapIntoHalfTurns(toDouble(), 360.0)); }
};

// Divided first: multiples of 45 degrees then become the nearest doubles to the multiples of pi/4.
constexpr rzRadian::rzRadian(const rzDegree& degrees)
    : rz_AngleBase(degrees.toDouble() / 180.0 * kRzPi) {}
