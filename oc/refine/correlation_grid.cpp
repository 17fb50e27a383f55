// SPDX-License-Identifier: Apache-2.0
#include "oc/refine/correlation_grid.h"

#include <algorithm>

#include "oc/affine_transform.h"
#include "oc/extract_defs.h"
#include "rz/timeout.h"
#include "rz/timer.h"

namespace {

constexpr auto kBilinear = rzAffineSamplingParams::eBilinear;
constexpr double kOverlap = 0.3;  // of two results of one template

rzNrmSearchRunParams correlationParams(const rz_RSISearchRunParams& params) {
  rzNrmSearchRunParams correlation(rzNrmSearchDefs::eCorrelation);
  correlation.accuracy(rzNrmSearchDefs::eFine);
  correlation.accept(params.accept);
  correlation.confusion(params.confusion);
  correlation.xyOverlap(kOverlap);
  correlation.maxNumResults(static_cast<std::int16_t>(params.maxNumResults));
  return correlation;
}

}  // namespace

void rz_SearchResult2::init() {
  found_ = false;
  time_ = 0.0;
  instances_.clear();
}

const rz_SearchInstance& rz_SearchResult2::instance_(rzLong i) const {
  if (i < 0 || i >= numInstances()) throw rz_OCExtractDefs::rz_OCExtractError("Refine error");
  return instances_[static_cast<std::size_t>(i)];
}

rzRSINrmSearchModel::rzRSINrmSearchModel(const rzPelBuffer_const<unsigned char>& image,
                                         const rzPelBuffer_const<unsigned char>& mask,
                                         const rz_RSISearchModelParams& params,
                                         const std::string& name, rzDiagObject*, rzULong)
    : name_(name), window_(image.window()), params_(params) {
  rzNrmSearchTrainParams trainParams;
  trainParams.accuracy(rzNrmSearchDefs::eFine);
  trainParams.algorithms(rzNrmSearchDefs::eCorrelation);
  for (double scale = params.scaleRange.start(); !(scale > params.scaleRange.end());
       scale = scale * (1.0 + params.scaleStep)) {
    const double s = scale / params.baseScale;
    for (double angle = params.angleRange.start(); !(angle > params.angleRange.end());
         angle = angle + params.angleStep) {
      const rzRadian turn = rzDegree(angle);
      rzPelBuffer<unsigned char> turned;
      rzPelBuffer<unsigned char> turnedMask;
      rf_AffineTransform(image, mask, turn, s, turned, turnedMask, kBilinear, kBilinear);
      rzNrmSearchModel model;
      model.train(turned, trainParams, nullptr, 0);
      models_.push_back(std::move(model));
      xforms_.emplace_back(rzMatrix<2>(turn, turn, s, s), rzVector<2>());
    }
  }
}

void rzRSINrmSearchModel::run(const rzPelBuffer_const<unsigned char>& image,
                              const rz_RSISearchRunParams& params,
                              rzPtrHandle<rz_SearchResult2>& result, rzDiagObject*, rzULong) const {
  rzTimer timer(false);
  timer.start();
  if (result.isNull()) {
    result = rzPtrHandle<rz_SearchResult2>(new rz_SearchResult2);
  } else {
    result->init();
  }
  const rzNrmSearchRunParams correlation = correlationParams(params);
  std::vector<rz_SearchInstance>& instances = result->instances_;
  for (std::size_t m = 0; m < models_.size(); ++m) {
    rzNrmSearchResultSet set;
    try {
      models_[m].run(image, correlation, params.searchRect, set, nullptr, 0);
    } catch (const rzTimeout::Expired&) {
      throw;
    } catch (const rzException&) {
      continue;
    }
    for (const rzNrmSearchResult& found : set.results()) {
      if (found.found()) instances.emplace_back(found, static_cast<rzLong>(m));
    }
  }
  // Among equal scores the template that comes first in the grid stands first.
  std::stable_sort(
      instances.begin(), instances.end(),
      [](const rz_SearchInstance& a, const rz_SearchInstance& b) { return a.score > b.score; });
  if (params.maxNumResults >= 0 && result->numInstances() > params.maxNumResults) {
    instances.resize(static_cast<std::size_t>(params.maxNumResults));
  }
  result->found_ = !instances.empty();
  for (rz_SearchInstance& instance : instances) place_(image, instance);
  timer.stop();
  result->time_ = timer.msec();
}

void rzRSINrmSearchModel::place_(const rzPelBuffer_const<unsigned char>& image,
                                 rz_SearchInstance& instance) const {
  const rzXform<2> placed =
      image.clientFromImageXform() * xforms_[static_cast<std::size_t>(instance.modelIndex)];
  instance.pose =
      rzXform<2>(rzMatrix<2>(placed.xRot(), placed.yRot(), placed.xScale(), placed.yScale()),
                 instance.location);
  const rzAffineRectangle window(rzVector<2>(window_.ul()), window_.width(), window_.height(),
                                 rzRadian(0.0), rzRadian(0.0));
  instance.affRect = window.map(instance.pose);
}
