// SPDX-License-Identifier: Apache-2.0
//
// Along a direction w of the polygon's frame the placed point f R(a) p reaches f (w . R(a) p). For
// a fixed turn and factor that is linear in p, so its largest value is at a vertex. For a vertex it
// is f |w| |p| cos(angle(p) + a - angle(w)): largest at the allowed turn that brings p nearest to
// w, and then at the larger factor if the projection is positive, else at the smaller one.
#include "rz/enclose_rect.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace {

struct Slack {
  double turn;       // radians, either way
  double minFactor;  // at least 0
  double maxFactor;
};

// A product in which 0 times an unlimited uncertainty is 0: what does not act does not count.
double product(double value, double factor) { return value == 0.0 ? 0.0 : value * factor; }

double turnTowards(const rzVector<2>& from, const rzVector<2>& to, double limit) {
  const double turn = std::remainder(std::atan2(to.y(), to.x()) - std::atan2(from.y(), from.x()),
                                     2.0 * std::numbers::pi);
  return std::max(-limit, std::min(turn, limit));
}

// The largest w . f R(a) p for one vertex p.
double vertexReach(const rzVector<2>& w, const rzVector<2>& p, const Slack& slack) {
  const double turn = turnTowards(p, w, slack.turn);
  const double c = std::cos(turn);
  const double s = std::sin(turn);
  const double projection = w.x() * (c * p.x() - s * p.y()) + w.y() * (s * p.x() + c * p.y());
  return product(projection, projection > 0.0 ? slack.maxFactor : slack.minFactor);
}

double polygonReach(const rzVector<2>& w, const rzPolygon& polygon, const Slack& slack) {
  double reach = -std::numeric_limits<double>::infinity();
  for (const rzVector<2>& p : polygon.vertices()) {
    reach = std::max(reach, vertexReach(w, p, slack));
  }
  return reach;
}

struct Interval {
  double low;
  double high;
};

// What one target coordinate can be: `row` and `origin` give it from the polygon's frame, `shift`
// is how far the uncertainties of place move it.
Interval coordinateRange(const rzVector<2>& row, double origin, double shift,
                         const rzPolygon& polygon, const Slack& slack) {
  return {-polygonReach(-row, polygon, slack) + origin - shift,
          polygonReach(row, polygon, slack) + origin + shift};
}

}  // namespace

rzRect rfEncloseRect(const rzPolygon& polygon, const rzXform<2>& composed,
                     const rzXform<2>& targetXform, double xUncertainty, double yUncertainty,
                     const rzRadian& rotationUncertainty, double scaleUncertainty,
                     double /*aspectUncertainty*/, double /*skewUncertainty*/,
                     double /*warpUncertainty*/, rzLong /*flags*/) {
  if (polygon.vertices().empty()) return rzRect();
  const rzXform<2> targetFromClient = targetXform.inverse();
  const rzXform<2> total = targetFromClient * composed;
  const rzMatrix<2>& m = total.matrix();
  const rzMatrix<2>& client = targetFromClient.matrix();
  const Slack slack{rotationUncertainty.toDouble(), std::max(0.0, 1.0 - scaleUncertainty),
                    1.0 + scaleUncertainty};
  const auto range = [&](int i) {
    const double origin = i == 0 ? total.trans().x() : total.trans().y();
    const double shift = product(std::fabs(client.element(i, 0)), xUncertainty) +
                         product(std::fabs(client.element(i, 1)), yUncertainty);
    return coordinateRange(rzVector<2>(m.element(i, 0), m.element(i, 1)), origin, shift, polygon,
                           slack);
  };
  const Interval x = range(0);
  const Interval y = range(1);
  return rzRect(x.low, y.low, x.high - x.low, y.high - y.low);
}
