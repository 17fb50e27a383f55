// SPDX-License-Identifier: Apache-2.0
//
// The settings of rfOCArrange: which scales and scores to accept, what line shapes to try, what is
// known about text direction and character orientation, the weight of every term of the cost, and
// the limits of the search. The defaults suit an ordinary print; most callers change one or two
// fields:
//
//   rzOCArrangeParams params;
//   params.scaleRange(rzRange(0.8, 1.25));
//   params.maxLines(2);
//
// The arranger looks for the arrangement of least cost. Every term of the cost is without a unit:
// distances count in sizes of characters, orientations in units of 45 degrees, scales in powers of
// two. A weight of 0 switches a term off.
//
// A setter that refuses its value throws rzOCArrangeDefs::BadParams and changes nothing; NaN is
// always refused. A plain value: copies share nothing.
#pragma once

#include "oc/arrange_defs.h"
#include "rz/angle.h"
#include "rz/archive.h"
#include "rz/export.h"
#include "rz/range.h"
#include "rz/types.h"

class RZ_API rzOCArrangeParams {
 public:
  /// The value of `maxLines` and `maxUnmatchedChars` that stands for no limit.
  static constexpr rzLong kNoLimit = 2147483647;

  /// All defaults.
  rzOCArrangeParams() = default;

  /// Scales at which characters are looked for, 1 being the trained size (default 0.9 to 1.1).
  /// Neither empty nor everything, and above 0. A wider range finds more sizes and costs time.
  const rzRange& scaleRange() const { return scaleRange_; }
  void scaleRange(const rzRange& value);

  /// Smallest score of a found character, 0 to 1 (default 0.4). Lower finds worn marks and costs
  /// time.
  double minMatchScore() const { return minMatchScore_; }
  void minMatchScore(double value);

  /// Most lines that an arrangement may have, at least 1 (default no limit). A line that is one
  /// unmatched position does not count.
  rzLong maxLines() const { return maxLines_; }
  void maxLines(rzLong value);

  /// Which shapes of lines are tried (default eDontCare). With eCircular, a line that is not the
  /// first cannot grow past one matched character: use it for a text on one ring.
  rzOCArrangeDefs::LineType lineType() const { return lineType_; }
  void lineType(rzOCArrangeDefs::LineType value);

  /// Whether the next two are known and must hold (default false).
  bool isTextDirectionSpecified() const { return isTextDirectionSpecified_; }
  void isTextDirectionSpecified(bool value) { isTextDirectionSpecified_ = value; }

  /// Reading direction that a straight line must not oppose, in client coordinates (default 0,
  /// along the x axis). Directions up to a right angle away pass.
  const rzRadian& straightTextDirection() const { return straightTextDirection_; }
  void straightTextDirection(const rzRadian& value) { straightTextDirection_ = value; }

  /// Whether a circular line must read clockwise as seen in the image, or against it (default
  /// true).
  bool isCircularTextDirectionClockwise() const { return isCircularTextDirectionClockwise_; }
  void isCircularTextDirectionClockwise(bool value) { isCircularTextDirectionClockwise_ = value; }

  /// Most positions, blanks left out, for which the search may do without a found character, at
  /// least 0 (default no limit).
  rzLong maxUnmatchedChars() const { return maxUnmatchedChars_; }
  void maxUnmatchedChars(rzLong value);

  /// Whether characters are judged against expectedOrientation() or against the average of their
  /// line (default eAverage).
  rzOCArrangeDefs::OrientationMode orientationMode() const { return orientationMode_; }
  void orientationMode(rzOCArrangeDefs::OrientationMode value);

  /// Whether orientations are measured in the client frame or against the line's direction at the
  /// character (default eRelative).
  rzOCArrangeDefs::OrientationReference orientationReference() const {
    return orientationReference_;
  }
  void orientationReference(rzOCArrangeDefs::OrientationReference value);

  /// The orientation expected with eSpecified; not read otherwise (default 0).
  const rzRadian& expectedOrientation() const { return expectedOrientation_; }
  void expectedOrientation(const rzRadian& value) { expectedOrientation_ = value; }

  /// Cost of each line after the first, at least 0 (default 2).
  double lineBreakCost() const { return lineBreakCost_; }
  void lineBreakCost(double value);

  /// Cost of each position left without a found character, at least 0 (default 1). Blanks, and
  /// characters of which the image shows no instance at all, cost nothing.
  double unmatchedCharCost() const { return unmatchedCharCost_; }
  void unmatchedCharCost(double value);

  /// Cost of a character that lies its own height beside its line, at least 0 (default 1).
  double normalTransCost() const { return normalTransCost_; }
  void normalTransCost(double value);

  /// Cost of a character that lies its own width from its place on the line, and weight of gaps
  /// that are too narrow or too wide, at least 0 (default 1).
  double tangentialTransCost() const { return tangentialTransCost_; }
  void tangentialTransCost(double value);

  /// Cost of an orientation 45 degrees off, at least 0 (default 1).
  double orientationCost() const { return orientationCost_; }
  void orientationCost(double value);

  /// Cost of a scale off by a factor of 2 from the line's mean, at least 0 (default 1).
  double scaleCost() const { return scaleCost_; }
  void scaleCost(double value);

  /// Whether the arrangement carries uncertainties; if not, they are all 0 (default false).
  bool compPoseUncertainties() const { return compPoseUncertainties_; }
  void compPoseUncertainties(bool value) { compPoseUncertainties_ = value; }

  /// The line search stops when this many partial arrangements wait, at least 0 (default 500000).
  /// Lower bounds time and memory for texts that are not there; 0 and 1 stop it at once.
  rzLong maxCandidates() const { return maxCandidates_; }
  void maxCandidates(rzLong value);

  /// Time limit in seconds for the search for each distinct character, at least 0 (default 10).
  /// The line search has no clock of its own.
  double timeout() const { return timeout_; }
  void timeout(double value);

  /// All fields, doubles exactly.
  bool operator==(const rzOCArrangeParams& other) const = default;

  /// Moves the fields as they are; the setters' checks do not run. Throws
  /// rzArchive::UnknownVersion; a failed load changes nothing.
  friend RZ_API rzArchive& operator||(rzArchive& archive, rzOCArrangeParams& params);

 private:
  rzRange scaleRange_{0.9, 1.1};
  double minMatchScore_ = 0.4;
  rzLong maxLines_ = kNoLimit;
  rzOCArrangeDefs::LineType lineType_ = rzOCArrangeDefs::eDontCare;
  bool isTextDirectionSpecified_ = false;
  rzRadian straightTextDirection_{0.0};
  bool isCircularTextDirectionClockwise_ = true;
  rzLong maxUnmatchedChars_ = kNoLimit;
  rzOCArrangeDefs::OrientationMode orientationMode_ = rzOCArrangeDefs::eAverage;
  rzOCArrangeDefs::OrientationReference orientationReference_ = rzOCArrangeDefs::eRelative;
  rzRadian expectedOrientation_{0.0};
  double lineBreakCost_ = 2.0;
  double unmatchedCharCost_ = 1.0;
  double normalTransCost_ = 1.0;
  double tangentialTransCost_ = 1.0;
  double orientationCost_ = 1.0;
  double scaleCost_ = 1.0;
  bool compPoseUncertainties_ = false;
  rzLong maxCandidates_ = 500000;
  double timeout_ = 10.0;
};

RZ_API rzArchive& operator||(rzArchive& archive, rzOCArrangeParams& params);
