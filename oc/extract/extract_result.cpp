// SPDX-License-Identifier: Apache-2.0
#include "oc/extract_result.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "rz/cx_align.h"
#include "rz/vector.h"

rz_OCExtractCharInstance::rz_OCExtractCharInstance(const rzCXAlignResult& result,
                                                   const rzXform<2>& clientFromImage,
                                                   const rzPelRect& window)
    : score(result.score()),
      pose(result.pose()),
      affRect(rzAffineRectangle(window).map(pose * clientFromImage)) {}

bool rz_OCExtractCharInstance::orderByScore(const rz_OCExtractCharInstance& a,
                                            const rz_OCExtractCharInstance& b) {
  return a.score > b.score;
}

bool rz_OCExtractCharInstance::isEqual(const rz_OCExtractCharInstance& other,
                                       double tolerance) const {
  const rzXform<2> unitSqFromClient = other.affRect.affRectFromUnitSq().inverse();
  const rzAffineRectangle rect = affRect.map(unitSqFromClient);
  const rzVector<2> middle(0.5, 0.5);
  const rzVector<2> points[] = {rect.center(), rect.cornerPo(), rect.cornerPx(), rect.cornerPy(),
                                rect.cornerPopp()};
  return std::any_of(std::begin(points), std::end(points), [&](const rzVector<2>& point) {
    return !((point - middle).len() > tolerance);
  });
}

rz_OCExtractCharResult::rz_OCExtractCharResult() { init(); }

rz_OCExtractCharResult::~rz_OCExtractCharResult() = default;

void rz_OCExtractCharResult::init() {
  time_ = 0.0;
  found_ = false;
  instances_.clear();
  symmetry_ = rz_OCExtractDefs::eNoSymmetry;
  numOccurrences_ = 0;
}

rzLong rz_OCExtractCharResult::numInstances() const { return rf_Count(instances_.size()); }

rzXform<2> rz_OCExtractCharResult::pose(rzLong i) const { return instance_(i).pose; }

double rz_OCExtractCharResult::score(rzLong i) const { return instance_(i).score; }

rzAffineRectangle rz_OCExtractCharResult::affRect(rzLong i) const { return instance_(i).affRect; }

// A negative index counts as one past any end.
const rz_OCExtractCharInstance& rz_OCExtractCharResult::instance_(rzLong i) const {
  const auto index = static_cast<std::size_t>(static_cast<rzULong>(i));
  if (index >= instances_.size()) throw rz_OCExtractDefs::rz_OCExtractError("Bad index");
  return instances_[index];
}

void rz_OCExtractCharResult::append_(const rz_OCExtractCharInstance& instance) {
  instances_.push_back(instance);
}

void rz_OCExtractCharResult::sortByScore_() {
  std::sort(instances_.begin(), instances_.end(), rz_OCExtractCharInstance::orderByScore);
}

void rz_OCExtractCharResult::operator+=(const rz_OCExtractCharResult& other) {
  const std::vector<rz_OCExtractCharInstance> added = other.instances_;  // `other` may be *this
  instances_.insert(instances_.end(), added.begin(), added.end());
  time_ += other.time_;
  found_ = found_ || other.found_;
}

bool rz_OCExtractCharResult::doesOverlap_(rzLong i, rzLong j, double tolerance) const {
  return instance_(i).isEqual(instance_(j), tolerance);
}

void rz_OCExtractCharResult::removeOverlapping_(rzLong i, double tolerance) {
  rzLong j = i + 1;
  while (j < numInstances()) {
    const auto other = instances_.begin() + j;
    if (instances_[static_cast<std::size_t>(i)].isEqual(*other, tolerance)) {
      instances_.erase(other);
    } else {
      ++j;
    }
  }
}

rz_OCExtractStringResult::rz_OCExtractStringResult() { init(); }

void rz_OCExtractStringResult::init() {
  characterResults_.clear();
  uniqueCharResults_.clear();
  results_.clear();
  searchTime_ = 0.0;
  trainTime_ = 0.0;
}

void rz_OCExtractStringResult::addToResult_(rzLong key,
                                            const rzPtrHandle<rz_OCExtractCharResult>& result) {
  const auto [entry, isNew] = characterResults_.try_emplace(key, result);
  if (!isNew) *entry->second += *result;
}

void rz_OCExtractStringResult::deleteOverlappingCandidate_(
    rzPtrHandle<rz_OCExtractCharResult>& result, rzLong i, double tolerance, rzDiagObject* /*diag*/,
    rzULong /*flags*/) {
  if (!result.isNull()) result->removeOverlapping_(i, tolerance);
}
