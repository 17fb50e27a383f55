// SPDX-License-Identifier: Apache-2.0
#include "line_shape.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "rz/fit.h"
#include "rz/math_error.h"

namespace glyphline {
namespace {

using Points = std::vector<rzVector<2>>;

constexpr double kTremble = 0.75;       // pels of root mean square that a straight line may have
constexpr double kClearlyBetter = 3.0;  // how many times less a circle has to miss
constexpr double kChord = 4.0;          // pels between the points of a drawn arc, about
constexpr double kMostChords = 720.0;

template <class Distance>
double rootMeanSquare(const Points& points, Distance distance) {
  double squares = 0.0;
  for (const rzVector<2>& p : points) squares += distance(p) * distance(p);
  return std::sqrt(squares / static_cast<double>(points.size()));
}

Points segment(const Points& places, const rzFLine& line) {
  const rzVector<2> normal(-line.dir().y(), line.dir().x());
  const auto foot = [&](const rzVector<2>& p) { return p - normal * line.distanceFrom(p); };
  return {foot(places.front()), foot(places.back())};
}

// Runs the way that the places run: small steps from each to the next, added up.
Points arc(const Points& places, const rzCircle& circle) {
  const auto angleAt = [&](std::size_t i) { return (places[i] - circle.center()).angle(); };
  const rzRadian start = angleAt(0);
  double sweep = 0.0;
  for (std::size_t i = 1; i < places.size(); ++i) {
    sweep += (angleAt(i) - angleAt(i - 1)).signedNorm().toDouble();
  }
  const double chords =
      std::clamp(std::ceil(std::abs(sweep) * circle.radius() / kChord), 1.0, kMostChords);
  Points points;
  for (double k = 0.0; k <= chords; ++k) {
    points.push_back(circle.center() +
                     rzVector<2>(circle.radius(), start + rzRadian(sweep * k / chords)));
  }
  return points;
}

std::optional<rzCircle> fittedCircle(const Points& places) {
  if (places.size() < 3) return std::nullopt;
  try {
    return rfCircleFit(places, rzCircleFitParams()).circle();
  } catch (const rzMathError::Singular&) {
    return std::nullopt;
  }
}

}  // namespace

LineShape shapeOf(const std::vector<rzVector<2>>& places) {
  if (places.size() < 2) return {};
  try {
    const rzFLine line = rfLineFit(places, rzLineFitParams()).line();
    const auto fromLine = [&](const rzVector<2>& p) { return line.distanceFrom(p); };
    const double straight = rootMeanSquare(places, fromLine);
    if (straight > kTremble) {
      if (const std::optional<rzCircle> circle = fittedCircle(places)) {
        const auto fromCircle = [&](const rzVector<2>& p) {
          return p.distance(circle->center()) - circle->radius();
        };
        if (straight > kClearlyBetter * rootMeanSquare(places, fromCircle)) {
          return {true, arc(places, *circle)};
        }
      }
    }
    return {false, segment(places, line)};
  } catch (const rzMathError::Singular&) {
    return {};  // all places are one
  }
}

}  // namespace glyphline
