// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/evaluate_path.h"

#include <cmath>

namespace {

constexpr double kLog2PerLog = 1.4426950408889634;  // 1 / ln 2

bool isUnmatched(const rz_ArrangePath& path, rzLong i) {
  return path.choices[rf_At(i)] == kUnmatched;
}

// A line of two positions or more begins with a matched one, and ends with one unless it may still
// grow. Counts the lines that are a single unmatched position.
bool areLineEndsMatched(const rz_ArrangePath& path, rzLong targetLength, rzLong& emptyLines) {
  emptyLines = 0;
  for (rzLong k = 0; k < path.numLines(); ++k) {
    const rzLong start = path.lineStarts[rf_At(k)];
    const rzLong end = path.lineEnd(k);
    if (end - start == 1) {
      if (isUnmatched(path, start)) ++emptyLines;
      continue;
    }
    const bool isClosed = end < path.size() || end == targetLength;
    if (isUnmatched(path, start) || (isClosed && isUnmatched(path, end - 1))) return false;
  }
  return true;
}

// One found instance serves one position of a key. Paths grow by one position at a time, so the
// last one is the only one in doubt.
bool reusesCandidate(const rz_ArrangePath& path, const std::vector<rzLong>& targetKeys) {
  if (path.choices.empty() || path.choices.back() == kUnmatched) return false;
  const std::size_t last = path.choices.size() - 1;
  for (std::size_t i = 0; i < last; ++i) {
    if (targetKeys[i] == targetKeys[last] && path.choices[i] == path.choices[last]) return true;
  }
  return false;
}

// Goes over the lines of one path.
class LineWalk {
 public:
  LineWalk(const rz_ArrangePath& path, const std::vector<rz_CharData>& charData,
           const rz_PoseTable& poses, const rzOCArrangeParams& params, bool isLeftHanded,
           bool isFinal, rz_ArrangeCost& cost)
      : path_(path),
        charData_(charData),
        poses_(poses),
        judge_(charData, params, isLeftHanded),
        isFinal_(isFinal),
        cost_(cost) {}

  bool addLine(rzLong start, rzLong end) {
    collect_(start, end);
    if (chars_.size() < 2) {
      addShapeless_();
      return true;
    }
    rzLong lastMatched = end - 1;
    while (isUnmatched(path_, lastMatched)) --lastMatched;
    rstd_assert_(!isUnmatched(path_, start) && lastMatched > start, __LINE__);

    const rz_ScaleErrors scaleErrors = rf_ScaleErrors(chars_, sumLogScale_);
    const double lineScale = std::exp(scaleErrors.meanLogScale);
    cost_.lineScales.push_back(lineScale);
    if (isFinal_) storeScaleErrors_(start, lastMatched, scaleErrors.meanLogScale);

    const rz_LineUnderWork line{chars_, path_.choices, start, lastMatched, lineScale};
    const auto verdict = isFinal_ ? judge_.judge(line, cost_) : judge_.judge(line);
    if (!verdict) return false;
    errors_ += rf_WeightedErrors(verdict->errors, scaleErrors.sum, end - start, chars_.size());
    cost_.lineAngles.push_back(verdict->average);
    cost_.lineTypes.push_back(verdict->type);
    return true;
  }

  const rz_PathErrors& errors() const { return errors_; }

 private:
  void collect_(rzLong start, rzLong end) {
    chars_.clear();
    sumLogScale_ = 0.0;
    for (rzLong i = start; i < end; ++i) {
      if (isUnmatched(path_, i)) continue;
      const rz_Pose& pose = poses_[rf_At(i)][rf_At(path_.choices[rf_At(i)])];
      chars_.append(pose, charData_[rf_At(i)].symmetry);
      sumLogScale_ += pose.logScale;
      if (!isFinal_) continue;
      cost_.idealPositions[rf_At(i)] = pose.translation;
      cost_.idealRotations[rf_At(i)] = pose.rotation;
    }
  }

  void addShapeless_() {
    const bool hasOne = chars_.size() == 1;
    cost_.lineTypes.push_back(rzOCArrangeDefs::eDontCare);
    cost_.lineAngles.push_back(hasOne ? chars_.angles.front() : rzRadian(0.0));
    cost_.lineScales.push_back(hasOne ? chars_.scales.front() : 1.0);
  }

  void storeScaleErrors_(rzLong start, rzLong lastMatched, double meanLogScale) {
    std::size_t index = 0;
    for (rzLong i = start; i <= lastMatched; ++i) {
      if (isUnmatched(path_, i)) continue;
      cost_.logScaleErrors[rf_At(i)] = rf_ScaleError(chars_.logScales[index++], meanLogScale);
    }
  }

