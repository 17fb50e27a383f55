// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/line_cost.h"

#include <cmath>
#include <limits>

#include "oc/arrange/line_fit.h"
#include "oc/arrange/line_layout.h"

namespace {

constexpr double kLeastGap = 0.8;                       // mean widths of two neighbours
constexpr double kGreatestGap = 2.5;                    // mean widths of two neighbours
constexpr double kErrorPerRadian = 1.2732395447351628;  // 4 / pi: 45 degrees count 1
constexpr double kQuarterTurnError = 2.0;
constexpr double kHalfTurnError = 4.0;
constexpr rzLong kCircularFrom = 3;  // positions of a path from which eCircular means it
constexpr rzLong kLeastOnCircle = 3;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

rzMatrix<2> turnBy(const rzRadian& angle) { return {angle, angle, 1.0, 1.0}; }

// A course says, for the coordinate of a position, where it should stand, which way the line runs
// there, and how to see an offset along and across the line.
struct StraightCourse {
  explicit StraightCourse(const rzLine& theLine)
      : line(theLine), toLineMatrix(turnBy(-theLine.angle())) {}
  rzVector<2> ideal(double coord) const { return line.pos() + coord * line.dir(); }
  rzRadian local(double) const { return line.angle(); }
  rzVector<2> toLine(const rzRadian&, const rzVector<2>& offset) const {
    return toLineMatrix * offset;
  }

  const rzLine& line;
  rzMatrix<2> toLineMatrix;
};

struct CircularCourse {
  rzVector<2> ideal(double coord) const {
    return circle.center() + rzVector<2>(circle.radius(), rzRadian(coord));
  }
  rzRadian local(double coord) const { return rzRadian(coord) + tangent; }
  rzVector<2> toLine(const rzRadian& localDirection, const rzVector<2>& offset) const {
    return turnBy(-localDirection) * offset;
  }

  const rzCircle& circle;
  rzRadian tangent;
};

}  // namespace

void rz_MatchedChars::clear() {
  points.clear();
  angles.clear();
  scales.clear();
  logScales.clear();
  symmetries.clear();
}

void rz_MatchedChars::append(const rz_Pose& pose, rz_OCExtractDefs::Symmetry symmetry) {
  points.push_back(pose.translation);
  angles.push_back(pose.rotation);
  scales.push_back(pose.scale);
  logScales.push_back(pose.logScale);
  symmetries.push_back(symmetry);
}

void rz_MatchedChars::removeLast() {
  points.pop_back();
  angles.pop_back();
  scales.pop_back();
  logScales.pop_back();
  symmetries.pop_back();
}

rz_LineJudge::rz_LineJudge(const std::vector<rz_CharData>& charData,
                           const rzOCArrangeParams& params, bool isLeftHanded)
    : charData_(charData),
      params_(params),
      isRelative_(params.orientationReference() == rzOCArrangeDefs::eRelative),
      isEarlyEndSafe_(params.normalTransCost() >= 0.0 && params.tangentialTransCost() >= 0.0 &&
                      params.orientationCost() >= 0.0),
      wantedDirection_(1.0, params.straightTextDirection()),
      wantsPositiveSweep_(params.isCircularTextDirectionClockwise() != isLeftHanded) {}

std::optional<rz_LineVerdict> rz_LineJudge::judge(const rz_LineUnderWork& line) {
  return judge_(line, false);
}

std::optional<rz_LineVerdict> rz_LineJudge::judge(const rz_LineUnderWork& line,
                                                  rz_ArrangeCost& details) {
  const std::optional<rz_LineVerdict> verdict = judge_(line, true);
  if (!verdict) return verdict;
  const bool isStraight = verdict->type == rzOCArrangeDefs::eStraight;
  copyDetails_(line, isStraight ? straight_ : circular_, details);
  copyDrawing_(line, verdict->type, details);
  return verdict;
}

