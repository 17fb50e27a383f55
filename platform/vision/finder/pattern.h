// SPDX-License-Identifier: Apache-2.0
//
// A trained pattern: its models at the grains at which it may be met.
#pragma once

#include <memory>
#include <vector>

#include "platform/vision/finder/geometry.h"
#include "platform/vision/finder/gradient.h"
#include "platform/vision/finder/model.h"

namespace finder {

/// What training is told.
struct TrainingPlan {
  bool automaticGrain = true;
  double coarsest = 1.0;  // grains against the finest one at which the pattern is met
  double finest = 1.0;
};

class Pattern {
 public:
  /// Copies the pels of `image`. Its mask is not looked at.
  Pattern(const PelView& image, const Mat2& clientFromPel, const TrainingPlan& plan);

  /// Enough of an outline was found.
  bool isUsable() const { return isUsable_; }

  /// The outline as pels of `grain` training pels show it: one made in training, if it is near
  /// enough, or else one that `storage` then holds.
  const Model& model(double grain, std::unique_ptr<Model>& storage) const;

  const PatternFrame& frame() const { return frame_; }
  const Mat2& clientFromPel() const { return clientFromPel_; }
  /// From the centre to the corners of the pattern's box, in turn, in client units.
  std::vector<Vec2> boxCorners() const;
  /// The greatest distance of the outline from the centre, in client units.
  double radius() const { return models_.front()->radius; }
  const TrainingPlan& plan() const { return plan_; }

 private:
  TrainingImage trainingImage_() const;

  GreyImage image_;
  Mat2 clientFromPel_;
  TrainingPlan plan_;
  PatternFrame frame_;
  std::vector<std::unique_ptr<Model>> models_;
  bool isUsable_ = false;
};

}  // namespace finder
