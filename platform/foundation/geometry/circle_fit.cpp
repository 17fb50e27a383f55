// SPDX-License-Identifier: Apache-2.0
//
// The circle with the smallest sum of squared distances to the points.
//
// Coordinates: relative to the centroid, in units of the root mean square distance from it, with u
// along the axis of largest scatter and v across. For a flat arc u is of the order of 1 and v of
// the sagitta, and the sums keep the digits of both apart; an arc of any flatness that the points
// themselves can tell from a line is fitted to the last digits that they carry.
//
// Start: the algebraic fit of G. Taubin, "Estimation of Planar Curves, Surfaces, and Nonplanar
// Space Curves Defined by Implicit Equations with Applications to Edge and Range Image
// Segmentation", IEEE PAMI 13(11), 1991. With z = u^2 + v^2 - 1 it minimises the mean of
// (A z / 2 + B u + C v)^2 under A^2 + B^2 + C^2 = 1. In these coordinates (mean of u^2 + v^2 = 1,
// mean of u v = 0) that is the smallest eigenvalue e of
//   | p q r |    p = mean z^2 / 4,  q = mean z u / 2,  r = mean z v / 2,
//   | q a 0 |    a = mean u^2,      b = mean v^2,
//   | r 0 b |
// and the centre is (q / (a - e), r / (b - e)).
//
// Then: Gauss-Newton steps on the centre alone, the radius being the mean distance, halved while
// they do not help. The algebraic start is nearly always so close that two or three steps do.
#include <algorithm>
#include <cmath>
#include <limits>

#include "rz/fit.h"

namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// The point coordinates may each be off by half an epsilon of their size, and so may their
// differences; scatter across the axis below this many of them is no sign of a curve.
constexpr double kCollinearUlps = 8.0;

class LocalFrame {
 public:
  /// Not usable unless ok().
  explicit LocalFrame(const std::vector<rzVector<2>>& points) : first_(points.front()) {
    const double n = static_cast<double>(points.size());
    double largest = 0.0;
    for (const rzVector<2>& p : points) {
      mean_ += p - first_;
      largest = std::max({largest, std::fabs(p.x()), std::fabs(p.y())});
    }
    mean_ /= n;
    double xx = 0.0, xy = 0.0, yy = 0.0;
    for (const rzVector<2>& p : points) {
      const rzVector<2> d = (p - first_) - mean_;
      xx += d.x() * d.x();
      xy += d.x() * d.y();
      yy += d.y() * d.y();
    }
    scale_ = std::sqrt(n / (xx + yy));
    axis_ = mainAxis_(xx, xy, yy);
    rounding_ = kCollinearUlps * kEpsilon * (1.0 + largest * scale_);
  }

  bool ok() const { return std::isfinite(scale_) && scale_ > 0.0 && axis_.isFinite(); }
  /// What rounding alone can do to a local coordinate.
  double rounding() const { return rounding_; }

  rzVector<2> toLocal(const rzVector<2>& p) const {
    const rzVector<2> d = (p - first_) - mean_;
    return {scale_ * axis_.dot(d), scale_ * axis_.cross(d)};
  }
  rzCircle fromLocal(const rzVector<2>& center, double radius) const {
    const rzVector<2> turned(axis_.x() * center.x() - axis_.y() * center.y(),
                             axis_.y() * center.x() + axis_.x() * center.y());
    return {first_ + (mean_ + turned / scale_), radius / scale_};
  }

 private:
  // Unit vector at half the angle of (xx - yy, 2 xy), by the half-angle formulas.
  static rzVector<2> mainAxis_(double xx, double xy, double yy) {
    const rzVector<2> twice(xx - yy, 2.0 * xy);
    const double h = twice.len();
    if (h == 0.0) return {1.0, 0.0};
    const double larger = std::sqrt(0.5 * (1.0 + std::fabs(twice.x()) / h));
    const double smaller = xy / (h * larger);
    return twice.x() >= 0.0 ? rzVector<2>(larger, smaller) : rzVector<2>(smaller, larger);
  }

  rzVector<2> first_;
  rzVector<2> mean_;  // from first_
  rzVector<2> axis_;
  double scale_ = 0.0;
  double rounding_ = 0.0;
};

struct Moments {
  double p = 0.0, q = 0.0, r = 0.0, a = 0.0, b = 0.0;
};

Moments momentsOf(const std::vector<rzVector<2>>& points, const LocalFrame& frame) {
  Moments m;
  for (const rzVector<2>& point : points) {
    const rzVector<2> local = frame.toLocal(point);
    const double halfZ = 0.5 * (local.dot(local) - 1.0);
    m.p += halfZ * halfZ;
    m.q += halfZ * local.x();
    m.r += halfZ * local.y();
    m.a += local.x() * local.x();
    m.b += local.y() * local.y();
  }
  const double n = static_cast<double>(points.size());
  return {m.p / n, m.q / n, m.r / n, m.a / n, m.b / n};
}

