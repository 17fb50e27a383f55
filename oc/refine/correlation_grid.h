// SPDX-License-Identifier: Apache-2.0
//
// rzRSINrmSearchModel: a normalised-correlation search that also covers a small range of angles
// and scales. It holds a grid of templates, the character turned and scaled by one point of the
// grid each, runs them all, and reports the best places with the angle and scale of the template
// that found them.
#pragma once

#include <string>
#include <vector>

#include "platform/vision/correlation/nrm_search.h"
#include "rz/affine_rectangle.h"
#include "rz/ptr_handle.h"
#include "rz/range.h"
#include "rz/rep_base.h"
#include "rz/xform.h"

/// The grid: which angles and scales are tried.
struct rz_RSISearchModelParams {
  rzRange angleRange{-180.0, 180.0};  // degrees, ends included
  double angleStep = 5.0;             // degrees, added
  rzRange scaleRange{0.5, 2.0};       // ends included
  double scaleStep = 0.25;            // each scale is the one before times 1 + scaleStep
  double baseScale = 1.0;             // every scale of the grid is divided by this
};

struct rz_RSISearchRunParams {
  double accept = 0.5;
  double confusion = 0.6;
  double overlap = 0.1;  // carried only
  rzLong maxNumResults = -1;
  rzPelRect searchRect{0, 0, 1, 1};
};

/// One place at which a template of the grid was found.
struct rz_SearchInstance {
  rz_SearchInstance() = default;
  rz_SearchInstance(const rzNrmSearchResult& result, rzLong index)
      : score(result.score()), location(result.location()), modelIndex(index) {}

  double score = 0.0;
  rzXform<2> pose;            // of the model in the searched image
  rzAffineRectangle affRect;  // the model's window carried by the pose
  rzVector<2> location;       // as the correlation gave it
  rzLong modelIndex = 0;      // which template of the grid
};

/// What one run found, best score first.
class rz_SearchResult2 : public virtual rzRepBase {
 public:
  void init();
  bool found() const { return found_; }
  rzLong numInstances() const { return static_cast<rzLong>(instances_.size()); }
  /// Throw rz_OCExtractDefs::rz_OCExtractError when `i` is not below numInstances().
  rzXform<2> pose(rzLong i) const { return instance_(i).pose; }
  double score(rzLong i) const { return instance_(i).score; }

 private:
  friend class rzRSINrmSearchModel;
  const rz_SearchInstance& instance_(rzLong i) const;

  bool found_ = false;
  double time_ = 0.0;  // milliseconds
  std::vector<rz_SearchInstance> instances_;
};

class rzRSINrmSearchModel : public virtual rzRepBase {
 public:
  rzRSINrmSearchModel() = default;
  /// Trains the grid from the window of `image`. A template that cannot be trained lets its
  /// exception pass. `mask` may be unbound; it shapes the turned images only.
  rzRSINrmSearchModel(const rzPelBuffer_const<unsigned char>& image,
                      const rzPelBuffer_const<unsigned char>& mask,
                      const rz_RSISearchModelParams& params, const std::string& name,
                      rzDiagObject* diag, rzULong flags);

  /// Runs every template over the window of `image`. A null `result` is filled with a new object,
  /// another one is used again. rzTimeout::Expired passes; any other failure of a template passes
  /// over that point of the grid.
  void run(const rzPelBuffer_const<unsigned char>& image, const rz_RSISearchRunParams& params,
           rzPtrHandle<rz_SearchResult2>& result, rzDiagObject* diag, rzULong flags) const;

  const std::vector<rzXform<2>>& xforms() const { return xforms_; }

 private:
  void place_(const rzPelBuffer_const<unsigned char>& image, rz_SearchInstance& instance) const;

  std::string name_;
  rzPelRect window_;
  rz_RSISearchModelParams params_;
  std::vector<rzNrmSearchModel> models_;  // scale in the outer, angle in the inner order
  std::vector<rzXform<2>> xforms_;        // turn and scale of each model
};
