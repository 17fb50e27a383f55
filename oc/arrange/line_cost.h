// SPDX-License-Identifier: Apache-2.0
//
// How well the characters of one line sit on a straight line and on a circle, and which of the two
// shapes is cheaper. Errors are without a unit: offsets count in sizes of characters, orientations
// in units of 45 degrees.
#pragma once

#include <optional>
#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange_defs.h"
#include "oc/arrange_params.h"
#include "rz/circle.h"
#include "rz/line.h"

/// The matched characters of a line, in order.
struct rz_MatchedChars {
  rzLong size() const { return rf_Count(points.size()); }
  void clear();
  void append(const rz_Pose& pose, rz_OCExtractDefs::Symmetry symmetry);
  void removeLast();

  std::vector<rzVector<2>> points;
  std::vector<rzRadian> angles;
  std::vector<double> scales;
  std::vector<double> logScales;
  std::vector<rz_OCExtractDefs::Symmetry> symmetries;
};

/// A line that is to be judged: it has two matched characters or more and begins with one.
struct rz_LineUnderWork {
  const rz_MatchedChars& chars;
  const std::vector<rzLong>& choices;  ///< Of the whole path.
  rzLong lineStart;
  rzLong lastMatched;  ///< The line's last matched position.
  double lineScale;    ///< Geometric mean of the scales.
};

/// Sums of errors over a line.
struct rz_LineErrors {
  double normal = 0.0;      ///< Across the line, in heights.
  double tangential = 0.0;  ///< Along the line, in widths.
  double rotation = 0.0;    ///< In units of 45 degrees.
  double spacing = 0.0;     ///< Gaps out of bounds.
};

/// What the cheaper shape of a line comes to.
struct rz_LineVerdict {
  rzOCArrangeDefs::LineType type = rzOCArrangeDefs::eDontCare;
  rz_LineErrors errors;
  rzRadian average{0.0};  ///< Average orientation of the characters.
};

/// Judges lines, one after the other. Keeps scratch space between them and nothing else.
class rz_LineJudge {
 public:
  /// The references must outlive the judge. `isLeftHanded`: see rf_IsLeftHanded.
  rz_LineJudge(const std::vector<rz_CharData>& charData, const rzOCArrangeParams& params,
               bool isLeftHanded);

  /// Nothing if neither shape is possible.
  std::optional<rz_LineVerdict> judge(const rz_LineUnderWork& line);
  /// The same; also fills the places, errors and drawing of the line in `details`.
  std::optional<rz_LineVerdict> judge(const rz_LineUnderWork& line, rz_ArrangeCost& details);

 private:
  // What is known of one position on one shape.
  struct Place {
    rzVector<2> ideal;
    rzRadian idealRotation;
    double tangentialError = 0.0;
    double normalError = 0.0;
    double rotationError = 0.0;
  };
  struct Shape {
    bool isPossible = false;
    rz_LineErrors errors;
    rzRadian average{0.0};
    std::vector<Place> places;  // filled when details are asked for
  };

  std::optional<rz_LineVerdict> judge_(const rz_LineUnderWork& line, bool withDetails);
  void judgeStraight_(const rz_LineUnderWork& line, bool withDetails);
  void judgeCircular_(const rz_LineUnderWork& line, double costToBeat, bool withDetails);
  template <class Course>
  void measure_(const rz_LineUnderWork& line, const Course& course, Shape& shape, double costToBeat,
                bool withDetails) const;
  double gapError_(double gap, double meanWidth) const;
  double rotationError_(const rzRadian& off, rz_OCExtractDefs::Symmetry symmetry) const;
  rzRadian wantedRotation_(const Shape& shape, const rzRadian& local) const;
  double cost_(const rz_LineErrors& errors) const;
  void copyDetails_(const rz_LineUnderWork& line, const Shape& shape,
                    rz_ArrangeCost& details) const;
  void copyDrawing_(const rz_LineUnderWork& line, rzOCArrangeDefs::LineType type,
                    rz_ArrangeCost& details) const;

  const std::vector<rz_CharData>& charData_;
  const rzOCArrangeParams& params_;
  bool isRelative_;
  bool isEarlyEndSafe_;  // no weight is negative: errors can only add to the cost
  rzVector<2> wantedDirection_;
  bool wantsPositiveSweep_;

  // Of the line judged last.
  Shape straight_;
  Shape circular_;
  rzLine line_;
  rzCircle circle_;
  std::vector<rzRadian> pointAngles_;
  rzRadian sweep_{0.0};
  std::vector<rzRadian> relative_;
  std::vector<double> coords_;
};
