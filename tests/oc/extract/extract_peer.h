// SPDX-License-Identifier: Apache-2.0
//
// Opens the private operations of the extraction classes to their tests.
#pragma once

#include <string>
#include <vector>

#include "oc/alphabet.h"
#include "oc/extract_model.h"
#include "oc/extract_result.h"
#include "rz/cx_align.h"

struct rz_OCExtractPeer {
  using Result = rz_OCExtractCharResult;

  static void append(Result& result, const rz_OCExtractCharInstance& instance) {
    result.append_(instance);
  }
  static void sort(Result& result) { result.sortByScore_(); }
  static void join(Result& result, const Result& other) { result += other; }
  static bool doesOverlap(const Result& result, rzLong i, rzLong j, double tolerance) {
    return result.doesOverlap_(i, j, tolerance);
  }
  static void removeOverlapping(Result& result, rzLong i, double tolerance) {
    result.removeOverlapping_(i, tolerance);
  }
  static void symmetry(Result& result, rz_OCExtractDefs::Symmetry symmetry) {
    result.symmetry_ = symmetry;
  }
  static void rot180Pose(Result& result, const rzXform<2>& pose) { result.rot180Pose_ = pose; }

  static void add(rz_OCExtractStringResult& result, rzLong key, const rzPtrHandle<Result>& found) {
    result.addToResult_(key, found);
  }
  static void postProcess(rz_OCExtractModel& model, rz_OCExtractStringResult& result,
                          const std::vector<rzLong>& text) {
    model.postProcessResults_(result, text, rz_OCExtractRunParams(), nullptr, 0);
  }

  static void train(rz_OCExtractModel& model, const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                    const std::vector<rzLong>& text, rz_OCExtractStringResult& result,
                    const rz_OCExtractModelParams& params = {}) {
    model.params_ = params;
    model.train_(alphabet, text, result, nullptr, 0);
  }
  static void drawDiags(rz_OCExtractModel& model, const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                        rz_OCExtractStringResult& result, rzDiagObject* diag, rzULong flags) {
    model.drawRuntimeDiags_(alphabet, {}, rz_OCExtractRunParams(), result, diag, flags);
  }
  static std::string diagText(const rz_OCExtractModel& model) { return model.diagText_.str(); }

  static const std::vector<rzLong>& keys(const rz_OCExtractModel& model) { return model.keys_; }
  static const std::vector<rzLong>& occurrences(const rz_OCExtractModel& model) {
    return model.occurrences_;
  }
  static const std::vector<rzLong>& searchOrder(const rz_OCExtractModel& model) {
    return model.searchOrder_;
  }
  static const std::vector<rz_OCExtractDefs::Symmetry>& symmetries(const rz_OCExtractModel& model) {
    return model.symmetries_;
  }
  static const std::vector<rzXform<2>>& rot180Poses(const rz_OCExtractModel& model) {
    return model.rot180Poses_;
  }
  static const rzCXAlignPattern* pattern(const rz_OCExtractModel& model, std::size_t i) {
    return model.patterns_[i].get();
  }
};
