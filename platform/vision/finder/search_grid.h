// SPDX-License-Identifier: Apache-2.0
//
// Which angles, scales and levels a search tries, and how far a refined pose may leave its zones.
#pragma once

#include <vector>

#include "platform/vision/finder/coarse_search.h"
#include "platform/vision/finder/find.h"
#include "platform/vision/finder/refine.h"

namespace finder {

/// Scales that are searched in the same level with the same model.
struct ScaleBand {
  int level = 0;
  double middle = 1.0;  // scale for which the models are made
  std::vector<double> scales;
  double step = 1.0;  // factor from one to the next
};

/// Angles in even steps, radians.
struct AngleRow {
  std::vector<double> values;
  double step = 0.0;
  bool isFullTurn = false;  // the last one is the first one's neighbour
};

/// `radius` is the pattern's in pels of the full picture at scale 1.
std::vector<ScaleBand> scaleBands(const FindPlan& plan, const TrainingPlan& training,
                                  double radius);

/// `radius` is the pattern's in pels of the level that is searched.
AngleRow angleRow(const FindPlan& plan, double radius);

/// All pairs of them.
std::vector<GridTurn> gridTurns(const ScaleBand& band, const AngleRow& angles);

PoseLimits poseLimits(const FindPlan& plan, const ScaleBand& band, const AngleRow& angles);

/// The finest level that a pattern trained so is looked at in.
int finestLevel(const TrainingPlan& training);

}  // namespace finder
