// SPDX-License-Identifier: Apache-2.0
//
// Fits of a straight line and of a circle to points, both in the sense of the smallest sum of
// squared distances from the points to the shape. All points count. The same points in the same
// order give the same bits.
//
//   const rzFLine line = rfLineFit(points, rzLineFitParams(0, 0, infinity)).line();
//   const rzCircle circle = rfCircleFit(points, rzCircleFitParams(0, 1.0, 0, infinity)).circle();
#pragma once

#include <limits>
#include <vector>

#include "rz/circle.h"
#include "rz/export.h"
#include "rz/line.h"
#include "rz/matrix.h"
#include "rz/types.h"
#include "rz/vector.h"

/// How a line is fitted.
class rzLineFitParams {
 public:
  rzLineFitParams() = default;
  /// `mode` 0, the only one: all points, total least squares. `numIgnore` is how many points may be
  /// left out and `maxDistance` from which distance on; 0 and infinity leave out none, and mode 0
  /// leaves out none in any case.
  rzLineFitParams(rzLong mode, unsigned numIgnore, double maxDistance)
      : mode_(mode), numIgnore_(numIgnore), maxDistance_(maxDistance) {}

  rzLong mode() const { return mode_; }
  unsigned numIgnore() const { return numIgnore_; }
  double maxDistance() const { return maxDistance_; }

 private:
  rzLong mode_ = 0;
  unsigned numIgnore_ = 0;
  double maxDistance_ = std::numeric_limits<double>::infinity();
};

/// How a circle is fitted.
class rzCircleFitParams {
 public:
  rzCircleFitParams() = default;
  /// As rzLineFitParams; `weight`, of the whole set of points, has no effect in mode 0.
  rzCircleFitParams(rzLong mode, double weight, unsigned numIgnore, double maxDistance)
      : mode_(mode), weight_(weight), numIgnore_(numIgnore), maxDistance_(maxDistance) {}

  rzLong mode() const { return mode_; }
  double weight() const { return weight_; }
  unsigned numIgnore() const { return numIgnore_; }
  double maxDistance() const { return maxDistance_; }

 private:
  rzLong mode_ = 0;
  double weight_ = 1.0;
  unsigned numIgnore_ = 0;
  double maxDistance_ = std::numeric_limits<double>::infinity();
};

class rzLineFitResult {
 public:
  explicit rzLineFitResult(const rzFLine& line) : line_(line) {}
  const rzFLine& line() const { return line_; }

 private:
  rzFLine line_;
};

class rzCircleFitResult {
 public:
  explicit rzCircleFitResult(const rzCircle& circle) : circle_(circle) {}
  const rzCircle& circle() const { return circle_; }

 private:
  rzCircle circle_;
};

/// The sums under a line fit. A line that grows by a point can carry its sums on, and fit() then
/// gives the same bits as a fit of all its points from the start.
class RZ_API rz_LineMoments {
 public:
  /// Takes one more point in. Sums are relative to the first point, so that a short line far from
  /// the origin loses nothing.
  void add(const rzVector<2>& point) {
    if (count_ == 0.0) first_ = point;
    const rzVector<2> d = point - first_;
    count_ += 1.0;
    sumX_ += d.x();
    sumY_ += d.y();
    sumXX_ += d.x() * d.x();
    sumXY_ += d.x() * d.y();
    sumYY_ += d.y() * d.y();
  }

  /// How many points have been added.
  rzLong count() const { return static_cast<rzLong>(count_); }

  /// The line of total least squares. Its angle lies in [-pi/2, pi/2]; it is 0 when the points
  /// scatter alike in all directions. Throws rzMathError::Singular for fewer than two points, when
  /// all points are equal, or when a sum is not finite.
  rzFLine fit() const {
    rzFLine line;
    if (!fit(line)) rf_ThrowSingular("Line fit has no solution");
    return line;
  }
  /// As fit(), answering false where that throws, and then leaving `line` as it was.
  bool fit(rzFLine& line) const;

 private:
  double count_ = 0.0;
  rzVector<2> first_;
  double sumX_ = 0.0;
  double sumY_ = 0.0;
  double sumXX_ = 0.0;
  double sumXY_ = 0.0;
  double sumYY_ = 0.0;
};

/// The straight line with the smallest sum of squared distances to the points. Throws
/// rzMathError::Singular as rz_LineMoments::fit() does.
RZ_API rzLineFitResult rfLineFit(const std::vector<rzVector<2>>& points,
                                 const rzLineFitParams& params);

/// The circle with the smallest sum of squared distances to the points. Three points in general
/// position lie on it to 1e-9 of the radius. Throws rzMathError::Singular for fewer than three
/// points, points on one straight line to within rounding, or a coordinate that is not finite.
RZ_API rzCircleFitResult rfCircleFit(const std::vector<rzVector<2>>& points,
                                     const rzCircleFitParams& params);

/// As rfCircleFit, answering false where that throws, and then leaving `circle` as it was. For
/// searches in which most sets of points lie on no circle, where an exception would cost more than
/// the fit.
RZ_API bool rf_FitCircle(const std::vector<rzVector<2>>& points, rzCircle& circle);