  const rz_ArrangePath& path_;
  const std::vector<rz_CharData>& charData_;
  const rz_PoseTable& poses_;
  rz_LineJudge judge_;
  bool isFinal_;
  rz_ArrangeCost& cost_;

  rz_MatchedChars chars_;  // of the line under work
  double sumLogScale_ = 0.0;
  rz_PathErrors errors_;
};

void sizePositionVectors(rz_ArrangeCost& cost, std::size_t length) {
  cost.tangentialErrors.assign(length, 0.0);
  cost.normalErrors.assign(length, 0.0);
  cost.rotationErrors.assign(length, 0.0);
  cost.logScaleErrors.assign(length, 0.0);
  cost.idealPositions.assign(length, rzVector<2>());
  cost.idealRotations.assign(length, rzRadian(0.0));
}

}  // namespace

double rf_ScaleError(double logScale, double meanLogScale) {
  return (logScale - meanLogScale) * kLog2PerLog;
}

rz_ScaleErrors rf_ScaleErrors(const rz_MatchedChars& chars, double sumLogScale) {
  rz_ScaleErrors errors{sumLogScale / chars.size(), 0.0};
  for (const double logScale : chars.logScales) {
    errors.sum += std::fabs(rf_ScaleError(logScale, errors.meanLogScale));
  }
  return errors;
}

rz_PathErrors& rz_PathErrors::operator+=(const rz_PathErrors& other) {
  normal += other.normal;
  tangential += other.tangential;
  rotation += other.rotation;
  logScale += other.logScale;
  spacing += other.spacing;
  return *this;
}

rz_PathErrors rf_WeightedErrors(const rz_LineErrors& line, double logScale, rzLong length,
                                rzLong numMatched) {
  const double weight = static_cast<double>(length) / numMatched;
  return {line.normal * weight, line.tangential * weight, line.rotation * weight, logScale * weight,
          line.spacing};
}

void rz_PathErrors::price(const rzOCArrangeParams& params, rz_CostTerms& cost) const {
  cost.normalCost = normal * params.normalTransCost();
  cost.tangentialCost = tangential * params.tangentialTransCost();
  cost.rotationCost = rotation * params.orientationCost();
  cost.logScaleCost = logScale * params.scaleCost();
  cost.spacingCost = spacing * params.tangentialTransCost();
}

double rf_BreakCost(rzLong numLines, const rzOCArrangeParams& params) {
  return numLines > 1 ? (numLines - 1) * params.lineBreakCost() : 0.0;
}

bool rf_EvaluatePath(const rz_ArrangePath& path, const std::vector<rzLong>& targetKeys,
                     const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                     const rz_ScoreTable& scores, const rzOCArrangeParams& params,
                     bool isLeftHanded, bool isFinal, rz_ArrangeCost& cost) {
  cost = {};
  rzLong emptyLines = 0;
  if (!areLineEndsMatched(path, rf_Count(targetKeys.size()), emptyLines)) return false;

  rzLong unmatched = 0;
  rzLong charged = 0;
  for (std::size_t i = 0; i < path.choices.size(); ++i) {
    const rzLong choice = path.choices[i];
    if (choice != kUnmatched) {
      cost.matchCost += 1.0 - scores[i][rf_At(choice)];
    } else if (!charData[i].isBlank) {
      ++unmatched;
      if (charData[i].costsWhenUnmatched) ++charged;
    }
  }
  if (unmatched > params.maxUnmatchedChars() && !isFinal) return false;
  cost.unmatchedCost = charged * params.unmatchedCharCost();
  if (reusesCandidate(path, targetKeys)) return false;

  const rzLong realLines = path.numLines() - emptyLines;
  if (realLines > params.maxLines()) return false;
  cost.breakCost = rf_BreakCost(realLines, params);
  return rf_EvaluateLines(path, targetKeys, charData, poses, scores, params, isLeftHanded, isFinal,
                          cost);
}

bool rf_EvaluateLines(const rz_ArrangePath& path, const std::vector<rzLong>&,
                      const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                      const rz_ScoreTable&, const rzOCArrangeParams& params, bool isLeftHanded,
                      bool isFinal, rz_ArrangeCost& cost) {
  if (isFinal) sizePositionVectors(cost, path.choices.size());
  LineWalk walk(path, charData, poses, params, isLeftHanded, isFinal, cost);
  for (rzLong k = 0; k < path.numLines(); ++k) {
    if (!walk.addLine(path.lineStarts[rf_At(k)], path.lineEnd(k))) return false;
  }
  walk.errors().price(params, cost);
  return true;
}
