// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/train.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "oc/alphabet.h"
#include "oc/extract/train_pattern.h"
#include "oc/extract_model.h"
#include "rz/timer.h"

namespace {

std::vector<rzLong> distinct(std::vector<rzLong> keys) {
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

}  // namespace

bool rf_OrderModels(const std::pair<rzLong, double>& a, const std::pair<rzLong, double>& b) {
  return a.second > b.second || (a.second == b.second && a.first < b.first);
}

void rz_OCExtractModel::train_(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                               const std::vector<rzLong>& keys, rz_OCExtractStringResult& result,
                               rzDiagObject* /*diag*/, rzULong /*flags*/) {
  rzTimer timer(false);
  timer.start();
  keys_ = distinct(keys);
  occurrences_.clear();
  for (const rzLong key : keys_) {
    occurrences_.push_back(static_cast<rzLong>(std::count(keys.begin(), keys.end(), key)));
  }
  result.trainTime_ = 0.0;

  patterns_.clear();
  patterns_.resize(keys_.size());
  searchOrder_.clear();
  std::vector<std::pair<rzLong, double>> ordered;
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    ordered.emplace_back(rf_Count(i), 0.0);
    if (!alphabet->hasCharacter(keys_[i])) continue;
    TrainedPattern trained = trainPattern(*alphabet->character(keys_[i]), params_.grainLimits);
    ordered[i].second = trained.spread;
    patterns_[i] = std::move(trained.pattern);
  }
  std::sort(ordered.begin(), ordered.end(), rf_OrderModels);
  for (const auto& [index, spread] : ordered) searchOrder_.push_back(index);

  computeModelSymmetries_(alphabet, nullptr, 0);
  timer.stop();
  result.trainTime_ += timer.msec();
}
