// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <locale>
#include <vector>

#include "oc/alphabet.h"
#include "oc/extract/scale_cluster.h"
#include "oc/extract/select_results.h"
#include "oc/extract_model.h"
#include "rz/attention.h"
#include "rz/cx_align.h"
#include "rz/cx_defs.h"
#include "rz/timeout.h"
#include "rz/timer.h"
#include "rz/vector.h"
#include "rz/xform_linear.h"

namespace {

constexpr rzULong kAngleZone = rz_CXDefs::eAngle;
constexpr rzULong kBothZones = rz_CXDefs::eAngle | rz_CXDefs::eScale;
constexpr rzULong kTimeoutCode = 0x80000064;
constexpr rzLong kSpareResults = 2;  // beside one for each occurrence
constexpr rzLong kFewestScaleSamples = 3;

rzCXAlignRunParams searchParams(const rzRange& angleRange, double acceptThresh) {
  constexpr double kContrast = 10.0;
  constexpr double kOverlap = 0.2;
  rzCXAlignRunParams params;
  params.acceptThreshold(acceptThresh);
  params.algorithm(rz_CXDefs::eFine);
  params.zoneEnable(kBothZones);
  params.zone(rz_CXDefs::eAngle, angleRange.start(), angleRange.end());
  params.scoreUsingClutter(false);
  params.contrastThreshold(kContrast);
  params.xyOverlap(kOverlap);
  return params;
}

// Runs one pattern under its own time limit. False if it was cut short; what was found until then
// stands in the result set.
bool runPattern(const rzCXAlignPattern& pattern, const rzPelBuffer_const<unsigned char>& image,
                const rzPelBuffer_const<unsigned char>& mask, const rzCXAlignRunParams& params,
                double timeout, rzCXAlignResultSet& resultSet) {
  try {
    rzAttentionTag tag(true);
    tag.attachTimeoutCustom(timeout, kTimeoutCode);
    if (mask.isBound()) {
      pattern.run(image, mask, params, resultSet, nullptr, 0);
    } else {
      pattern.run(image, params, resultSet, nullptr, 0);
    }
    return true;
  } catch (const rzTimeout::InternalExpired&) {
    return false;
  } catch (const rz_CXDefs::InternalError&) {
    rstd_assert_(resultSet.results().empty(), __LINE__);
    return false;
  }
}

// Learns the scale of the print from the characters found so far, and closes the scale zone once
// enough of them agree.
class ScaleLock {
 public:
  explicit ScaleLock(rzLong numModels)
      : minSamples_(std::max((numModels + 1) / 2, kFewestScaleSamples)) {}

  void learn(const std::vector<rzCXAlignResult>& list, rzCXAlignRunParams& params) {
    if (isLocked_ || list.empty() || !list.front().accepted()) return;
    samples_.push_back(list.front().xScale());
    double scale = 0.0;
    isLocked_ = rf_FindScaleCluster(samples_, minSamples_, scale);
    if (!isLocked_) return;
    params.zoneEnable(kAngleZone);
    params.nominal(rz_CXDefs::eScale, scale);
  }

 private:
  rzLong minSamples_;
  std::vector<double> samples_;
  bool isLocked_ = false;
};

// The accepted entries of `list`, `limit` of them at most.
std::vector<rz_OCExtractCharInstance> instancesOf(const std::vector<rzCXAlignResult>& list,
                                                  const rzCXAlignPattern& pattern, rzLong limit) {
  const rzXform<2> clientFromImage(
      pattern.trainClientFromImage()->linearXform(rzVector<2>(0.0, 0.0)));
  const rzPelRect window = pattern.trainImage().window();
  std::vector<rz_OCExtractCharInstance> instances;
  for (const rzCXAlignResult& entry : list) {
    if (rf_Count(instances.size()) == limit) break;
    if (entry.accepted()) instances.emplace_back(entry, clientFromImage, window);
  }
  return instances;
}

}  // namespace

rz_OCExtractModel::rz_OCExtractModel() {
  diagText_.imbue(std::locale::classic());
  init();
}

rz_OCExtractModel::~rz_OCExtractModel() = default;

void rz_OCExtractModel::init() {
  patterns_.clear();
  occurrences_.clear();
  keys_.clear();
  searchOrder_.clear();
  diagText_.clear();
}

rzLong rz_OCExtractModel::numModels() const { return rf_Count(patterns_.size()); }

