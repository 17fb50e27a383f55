// SPDX-License-Identifier: Apache-2.0
//
// The settings of a character search. rz_OCExtractModelParams says which poses are looked for,
// rz_OCExtractRunParams within which limits. Both are plain records: change the fields that
// you care about and hand the records to rz_OCExtractModel::search, which keeps a copy of the one
// and only reads the other. Nothing is checked, and no value is an error: the pattern finder
// takes an angle range of a turn or more for the full turn and cuts scales to 0.05 to 20.
//
//   rz_OCExtractModelParams modelParams;
//   modelParams.scaleRange = rzRange(0.9, 1.1);
#pragma once

#include <utility>

#include "rz/export.h"
#include "rz/range.h"
#include "rz/types.h"

/// Which poses of a character are looked for, and at which grain its pattern is trained.
struct RZ_API rz_OCExtractModelParams {
  /// Rotations of a pose, in degrees (default: the full turn).
  rzRange angleRange{-180.0, 180.0};
  /// Scales of a pose, 1 being the trained size (default 0.5 to 2).
  rzRange scaleRange{0.5, 2.0};
  /// Carried for the caller; the search does not read it.
  double nominalScale = 1.0;
  /// Coarse and fine grain of the patterns, 1 being full resolution. If either is exactly -1 (the
  /// default), each pattern selects its own.
  std::pair<double, double> grainLimits{-1.0, -1.0};
};

/// The limits within which each character is searched.
struct RZ_API rz_OCExtractRunParams {
  /// Time limit in seconds, for each distinct character anew (default 10).
  double timeout = 10.0;
  /// Smallest score of a reported instance, 0 to 1 (default 0.5).
  double acceptThresh = 0.5;
  /// Stands in the diagnostic record only; the search does not read it.
  double confusionThresh = 0.6;
  /// Stands in the diagnostic record only; the search does not read it.
  double overlap = 0.1;
  /// Carried for the caller; the search does not read it. How many instances are reported follows
  /// from how often the character is expected.
  rzLong maxNumResults = -1;
};
