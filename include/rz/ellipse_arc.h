// SPDX-License-Identifier: Apache-2.0
//
// rzEllipseArc2: a piece of an ellipse. With the centre c, the radii rx and ry and the rotation r
// its points are
//   c + R(r) (rx cos t, ry sin t),  t from start to start + span.
// A negative span runs backwards; one of a full turn or more is the whole ellipse; span 0 is a
// point.
#pragma once

#include "rz/angle.h"
#include "rz/circle.h"
#include "rz/export.h"
#include "rz/rect.h"
#include "rz/vector.h"

class RZ_API rzEllipseArc2 {
 public:
  rzEllipseArc2() = default;
  rzEllipseArc2(const rzVector<2>& center, double xRadius, double yRadius, const rzRadian& rotation,
                const rzRadian& start, const rzRadian& span)
      : center_(center),
        xRadius_(xRadius),
        yRadius_(yRadius),
        rotation_(rotation),
        start_(start),
        span_(span) {}
  /// A piece of a circle.
  rzEllipseArc2(const rzCircle& circle, const rzRadian& start, const rzRadian& span)
      : rzEllipseArc2(circle.center(), circle.radius(), circle.radius(), rzRadian(0.0), start,
                      span) {}

  const rzVector<2>& center() const { return center_; }
  double xRadius() const { return xRadius_; }
  double yRadius() const { return yRadius_; }
  const rzRadian& rotation() const { return rotation_; }
  const rzRadian& start() const { return start_; }
  const rzRadian& span() const { return span_; }

  /// The point for the parameter `t`.
  rzVector<2> point(const rzRadian& t) const;
  rzVector<2> p1() const { return point(start_); }
  rzVector<2> p2() const { return point(start_ + span_); }

  /// The smallest rectangle that holds the arc: the box of its ends and of those extremes of the
  /// ellipse that lie on it.
  rzRect encloseRect() const;

  bool operator==(const rzEllipseArc2& other) const = default;

 private:
  bool covers_(const rzRadian& t) const;

  rzVector<2> center_;
  double xRadius_ = 0.0;
  double yRadius_ = 0.0;
  rzRadian rotation_;
  rzRadian start_;
  rzRadian span_;
};
