// SPDX-License-Identifier: Apache-2.0
//
// The sub-model tool: a picture is trained and then looked for in other pictures of about its size,
// as a whole or only with the part that lies on them. It answers how far one character can pass for
// another.
//
//   rz_SubModelTool tool;
//   tool.train(rzWarpSubModel(image, mask, ""), trainParams, &diag, 0);
//   tool.run(other, startPose, runParams, {}, results, &diag, 0);
//   if (results.numFound() > 0) likeness = results.results().front().score();
//
// The model is shifted pel by pel, neither turned nor scaled. At each shift r is the normalised
// correlation over the pels that both sides care for, and share is the part of the model's care
// pels that lies on care pels of the picture. The score is r squared times share, 0 where r is
// negative: a large model over a small picture scores low, a small one inside a large one may score
// high. A picture scores 1 in itself.
#pragma once

#include <string>
#include <vector>

#include "platform/vision/correlation/care_pels.h"
#include "platform/vision/correlation/cross_sums.h"
#include "rz/diag.h"
#include "rz/exception.h"
#include "rz/pel_buffer.h"
#include "rz/ptr_handle.h"
#include "rz/types.h"
#include "rz/vector.h"
#include "rz/xform.h"
#include "rz/xform_base.h"
#include "rz/xform_linear.h"

class rz_SubModelDefs {
 public:
  class Errors;
};

/// A model that shows nothing.
class rz_SubModelDefs::Errors : public rzExceptionWithString {
 public:
  explicit Errors(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(Errors)
};

/// What is trained: a picture and, if bound, a mask of equal size whose pels from 128 count.
class rzWarpSubModel {
 public:
  rzWarpSubModel(const rzPelBuffer_const<unsigned char>& image, const std::string& name)
      : image_(image), name_(name) {}
  rzWarpSubModel(const rzPelBuffer_const<unsigned char>& image,
                 const rzPelBuffer_const<unsigned char>& mask, const std::string& name)
      : image_(image), mask_(mask), name_(name) {}

  const rzPelBuffer_const<unsigned char>& image() const { return image_; }
  const rzPelBuffer_const<unsigned char>& mask() const { return mask_; }
  const std::string& name() const { return name_; }

 private:
  rzPelBuffer_const<unsigned char> image_;
  rzPelBuffer_const<unsigned char> mask_;
  std::string name_;
};

/// Carried; there is one grain, 1, and no freedom but the place.
class rzWarpSubModelCorTrainParams {
 public:
  double coarseGrainLimit() const { return coarseGrainLimit_; }
  void coarseGrainLimit(double limit) { coarseGrainLimit_ = limit; }
  rzULong zoneAllowed() const { return zoneAllowed_; }
  void zoneAllowed(rzULong zones) { zoneAllowed_ = zones; }

 private:
  double coarseGrainLimit_ = 1.0;
  rzULong zoneAllowed_ = 0;
};

class rzWarpSubModelCorRunParams {
 public:
  /// Smallest score that is found, 0 to 1; a score of 0 never is.
  double acceptThreshold() const { return acceptThreshold_; }
  void acceptThreshold(double threshold) { acceptThreshold_ = threshold; }
  /// Carried: the place alone is free.
  rzULong zoneEnable() const { return zoneEnable_; }
  void zoneEnable(rzULong zones) { zoneEnable_ = zones; }
  /// How far the model may hang over the picture: by this rectangle's width at its left and right,
  /// and by its height above and below. One as large as the model allows any overhang, the null
  /// rectangle none.
  const rzPelRect& partialMatch() const { return partialMatch_; }
  void partialMatch(const rzPelRect& rect) { partialMatch_ = rect; }
  /// Greatest shift from the start pose, either way, in pels of the picture.
  const rzVector<2>& xyUncertainty() const { return xyUncertainty_; }
  void xyUncertainty(double x, double y) { xyUncertainty_ = rzVector<2>(x, y); }

 private:
  double acceptThreshold_ = 0.5;
  rzULong zoneEnable_ = 0;
  rzPelRect partialMatch_;
  rzVector<2> xyUncertainty_;
};

class rzWarpSubModelResult {
 public:
  rzWarpSubModelResult(double score, const rzVector<2>& shift)
      : score_(score), pose_(rzMatrix<2>(), shift) {}

  double score() const { return score_; }
  /// From client coordinates of the trained picture to those of the other; its matrix is the
  /// identity.
  const rz2XformLinear& pose() const { return pose_; }

 private:
  double score_;
  rz2XformLinear pose_;
};

class rz_SubModelResultSet {
 public:
  rzLong numFound() const { return rf_Count(results_.size()); }
  /// Best first; there is at most one.
  const std::vector<rzWarpSubModelResult>& results() const { return results_; }

 private:
  friend class rz_SubModelTool;
  std::vector<rzWarpSubModelResult> results_;
};

class rz_SubModelTool {
 public:
  /// Throws rz_SubModelDefs::Errors, and keeps the model before, when the pels that count show
  /// nothing. `diag` and `flags` are not used, here and below.
  void train(const rzWarpSubModel& model, const rzWarpSubModelCorTrainParams& params,
             rzDiagObject* diag, rzULong flags);

  /// Looks for the model round `startPose`, which takes client coordinates of the trained picture
  /// to those of `image`; of its effect only where it puts the middle of the model counts, rounded
  /// to whole pels. Among equal scores the smallest shift counts. `points` is not used.
  void run(const rzPelBuffer_const<unsigned char>& image,
           const rzPtrHandle_const<rz2XformBase>& startPose,
           const rzWarpSubModelCorRunParams& params, const std::vector<rzVector<2>>& points,
           rz_SubModelResultSet& set, rzDiagObject* diag, rzULong flags) const;
  void run(const rzPelBuffer_const<unsigned char>& image,
           const rzPelBuffer_const<unsigned char>& mask,
           const rzPtrHandle_const<rz2XformBase>& startPose,
           const rzWarpSubModelCorRunParams& params, const std::vector<rzVector<2>>& points,
           rz_SubModelResultSet& set, rzDiagObject* diag, rzULong flags) const;

 private:
  bool hasMask_ = false;
  rz_CarePels model_;
  rz_WindowSums windowSums_;
  std::int64_t numCarePels_ = 0;
  rzPelRect window_;
  rzXform<2> clientFromImage_;
};
