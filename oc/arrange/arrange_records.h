// SPDX-License-Identifier: Apache-2.0
//
// The records that pass between the stages of the arranger. All of them live for one call.
//
// A position i counts through the expected text. A candidate c counts through the instances that
// were found for a position, best score first; candidate -1 stands for "not matched". Candidate
// tables are indexed [i][c].
#pragma once

#include <cstddef>
#include <vector>

#include "oc/arrange_defs.h"
#include "oc/extract_defs.h"
#include "oc/pose.h"
#include "rz/affine_rectangle.h"
#include "rz/angle.h"
#include "rz/ellipse_arc.h"
#include "rz/line.h"
#include "rz/rigid.h"
#include "rz/types.h"
#include "rz/vector.h"
#include "rz/xform.h"

inline constexpr rzLong kUnmatched = -1;

/// The place of an element in a vector.
inline std::size_t rf_At(rzLong index) { return static_cast<std::size_t>(index); }

using rz_PoseTable = std::vector<std::vector<rz_Pose>>;
using rz_ScoreTable = std::vector<std::vector<double>>;

/// What is known of the character of one position.
struct rz_CharData {
  bool isBlank = false;
  /// False when the image shows no instance of the character at all: then the position may stay
  /// unmatched at no cost.
  bool costsWhenUnmatched = true;
  rz_OCExtractDefs::Symmetry symmetry = rz_OCExtractDefs::eNoSymmetry;
  /// Where the character finds itself when turned by half a turn.
  rzXform<2> rot180Pose;
  rzLong numOccurrences = 0;  ///< How often the key stands in the text.
  /// How many candidates, from the best, the path search may use. There can be more.
  rzLong numCandidates = 0;
  bool mayStayUnmatched = true;

  /// The model's image area in the model's client coordinates.
  const rzAffineRectangle& imageArea() const { return imageArea_; }
  void imageArea(const rzAffineRectangle& area);

  /// The diagonals of that box, of which widths and heights are made.
  const rzVector<2>& diagonalA() const { return diagonalA_; }
  const rzVector<2>& diagonalB() const { return diagonalB_; }

 private:
  rzAffineRectangle imageArea_;
  rzVector<2> diagonalA_;
  rzVector<2> diagonalB_;
};

/// A choice of candidate for each position of a prefix of the text, and where the lines begin.
struct rz_ArrangePath {
  rzLong size() const { return rf_Count(choices.size()); }
  rzLong numLines() const { return rf_Count(lineStarts.size()); }
  /// One past the last position of line k.
  rzLong lineEnd(rzLong k) const { return k + 1 < numLines() ? lineStarts[rf_At(k + 1)] : size(); }

  void append(rzLong choice, bool startsLine);
  void removeLast();

  std::vector<rzLong> choices;
  std::vector<rzLong> lineStarts;
};

/// The terms of the cost of a path.
struct rz_CostTerms {
  /// Their sum, in their order.
  double total() const;

  double matchCost = 0.0;       ///< Weak scores.
  double unmatchedCost = 0.0;   ///< Unmatched positions.
  double breakCost = 0.0;       ///< Line breaks.
  double normalCost = 0.0;      ///< Errors across the line.
  double tangentialCost = 0.0;  ///< Errors along the line.
  double rotationCost = 0.0;    ///< Errors of orientation.
  double logScaleCost = 0.0;    ///< Errors of scale.
  double spacingCost = 0.0;     ///< Wrong gaps between neighbours.
};

/// What one path costs, and why. The vectors marked "final" are filled by the final evaluation
/// only.
struct rz_ArrangeCost : rz_CostTerms {
  // One for each line.
  std::vector<rzOCArrangeDefs::LineType> lineTypes;  ///< eDontCare: too short to have a shape.
  std::vector<rzLineSeg> lineSegs;                   ///< Straight lines only; final.
  std::vector<rzEllipseArc2> lineArcs;               ///< Circular lines only; final.
  std::vector<rzRadian> lineAngles;                  ///< Average orientation of the characters.
  std::vector<double> lineScales;                    ///< Geometric mean of the scales.

  // One for each position, final.
  std::vector<double> tangentialErrors;
  std::vector<double> normalErrors;
  std::vector<double> rotationErrors;
  std::vector<double> logScaleErrors;  ///< Signed.
  std::vector<rzVector<2>> idealPositions;
  std::vector<rzRadian> idealRotations;
};
