// SPDX-License-Identifier: Apache-2.0
#include "oc/pose.h"

#include <cmath>

namespace {

rzRadian rotationOf(const rzMatrix<2>& m) {
  const double c = m(0, 0) + m(1, 1);
  const double s = m(1, 0) - m(0, 1);
  return rzRadian(s == 0.0 && c == 0.0 ? 0.0 : std::atan2(s, c));
}

}  // namespace

rz_Pose::rz_Pose(const rzVector<2>& place, const rzRadian& turn, double size)
    : translation(place), rotation(turn), scale(size), logScale(std::log(size)) {}

rz_Pose::rz_Pose(const rzXform<2>& xform)
    : rz_Pose(xform.trans(), rotationOf(xform.matrix()),
              std::sqrt(std::fabs(xform.matrix().determinant()))) {}

rz_Pose::operator rzXform<2>() const {
  return {rzMatrix<2>(rotation, rotation, scale, scale), translation};
}

rz_Pose::operator rz2Rigid() const { return {rzDegree(rotation), translation}; }