std::optional<rz_LineVerdict> rz_LineJudge::judge_(const rz_LineUnderWork& line, bool withDetails) {
  judgeStraight_(line, withDetails);
  const double straightCost = straight_.isPossible ? cost_(straight_.errors) : kInfinity;
  judgeCircular_(line, straightCost, withDetails);
  if (!straight_.isPossible && !circular_.isPossible) return std::nullopt;
  const bool takesCircular =
      circular_.isPossible && (!straight_.isPossible || cost_(circular_.errors) < straightCost);
  const Shape& chosen = takesCircular ? circular_ : straight_;
  return rz_LineVerdict{takesCircular ? rzOCArrangeDefs::eCircular : rzOCArrangeDefs::eStraight,
                        chosen.errors, chosen.average};
}

void rz_LineJudge::judgeStraight_(const rz_LineUnderWork& line, bool withDetails) {
  straight_.isPossible = false;
  const bool mustBeCircular = params_.lineType() == rzOCArrangeDefs::eCircular &&
                              rf_Count(line.choices.size()) >= kCircularFrom;
  if (mustBeCircular || !rf_FitStraightLine(line.chars.points, line_)) return;
  if (params_.isTextDirectionSpecified() && line_.dir().dot(wantedDirection_) < 0.0) return;

  relative_ = line.chars.angles;
  if (isRelative_) {
    for (rzRadian& angle : relative_) angle -= line_.angle();
  }
  straight_.average = rf_AverageOrientation(relative_, line.chars.symmetries);
  rf_LayOutStraightLine(line_, line.chars.points, line.chars.angles, isRelative_, straight_.average,
                        charData_, line.choices, line.lineStart, line.lastMatched, coords_);
  measure_(line, StraightCourse(line_), straight_, kInfinity, withDetails);
}

void rz_LineJudge::judgeCircular_(const rz_LineUnderWork& line, double costToBeat,
                                  bool withDetails) {
  circular_.isPossible = false;
  if (params_.lineType() == rzOCArrangeDefs::eStraight || line.chars.size() < kLeastOnCircle) {
    return;
  }
  const bool isHopeless = isEarlyEndSafe_ && !withDetails && costToBeat <= 0.0;
  if (isHopeless || !rf_FitCircularLine(line.chars.points, circle_, pointAngles_, sweep_)) return;
  const bool isPositive = sweep_ >= rzRadian(0.0);
  if (params_.isTextDirectionSpecified() && isPositive != wantsPositiveSweep_) return;

  const rzRadian tangent(isPositive ? kRzHalfPi : -kRzHalfPi);
  relative_ = line.chars.angles;
  if (isRelative_) {
    for (std::size_t k = 0; k < relative_.size(); ++k) relative_[k] -= pointAngles_[k] + tangent;
  }
  circular_.average = rf_AverageOrientation(relative_, line.chars.symmetries);
  rf_LayOutCircularLine(circle_, pointAngles_.front(), sweep_, line.chars.points, line.chars.angles,
                        isRelative_, circular_.average, charData_, line.choices, line.lineStart,
                        line.lastMatched, coords_);
  measure_(line, CircularCourse{circle_, tangent}, circular_, costToBeat, withDetails);
}

