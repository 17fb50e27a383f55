// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/line_layout.h"

#include <algorithm>
#include <cmath>

namespace {

// Turns widths in `coords` into coordinates: `start` and `end` for the first and the last, and
// between them steps of half of both widths and an equal share of the free space. `unit` is the
// length that one step of the coordinate stands for.
void spread(double start, double end, double span, double unit, std::vector<double>& coords) {
  const std::size_t last = coords.size() - 1;
  double sum = 0.5 * (coords[0] + coords[last]);
  for (std::size_t k = 1; k < last; ++k) sum += coords[k];
  const double free = (span - sum / unit) / static_cast<double>(last);

  double previousWidth = coords[0];
  coords[0] = start;
  for (std::size_t k = 1; k < last; ++k) {
    const double width = coords[k];
    coords[k] = coords[k - 1] + 0.5 * (previousWidth + width) / unit + free;
    previousWidth = width;
  }
  coords[last] = end;
}

}  // namespace

rz_BoxExtent rf_BoxExtent(const rz_CharData& character, const rzRadian& rotation) {
  const double c = std::cos(rotation.toDouble());
  const double s = std::sin(rotation.toDouble());
  const rzMatrix<2> turn(c, 0.0 - s, s, c);
  const rzVector<2> a = turn * character.diagonalA();
  const rzVector<2> b = turn * character.diagonalB();
  return {std::max(std::fabs(a.x()), std::fabs(b.x())),
          std::max(std::fabs(a.y()), std::fabs(b.y()))};
}

void rf_LayOutStraightLine(const rzLine& line, const std::vector<rzVector<2>>& points,
                           const std::vector<rzRadian>& angles, bool isRelative,
                           const rzRadian& average, const std::vector<rz_CharData>& charData,
                           const std::vector<rzLong>& choices, rzLong first, rzLong last,
                           std::vector<double>& coords) {
  rstd_assert_(first < last, __LINE__);
  coords.resize(rf_At(last - first + 1));
  const rzRadian unmatchedRotation = isRelative ? average : average - line.angle();
  std::size_t index = 0;
  for (rzLong i = first; i <= last; ++i) {
    const bool isMatched = choices[rf_At(i)] != kUnmatched;
    const rzRadian rotation = isMatched ? angles[index++] - line.angle() : unmatchedRotation;
    coords[rf_At(i - first)] = rf_BoxExtent(charData[rf_At(i)], rotation).width;
  }
  const double start = line.offset(points.front());
  const double end = line.offset(points.back());
  spread(start, end, end - start, 1.0, coords);
}

void rf_LayOutCircularLine(const rzCircle& circle, const rzRadian& startAngle,
                           const rzRadian& sweep, const std::vector<rzVector<2>>&,
                           const std::vector<rzRadian>& angles, bool isRelative,
                           const rzRadian& average, const std::vector<rz_CharData>& charData,
                           const std::vector<rzLong>& choices, rzLong first, rzLong last,
                           std::vector<double>& coords) {
  rstd_assert_(first < last && circle.radius() > 0.0, __LINE__);
  const double numGaps = last - first;
  coords.resize(rf_At(last - first + 1));
  std::size_t index = 0;
  for (rzLong i = first; i <= last; ++i) {
    const bool isMatched = choices[rf_At(i)] != kUnmatched;
    const rzRadian direction = startAngle + (i - first) * sweep / numGaps + rzRadian(kRzHalfPi);
    const rzRadian rotation = isMatched    ? angles[index++] - direction
                              : isRelative ? average
                                           : average - direction;
    coords[rf_At(i - first)] = rf_BoxExtent(charData[rf_At(i)], rotation).width;
  }
  spread(startAngle.toDouble(), (startAngle + sweep).toDouble(), sweep.toDouble(), circle.radius(),
         coords);
}
