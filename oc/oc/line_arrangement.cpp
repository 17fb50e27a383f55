// SPDX-License-Identifier: Apache-2.0
#include "oc/line_arrangement.h"

#include <algorithm>

#include "oc/oc/enclose.h"
#include "oc/oc/poses.h"

namespace {

using Lines = std::vector<rzPtrHandle_const<rzOCLine>>;

Lines constHandles(const std::vector<rzPtrHandle<rzOCLine>>& lines) {
  return Lines(lines.begin(), lines.end());
}

void requireRanges(double translationUncertainty, const rzRadian& rotationUncertainty) {
  rf_RequireParams(translationUncertainty >= 0.0, "Line translation uncertainty must be >= 0");
  rf_RequireParams(rotationUncertainty.toDouble() >= 0.0, "Line rotation uncertainty must be >= 0");
}

void requirePoses(const std::vector<rz2Rigid>& poses, const Lines& lines) {
  rf_RequireParams(poses.size() == lines.size(),
                   "The number of line poses does not match the number of lines.");
}

}  // namespace

rzOCLineArrangement::rzOCLineArrangement() = default;

rzOCLineArrangement::rzOCLineArrangement(const Lines& lines, const rz2Rigid& step,
                                         double translationUncertainty,
                                         const rzRadian& rotationUncertainty,
                                         const std::string& name)
    : lines_(lines), name_(name) {
  requireRanges(translationUncertainty, rotationUncertainty);
  linePoses_ = rf_RepeatedSteps(step, lines.size());
  translationUncertainties_.assign(lines.size(), translationUncertainty);
  rotationUncertainties_.assign(lines.size(), rotationUncertainty);
}

rzOCLineArrangement::rzOCLineArrangement(const Lines& lines, const std::vector<rz2Rigid>& linePoses,
                                         double translationUncertainty,
                                         const rzRadian& rotationUncertainty,
                                         const std::string& name)
    : lines_(lines), name_(name) {
  requireRanges(translationUncertainty, rotationUncertainty);
  requirePoses(linePoses, lines);
  linePoses_ = linePoses;
  translationUncertainties_.assign(lines.size(), translationUncertainty);
  rotationUncertainties_.assign(lines.size(), rotationUncertainty);
}

rzOCLineArrangement::rzOCLineArrangement(const Lines& lines, const std::vector<rz2Rigid>& linePoses,
                                         const std::vector<double>& translationUncertainties,
                                         const std::vector<rzRadian>& rotationUncertainties,
                                         const std::string& name)
    : lines_(lines), name_(name) {
  requirePoses(linePoses, lines);
  rf_RequireParams(translationUncertainties.size() == lines.size(),
                   "The number of translation uncertainties does not match the number of lines.");
  rf_RequireParams(rotationUncertainties.size() == lines.size(),
                   "The number of rotation uncertainties does not match the number of lines.");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    rf_RequireParams(translationUncertainties[i] >= 0.0,
                     "Line position uncertaintiesp must be >= 0");
    rf_RequireParams(rotationUncertainties[i].toDouble() >= 0.0,
                     "Line rotation uncertainties must be >= 0");
  }
  linePoses_ = linePoses;
  translationUncertainties_ = translationUncertainties;
  rotationUncertainties_ = rotationUncertainties;
}

rzOCLineArrangement::rzOCLineArrangement(const std::vector<rzPtrHandle<rzOCLine>>& lines,
                                         const rz2Rigid& step, double translationUncertainty,
                                         const rzRadian& rotationUncertainty,
                                         const std::string& name)
    : rzOCLineArrangement(constHandles(lines), step, translationUncertainty, rotationUncertainty,
                          name) {}

rzOCLineArrangement::rzOCLineArrangement(const std::vector<rzPtrHandle<rzOCLine>>& lines,
                                         const std::vector<rz2Rigid>& linePoses,
                                         double translationUncertainty,
                                         const rzRadian& rotationUncertainty,
                                         const std::string& name)
    : rzOCLineArrangement(constHandles(lines), linePoses, translationUncertainty,
                          rotationUncertainty, name) {}

rzOCLineArrangement::rzOCLineArrangement(const std::vector<rzPtrHandle<rzOCLine>>& lines,
                                         const std::vector<rz2Rigid>& linePoses,
                                         const std::vector<double>& translationUncertainties,
                                         const std::vector<rzRadian>& rotationUncertainties,
                                         const std::string& name)
    : rzOCLineArrangement(constHandles(lines), linePoses, translationUncertainties,
                          rotationUncertainties, name) {}

rzLong rzOCLineArrangement::numLines() const { return rf_Count(lines_.size()); }

rzRect rzOCLineArrangement::encloseRect(const rzXform<2>& pose, const rzXform<2>& originXform,
                                        const rzXform<2>& targetXform,
                                        double translationUncertainty,
                                        const rzRadian& rotationUncertainty,
                                        double scaleUncertainty, bool includeConfusable) const {
  const rz_EnclosePlacement placement{pose,
                                      originXform,
                                      targetXform,
                                      translationUncertainty,
                                      rotationUncertainty,
                                      scaleUncertainty};
  rf_CheckUncertainties(placement);
  rz_EncloseUnion reach(placement);
  const rzXform<2> identity;
  constexpr double kLineScaleUncertainty = 0.0;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    reach.add(lines_[i]->encloseRect(linePoses_[i].linear(), identity, identity,
                                     translationUncertainties_[i], rotationUncertainties_[i],
                                     kLineScaleUncertainty, includeConfusable));
  }
  return reach.result();
}

bool rzOCLineArrangement::operator==(const rzOCLineArrangement& other) const {
  return std::equal(lines_.begin(), lines_.end(), other.lines_.begin(), other.lines_.end(),
                    [](const auto& a, const auto& b) { return *a == *b; }) &&
         linePoses_ == other.linePoses_ &&
         translationUncertainties_ == other.translationUncertainties_ &&
         rotationUncertainties_ == other.rotationUncertainties_ && name_ == other.name_;
}
