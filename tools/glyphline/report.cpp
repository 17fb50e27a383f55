// SPDX-License-Identifier: Apache-2.0
#include "report.h"

#include <algorithm>
#include <cmath>

#include "char_list.h"
#include "rz/fit.h"
#include "rz/math_error.h"

namespace glyphline {
namespace {

// A line counts as circular when a circle explains its origins clearly better than a straight line.
constexpr double kClearlyBetter = 3.0;      // ratio of the root mean squares
constexpr double kStraightEnough = 0.75;     // pels of root mean square

double straightDeviation(const std::vector<rzVector<2>>& points) {
  const rzFLine line = rfLineFit(points, rzLineFitParams(0, 0, HUGE_VAL)).line();
  const rzVector<2> normal(-std::sin(rzRadian(line.angle()).toDouble()),
                           std::cos(rzRadian(line.angle()).toDouble()));
  double squares = 0.0;
  for (const rzVector<2>& p : points) {
    const double off = p.dot(normal) - line.distance();
    squares += off * off;
  }
  return std::sqrt(squares / static_cast<double>(points.size()));
}

double circularDeviation(const std::vector<rzVector<2>>& points) {
  const rzCircle circle = rfCircleFit(points, rzCircleFitParams(0, 1.0, 0, HUGE_VAL)).circle();
  double squares = 0.0;
  for (const rzVector<2>& p : points) {
    const double off = (p - circle.center()).len() - circle.radius();
    squares += off * off;
  }
  return std::sqrt(squares / static_cast<double>(points.size()));
}

bool isCircular(const std::vector<rzVector<2>>& points) {
  if (points.size() < 3) return false;
  try {
    const double straight = straightDeviation(points);
    return straight > kStraightEnough && straight > kClearlyBetter * circularDeviation(points);
  } catch (const rzMathError::Singular&) {
    return false;
  }
}

rzXform<2> posed(const rzXform<2>& rigid, double scale) {
  return rigid * rzXform<2>(rzMatrix<2>(scale, 0.0, 0.0, scale), rzVector<2>());
}

}  // namespace

Place placeOf(const rzOCModel& model, const rzXform<2>& pose) {
  const rzXform<2> placed = pose * model.image().clientFromImageXform();
  const rzPelRect& area = model.imageArea();
  Place place;
  place.origin = pose.trans();
  place.angle = rzDegree(pose.xRot().signedNorm()).toDouble();
  place.scale = pose.xScale();
  place.box = {placed * rzVector<2>(area.ul()), placed * rzVector<2>(area.ur()),
               placed * rzVector<2>(area.lr()), placed * rzVector<2>(area.ll())};
  place.center = (place.box[0] + place.box[2]) * 0.5;
  return place;
}

ArrangeReport reportOf(const std::string& image, const rzOCAlphabet& alphabet,
                       const std::vector<rzLong>& keys, const rzOCArrangeResults& results,
                       double milliseconds) {
  ArrangeReport report;
  report.image = image;
  report.isTruncated = results.isSearchTruncated();
  report.milliseconds = milliseconds;
  const rzOCLineArrangement& arrangement = *results.arrangement();
  for (std::size_t l = 0; l < arrangement.lines().size(); ++l) {
    const rzOCLine& line = *arrangement.lines()[l];
    const rzXform<2> linePose =
        results.clientFromArrangementXform() * arrangement.linePoses()[l].linear();
    LineReport lineReport;
    std::vector<rzVector<2>> origins;
    for (std::size_t k = 0; k < line.charPoses().size(); ++k) {
      const std::size_t i = report.positions.size();
      const rzOCModel& model = *alphabet.character(keys[i]);
      PositionReport position;
      position.key = keys[i];
      position.character = model.name();
      position.isBlank = model.charType() == rzOCModel::eBlank;
      position.status = results.statusFlags()[i];
      position.score = results.scores()[i];
      position.line = static_cast<rzLong>(l);
      const Place place =
          placeOf(model, posed(linePose * line.charPoses()[k].linear(), line.charScales()[k]));
      if (k == 0) lineReport.pose = place;
      if (position.status != rzOCArrangeDefs::eUnknown) {
        position.place = place;
        origins.push_back(place.origin);
      }
      if (!position.isBlank) {
        ++report.expected;
        report.matched += position.status == rzOCArrangeDefs::eMatched ? 1 : 0;
      }
      lineReport.positions.push_back(static_cast<rzLong>(i));
      report.positions.push_back(position);
    }
    lineReport.isCircular = isCircular(origins);
    report.lines.push_back(lineReport);
  }
  return report;
}

bool FindReport::passes() const {
  return std::none_of(characters.begin(), characters.end(),
                      [](const FoundCharacter& found) { return found.instances.empty(); });
}

const char* nameOf(rzOCArrangeDefs::CharStatus status) {
  switch (status) {
    case rzOCArrangeDefs::eMatched: return "matched";
    case rzOCArrangeDefs::eInferred: return "inferred";
    default: return "unknown";
  }
}

const char* nameOf(rz_OCExtractDefs::Symmetry symmetry) {
  switch (symmetry) {
    case rz_OCExtractDefs::eRot180Symmetry: return "half-turn";
    case rz_OCExtractDefs::eAnyAngleSymmetry: return "any";
    default: return "none";
  }
}

}  // namespace glyphline
