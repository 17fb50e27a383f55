// SPDX-License-Identifier: Apache-2.0
//
// rzCoordAxes: a pair of axes as drawn in a picture, from an origin to the end of each.
#pragma once

#include "rz/export.h"
#include "rz/vector.h"
#include "rz/xform.h"

class rzCoordAxes {
 public:
  constexpr rzCoordAxes() = default;
  constexpr rzCoordAxes(const rzVector<2>& origin, const rzVector<2>& xEnd, const rzVector<2>& yEnd)
      : origin_(origin), xEnd_(xEnd), yEnd_(yEnd) {}

  constexpr const rzVector<2>& origin() const { return origin_; }
  constexpr const rzVector<2>& xEnd() const { return xEnd_; }
  constexpr const rzVector<2>& yEnd() const { return yEnd_; }

  constexpr rzCoordAxes map(const rzXform<2>& xform) const {
    return {xform * origin_, xform * xEnd_, xform * yEnd_};
  }

  constexpr bool operator==(const rzCoordAxes& other) const = default;

 private:
  rzVector<2> origin_;
  rzVector<2> xEnd_;
  rzVector<2> yEnd_;
};