// Newton's method on the characteristic polynomial from 0, which lies below all three roots, so
// that the steps rise to the smallest one and never pass it.
double smallestEigenvalue(const Moments& m) {
  constexpr int kMaxSteps = 30;
  constexpr double kAccuracy = 1e-12;  // relative to b, from which it is subtracted
  double e = 0.0;
  for (int i = 0; i < kMaxSteps; ++i) {
    const double p = m.p - e;
    const double a = m.a - e;
    const double b = m.b - e;
    const double value = p * a * b - m.q * m.q * b - m.r * m.r * a;
    const double slope = m.q * m.q + m.r * m.r - a * b - p * b - p * a;
    if (!(value > 0.0) || !(slope < 0.0)) break;
    const double step = -value / slope;
    e += step;
    if (step <= kAccuracy * m.b) break;
  }
  return e;
}

// The sum of squared distances for one centre, and what a Gauss-Newton step needs. Distances and
// directions are taken against those of the first point: the differences are small, so nothing is
// lost when their means are taken off.
struct Residuals {
  double radius = 0.0;  // mean distance
  double sum = 0.0;     // of squared differences from it
  rzVector<2> step;     // of the centre
  double gain = 0.0;    // by which the linear model says that the step lowers the sum
};

struct Sight {
  double distance;
  rzVector<2> direction;
};

Sight sightOf(const rzVector<2>& from, const rzVector<2>& to) {
  const rzVector<2> d = to - from;
  const double distance = d.len();
  return {distance, distance > 0.0 ? d / distance : rzVector<2>()};
}

Residuals residualsOf(const std::vector<rzVector<2>>& points, const LocalFrame& frame,
                      const rzVector<2>& center) {
  const Sight first = sightOf(center, frame.toLocal(points.front()));
  rzVector<2> sumE, sumRE;
  double sumR = 0.0, sumRR = 0.0, xx = 0.0, xy = 0.0, yy = 0.0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const Sight sight = sightOf(center, frame.toLocal(points[i]));
    const double r = sight.distance - first.distance;
    const rzVector<2> e = sight.direction - first.direction;
    sumR += r;
    sumRR += r * r;
    sumE += e;
    sumRE += r * e;
    xx += e.x() * e.x();
    xy += e.x() * e.y();
    yy += e.y() * e.y();
  }
  const double n = static_cast<double>(points.size());
  const rzVector<2> meanE = sumE / n;
  const rzMatrix<2> normal(xx - sumE.x() * meanE.x(), xy - sumE.x() * meanE.y(),
                           xy - sumE.x() * meanE.y(), yy - sumE.y() * meanE.y());
  const rzVector<2> right = sumRE - sumR * meanE;

  Residuals result;
  result.radius = first.distance + sumR / n;
  result.sum = std::max(0.0, sumRR - sumR * (sumR / n));
  const double det = normal.determinant();
  if (det > 0.0) {
    result.step = {(normal(1, 1) * right.x() - normal(0, 1) * right.y()) / det,
                   (normal(0, 0) * right.y() - normal(1, 0) * right.x()) / det};
    result.gain = right.dot(result.step);
  }
  return result;
}

// A step that would lower the sum by less than this share moves the centre by less than a
// millionth of what the noise in the points leaves open.
constexpr double kLeastGain = 1e-12;
constexpr int kMaxSteps = 10;

bool isSettled(const Residuals& at, double n) {
  const double roundingSum = n * std::pow(4.0 * kEpsilon * at.radius, 2);
  return at.sum <= roundingSum || !(at.gain > kLeastGain * at.sum);
}

void refine(const std::vector<rzVector<2>>& points, const LocalFrame& frame, rzVector<2>& center,
            Residuals& at) {
  const double n = static_cast<double>(points.size());
  double damping = 1.0;
  for (int i = 0; i < kMaxSteps && !isSettled(at, n); ++i) {
    const rzVector<2> nextCenter = center + damping * at.step;
    const Residuals next = residualsOf(points, frame, nextCenter);
    if (next.sum < at.sum) {
      center = nextCenter;
      at = next;
      damping = 1.0;
    } else {
      damping *= 0.5;
    }
  }
}

}  // namespace

bool rf_FitCircle(const std::vector<rzVector<2>>& points, rzCircle& circle) {
  if (points.size() < 3) return false;
  const LocalFrame frame(points);
  if (!frame.ok()) return false;
  const Moments m = momentsOf(points, frame);
  if (!(m.b > frame.rounding() * frame.rounding())) return false;

  // Three points lie on their circle, so that their smallest eigenvalue is 0.
  const bool isExact = points.size() == 3;
  const double e = isExact ? 0.0 : smallestEigenvalue(m);
  rzVector<2> center(m.q / (m.a - e), m.r / (m.b - e));
  if (!center.isFinite()) return false;

  Residuals at = residualsOf(points, frame, center);
  if (!isExact) refine(points, frame, center, at);
  const rzCircle result = frame.fromLocal(center, at.radius);
  if (!result.center().isFinite() || !std::isfinite(result.radius())) return false;
  circle = result;
  return true;
}

rzCircleFitResult rfCircleFit(const std::vector<rzVector<2>>& points, const rzCircleFitParams&) {
  rzCircle circle;
  if (!rf_FitCircle(points, circle)) rf_ThrowSingular("Circle fit has no solution");
  return rzCircleFitResult(circle);
}
