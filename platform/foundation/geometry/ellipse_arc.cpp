// SPDX-License-Identifier: Apache-2.0
#include "rz/ellipse_arc.h"

#include <algorithm>
#include <cmath>

rzVector<2> rzEllipseArc2::point(const rzRadian& t) const {
  const rzVector<2> unturned(xRadius_ * std::cos(t.toDouble()), yRadius_ * std::sin(t.toDouble()));
  return center_ + rzMatrix<2>(rotation_, rotation_, 1.0, 1.0) * unturned;
}

bool rzEllipseArc2::covers_(const rzRadian& t) const {
  const bool forwards = span_.toDouble() >= 0.0;
  const rzRadian way = (forwards ? t - start_ : start_ - t).norm();
  return way.toDouble() <= std::fabs(span_.toDouble());
}

// A coordinate of the arc is a cos t + b sin t, with (a, b) a row of the matrix that turns the
// scaled unit circle. It is extreme at t = atan2(b, a) and half a turn on, where it is
// +-sqrt(a^2 + b^2).
rzRect rzEllipseArc2::encloseRect() const {
  const rzVector<2> first = p1();
  const rzVector<2> last = p2();
  rzVector<2> low(std::min(first.x(), last.x()), std::min(first.y(), last.y()));
  rzVector<2> high(std::max(first.x(), last.x()), std::max(first.y(), last.y()));

  const rzMatrix<2> axes(rotation_, rotation_, xRadius_, yRadius_);
  const rzVector<2> x(axes(0, 0), axes(0, 1));
  const rzVector<2> y(axes(1, 0), axes(1, 1));
  const rzRadian halfTurn(kRzPi);
  if (covers_(x.angle())) high.x(std::max(high.x(), center_.x() + x.len()));
  if (covers_(x.angle() + halfTurn)) low.x(std::min(low.x(), center_.x() - x.len()));
  if (covers_(y.angle())) high.y(std::max(high.y(), center_.y() + y.len()));
  if (covers_(y.angle() + halfTurn)) low.y(std::min(low.y(), center_.y() - y.len()));
  return {low, high - low};
}
