// SPDX-License-Identifier: Apache-2.0
//
// rzCircle: centre and radius, as given.
#pragma once

#include "rz/export.h"
#include "rz/vector.h"

class rzCircle {
 public:
  constexpr rzCircle() = default;
  constexpr rzCircle(const rzVector<2>& center, double radius) : center_(center), radius_(radius) {}

  constexpr const rzVector<2>& center() const { return center_; }
  constexpr double radius() const { return radius_; }

  constexpr bool operator==(const rzCircle& other) const = default;

 private:
  rzVector<2> center_;
  double radius_ = 0.0;
};