// Walks the positions of the line and adds their errors up. Ends early, and leaves the shape
// impossible, once the cost can no longer fall below `costToBeat`: each further error is at least
// 0, and sums and products of such numbers do not fall when they are rounded. The other shape is
// then chosen in any case, as it would be after the whole walk.
template <class Course>
void rz_LineJudge::measure_(const rz_LineUnderWork& line, const Course& course, Shape& shape,
                            double costToBeat, bool withDetails) const {
  const rz_MatchedChars& chars = line.chars;
  const bool mayEndEarly = isEarlyEndSafe_ && !withDetails && costToBeat < kInfinity;
  shape.errors = {};
  if (withDetails) shape.places.assign(coords_.size(), {});
  double previousWidth = 0.0;
  rzVector<2> previousPlace;
  std::size_t index = 0;
  for (rzLong i = line.lineStart; i <= line.lastMatched; ++i) {
    const bool isMatched = line.choices[rf_At(i)] != kUnmatched;
    const double coord = coords_[rf_At(i - line.lineStart)];
    const rzVector<2> ideal = course.ideal(coord);
    const rzRadian local = course.local(coord);

    // An unmatched position takes the rotation of the next matched one.
    const double scale = isMatched ? chars.scales[index] : line.lineScale;
    const rz_BoxExtent box = rf_BoxExtent(charData_[rf_At(i)], chars.angles[index] - local);
    const double width = scale * box.width;
    const double height = scale * box.height;
    const rzVector<2> place = isMatched ? chars.points[index] : ideal;
    if (i > line.lineStart) {
      const double gap = (place - previousPlace).len();
      shape.errors.spacing += gapError_(gap, 0.5 * (previousWidth + width));
    }
    previousWidth = width;
    previousPlace = place;

    const rzRadian wanted = wantedRotation_(shape, local);
    if (withDetails) shape.places[rf_At(i - line.lineStart)] = {ideal, wanted, 0.0, 0.0, 0.0};
    if (!isMatched) continue;
    const rzVector<2> offset = course.toLine(local, chars.points[index] - ideal);
    const double tangentialError = std::fabs(offset.x()) / width;
    const double normalError = std::fabs(offset.y()) / height;
    const double rotationError =
        rotationError_(chars.angles[index] - wanted, chars.symmetries[index]);
    shape.errors.tangential += tangentialError;
    shape.errors.normal += normalError;
    shape.errors.rotation += rotationError;
    if (withDetails) {
      shape.places[rf_At(i - line.lineStart)] = {ideal, wanted, tangentialError, normalError,
                                                 rotationError};
    }
    ++index;
    if (mayEndEarly && cost_(shape.errors) >= costToBeat) return;
  }
  shape.isPossible = true;
}

double rz_LineJudge::gapError_(double gap, double meanWidth) const {
  const double minGap = kLeastGap * meanWidth;
  const double maxGap = kGreatestGap * meanWidth;
  if (gap < minGap) return (minGap - gap) / minGap;
  if (gap > maxGap) return (gap - maxGap) / meanWidth;
  return 0.0;
}

double rz_LineJudge::rotationError_(const rzRadian& off,
                                    rz_OCExtractDefs::Symmetry symmetry) const {
  if (symmetry == rz_OCExtractDefs::eAnyAngleSymmetry) return 0.0;
  const double error = std::fabs(off.signedNorm().toDouble()) * kErrorPerRadian;
  const bool isFolded = symmetry == rz_OCExtractDefs::eRot180Symmetry && error > kQuarterTurnError;
  return isFolded ? kHalfTurnError - error : error;
}

rzRadian rz_LineJudge::wantedRotation_(const Shape& shape, const rzRadian& local) const {
  const rzRadian expected = params_.orientationMode() == rzOCArrangeDefs::eSpecified
                                ? params_.expectedOrientation()
                                : shape.average;
  return isRelative_ ? expected + local : expected;
}

double rz_LineJudge::cost_(const rz_LineErrors& errors) const {
  return errors.normal * params_.normalTransCost() +
         errors.tangential * params_.tangentialTransCost() +
         errors.rotation * params_.orientationCost() +
         errors.spacing * params_.tangentialTransCost();
}

void rz_LineJudge::copyDetails_(const rz_LineUnderWork& line, const Shape& shape,
                                rz_ArrangeCost& details) const {
  for (rzLong i = line.lineStart; i <= line.lastMatched; ++i) {
    const Place& place = shape.places[rf_At(i - line.lineStart)];
    details.idealPositions[rf_At(i)] = place.ideal;
    details.idealRotations[rf_At(i)] = place.idealRotation;
    if (line.choices[rf_At(i)] == kUnmatched) continue;
    details.tangentialErrors[rf_At(i)] = place.tangentialError;
    details.normalErrors[rf_At(i)] = place.normalError;
    details.rotationErrors[rf_At(i)] = place.rotationError;
  }
}

void rz_LineJudge::copyDrawing_(const rz_LineUnderWork& line, rzOCArrangeDefs::LineType type,
                                rz_ArrangeCost& details) const {
  if (type == rzOCArrangeDefs::eStraight) {
    details.lineSegs.emplace_back(line_.nearestPoint(line.chars.points.front()),
                                  line_.nearestPoint(line.chars.points.back()));
  } else {
    details.lineArcs.emplace_back(circle_, pointAngles_.front(), sweep_);
  }
}
