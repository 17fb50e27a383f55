// SPDX-License-Identifier: Apache-2.0
//
// What run parameters keep between the runs of one search.
#pragma once

#include <memory>

#include "platform/vision/finder/picture_features.h"
#include "rz/cx_align.h"

class rzCXAlignRunParams::Cache {
 public:
  /// The features of this picture: those of the run before, if they are of the same one.
  finder::PictureFeatures& featuresOf(const finder::PelView& picture, double contrast) {
    if (!features_ || !features_->areOf(picture, contrast)) {
      features_.reset();  // never two at once
      features_ = std::make_unique<finder::PictureFeatures>(picture, contrast);
    }
    return *features_;
  }

 private:
  std::unique_ptr<finder::PictureFeatures> features_;
};