bool rz_OCExtractModel::search(
    const rzPtrHandle_const<rzOCAlphabet>& alphabet, const std::vector<rzLong>& keys,
    const rzPelBuffer_const<unsigned char>& image, const rzPelBuffer_const<unsigned char>& mask,
    const rz_OCExtractModelParams& modelParams, const rz_OCExtractRunParams& runParams,
    rz_OCExtractStringResult& result, rzDiagObject* diag, rzULong flags) {
  init();
  params_ = modelParams;
  result.init();
  train_(alphabet, keys, result, diag, flags);
  drawTrainDiags_(alphabet, image, keys, diag, flags);

  rzTimer timer(false);
  timer.start();
  const bool isComplete = searchContrix_(alphabet, image, mask, runParams, result, diag, flags);
  postProcessResults_(result, keys, runParams, diag, flags);
  timer.stop();
  result.searchTime_ = timer.msec();

  drawRuntimeDiags_(alphabet, image, runParams, result, diag, flags);
  return isComplete;
}

bool rz_OCExtractModel::searchContrix_(const rzPtrHandle_const<rzOCAlphabet>& /*alphabet*/,
                                       const rzPelBuffer_const<unsigned char>& image,
                                       const rzPelBuffer_const<unsigned char>& mask,
                                       const rz_OCExtractRunParams& runParams,
                                       rz_OCExtractStringResult& result, rzDiagObject* /*diag*/,
                                       rzULong /*flags*/) {
  // One object for all characters: it carries what the finder derives from the image alone.
  rzCXAlignRunParams params = searchParams(params_.angleRange, runParams.acceptThresh);
  rstd_assert_(rf_Count(searchOrder_.size()) == numModels(), __LINE__);
  rzTimer timer(false);
  timer.start();
  bool isComplete = true;
  ScaleLock scaleLock(numModels());

  for (const rzLong model : searchOrder_) {
    rstd_assert_(model >= 0 && model < numModels(), __LINE__);
    const auto m = static_cast<std::size_t>(model);
    rzPtrHandle<rz_OCExtractCharResult> found(new rz_OCExtractCharResult);
    found->symmetry_ = symmetries_[m];
    found->rot180Pose_ = rot180Poses_[m];
    if (patterns_[m]) {
      const rzLong limit = occurrences_[m] + kSpareResults;
      params.zone(rz_CXDefs::eScale, params_.scaleRange.start(), params_.scaleRange.end());
      params.numToFind(limit);
      rzCXAlignResultSet resultSet;
      const double timeout = runParams.timeout;
      isComplete = runPattern(*patterns_[m], image, mask, params, timeout, resultSet) && isComplete;
      std::vector<rzCXAlignResult> list;
      rf_SelectResults(resultSet, list);
      scaleLock.learn(list, params);
      for (const auto& instance : instancesOf(list, *patterns_[m], limit)) found->append_(instance);
    }
    found->found(found->numInstances() > 0);
    found->time(timer.msec());
    found->numOccurrences(occurrences_[m]);
    timer.reset();
    result.addToResult_(keys_[m], found);
  }
  return isComplete;
}

void rz_OCExtractModel::postProcessResults_(rz_OCExtractStringResult& result,
                                            const std::vector<rzLong>& keys,
                                            const rz_OCExtractRunParams& /*runParams*/,
                                            rzDiagObject* /*diag*/, rzULong /*flags*/) {
  for (const rzLong key : keys_) {
    const auto entry = result.characterResults_.find(key);
    if (entry != result.characterResults_.end()) result.uniqueCharResults_.push_back(entry->second);
  }
  for (const auto& found : result.uniqueCharResults_) {
    rstd_assert_(!found.isNull(), __LINE__);
    found->sortByScore_();
  }
  result.results_.clear();
  for (const rzLong key : keys) {
    const auto place = std::lower_bound(keys_.begin(), keys_.end(), key);
    rstd_assert_(place != keys_.end() && *place == key, __LINE__);
    result.results_.push_back(
        result.uniqueCharResults_[static_cast<std::size_t>(place - keys_.begin())]);
  }
}

void rz_OCExtractModel::verifyContrixResults_(const rzPtrHandle_const<rzOCAlphabet>& /*alphabet*/,
                                              const rzPelBuffer_const<unsigned char>& /*image*/,
                                              rz_OCExtractStringResult& /*result*/,
                                              rzDiagObject* /*diag*/, rzULong /*flags*/) {}
