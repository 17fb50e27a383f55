// SPDX-License-Identifier: Apache-2.0
//
// rzAngle8: a direction in 256 steps to the turn, in one byte. Sums and differences wrap round by
// themselves, which makes it the direction of choice for edge points.
#pragma once

#include <cmath>

#include "rz/angle.h"
#include "rz/export.h"

class rzAngle8 {
 public:
  constexpr rzAngle8() = default;
  /// `steps` of 1/256 turn.
  constexpr explicit rzAngle8(unsigned char steps) : steps_(steps) {}
  /// The nearest step. `angle` is finite.
  explicit rzAngle8(const rzRadian& angle)
      : steps_(static_cast<unsigned char>(
            std::lround(angle.norm().toDouble() * (kSteps / kRzTwoPi)) % kSteps)) {}

  constexpr unsigned char plain() const { return steps_; }
  /// In [0, 2 pi).
  constexpr rzRadian toRadian() const { return rzRadian(steps_ * (kRzTwoPi / kSteps)); }

  constexpr rzAngle8 operator+(const rzAngle8& other) const {
    return rzAngle8(static_cast<unsigned char>(steps_ + other.steps_));
  }
  constexpr rzAngle8 operator-(const rzAngle8& other) const {
    return rzAngle8(static_cast<unsigned char>(steps_ - other.steps_));
  }
  constexpr bool operator==(const rzAngle8& other) const = default;

 private:
  static constexpr int kSteps = 256;

  unsigned char steps_ = 0;
};
