// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/line_fit.h"

#include <cmath>

#include "rz/fit.h"

namespace {

const rzRadian kHalfTurn(kRzPi);
const rzRadian kQuarterTurn(kRzHalfPi);
const rzRadian kLeastSweep(0.08726646259971647);  // 5 degrees

// Whether the feet of the points follow each other strictly, in the sense of `span`.
bool areInOrder(const std::vector<rzVector<2>>& points, const rzFLine& line, double span) {
  double previous = line.distanceAlong(points.front());
  for (std::size_t k = 1; k < points.size(); ++k) {
    const double along = line.distanceAlong(points[k]);
    if (span >= 0.0 ? previous >= along : previous <= along) return false;
    previous = along;
  }
  return true;
}

// The middle one of the points, or half way between the middle two, tells on which side they bend.
bool bendsPositively(const std::vector<rzVector<2>>& points) {
  const std::size_t m = points.size();
  const rzVector<2> middle = 0.5 * (points[m / 2] + points[(m - 1) / 2]);
  return (middle - points.front()).cross(points.back() - middle) >= 0.0;
}

// From one direction to another, turning in the given sense: 0 up to a turn.
rzRadian turnBetween(const rzRadian& from, const rzRadian& to, bool isPositive) {
  return isPositive ? (to - from).norm() : (from - to).norm();
}

// The directions of the points from the centre; false unless they follow each other.
bool followEachOther(const std::vector<rzVector<2>>& points, const rzVector<2>& center,
                     bool isPositive, std::vector<rzRadian>& pointAngles) {
  pointAngles.resize(points.size());
  double total = 0.0;
  for (std::size_t k = 0; k < points.size(); ++k) {
    const rzVector<2> radius = points[k] - center;
    if (radius.isNull()) return false;
    pointAngles[k] = radius.angle();
    if (k == 0) continue;
    const rzRadian step = turnBetween(pointAngles[k - 1], pointAngles[k], isPositive);
    if (step <= rzRadian(0.0) || step >= kHalfTurn) return false;
    total += step.toDouble();
    if (total >= kRzTwoPi) return false;
  }
  return true;
}

}  // namespace

bool rf_FitStraightLine(const std::vector<rzVector<2>>& points, rzLine& line) {
  rz_LineMoments moments;
  for (const rzVector<2>& point : points) moments.add(point);
  rzFLine fit;
  if (!moments.fit(fit)) return false;
  const double span = fit.distanceAlong(points.back()) - fit.distanceAlong(points.front());
  if (!areInOrder(points, fit, span)) return false;
  const rzRadian direction = span > 0.0 ? fit.angle() : fit.angle() + kHalfTurn;
  line = rzLine(direction, rzVector<2>(fit.distance(), fit.angle() + kQuarterTurn));
  return true;
}

bool rf_FitCircularLine(const std::vector<rzVector<2>>& points, rzCircle& circle,
                        std::vector<rzRadian>& pointAngles, rzRadian& sweep) {
  if (!rf_FitCircle(points, circle) || !(circle.radius() > 0.0)) return false;
  const bool isPositive = bendsPositively(points);
  const rzRadian turn = turnBetween((points.front() - circle.center()).angle(),
                                    (points.back() - circle.center()).angle(), isPositive);
  sweep = isPositive ? turn : -turn;
  return turn >= kLeastSweep && followEachOther(points, circle.center(), isPositive, pointAngles);
}

rzRadian rf_AverageOrientation(const std::vector<rzRadian>& angles,
                               const std::vector<rz_OCExtractDefs::Symmetry>& symmetries) {
  double c = 0.0;
  double s = 0.0;
  for (std::size_t k = 0; k < angles.size(); ++k) {
    if (symmetries[k] != rz_OCExtractDefs::eNoSymmetry) continue;
    c += std::cos(angles[k].toDouble());
    s += std::sin(angles[k].toDouble());
  }
  for (std::size_t k = 0; k < angles.size(); ++k) {
    if (symmetries[k] != rz_OCExtractDefs::eRot180Symmetry) continue;
    const double x = std::cos(angles[k].toDouble());
    const double y = std::sin(angles[k].toDouble());
    const double sense = x * c + y * s >= 0.0 ? 1.0 : -1.0;
    c += sense * x;
    s += sense * y;
  }
  return rzRadian(c == 0.0 && s == 0.0 ? 0.0 : std::atan2(s, c));
}
