// SPDX-License-Identifier: Apache-2.0
//
// Is a path allowed, and what does it cost? rf_EvaluatePath answers for a whole path, from its
// beginning; the path search asks rz_PathTrials instead, which gives the same answers, to the last
// bit, from what it knows of the path that a trial grew from.
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange/line_cost.h"
#include "oc/arrange_params.h"
#include "rz/types.h"

/// False for a path that is not allowed; `cost` then holds what was done up to the failure. The
/// final evaluation does not apply `maxUnmatchedChars`, and fills the parts of `cost` that say so.
bool rf_EvaluatePath(const rz_ArrangePath& path, const std::vector<rzLong>& targetKeys,
                     const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                     const rz_ScoreTable& scores, const rzOCArrangeParams& params,
                     bool isLeftHanded, bool isFinal, rz_ArrangeCost& cost);

/// The second half: the terms that need geometry, line by line.
bool rf_EvaluateLines(const rz_ArrangePath& path, const std::vector<rzLong>& targetKeys,
                      const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                      const rz_ScoreTable& scores, const rzOCArrangeParams& params,
                      bool isLeftHanded, bool isFinal, rz_ArrangeCost& cost);

/// Errors of scale, in powers of two.
struct rz_ScaleErrors {
  double meanLogScale;
  double sum;  ///< Of the absolute errors.
};
/// Those of `chars` against their mean, whose natural logarithms of scale add up to `sumLogScale`.
rz_ScaleErrors rf_ScaleErrors(const rz_MatchedChars& chars, double sumLogScale);
/// The signed error of one character.
double rf_ScaleError(double logScale, double meanLogScale);

/// Sums of errors over the lines of a path.
struct rz_PathErrors {
  rz_PathErrors& operator+=(const rz_PathErrors& other);
  /// Sets the five terms of `cost` that these sums make.
  void price(const rzOCArrangeParams& params, rz_CostTerms& cost) const;

  double normal = 0.0;
  double tangential = 0.0;
  double rotation = 0.0;
  double logScale = 0.0;
  double spacing = 0.0;
};
/// What a line of `length` positions, `numMatched` of them matched, adds to them: unmatched
/// positions count as if they had erred like the others.
rz_PathErrors rf_WeightedErrors(const rz_LineErrors& line, double logScale, rzLong length,
                                rzLong numMatched);

/// What the breaks between `numLines` lines cost.
double rf_BreakCost(rzLong numLines, const rzOCArrangeParams& params);
