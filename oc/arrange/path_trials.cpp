// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/path_trials.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace {

std::vector<rzLong> lastOfKey(const std::vector<rzLong>& targetKeys) {
  std::vector<rzLong> last;
  std::unordered_map<rzLong, rzLong> lastByKey;
  for (std::size_t i = 0; i < targetKeys.size(); ++i) {
    const auto [found, isFirst] = lastByKey.try_emplace(targetKeys[i], kUnmatched);
    last.push_back(found->second);
    found->second = rf_Count(i);
  }
  return last;
}

}  // namespace

rz_PathTrials::rz_PathTrials(rz_PathTree& tree, const std::vector<rzLong>& targetKeys,
                             const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                             const rz_ScoreTable& scores, const rzOCArrangeParams& params,
                             bool isLeftHanded, std::size_t mostKnownLines)
    : tree_(tree),
      targetKeys_(targetKeys),
      charData_(charData),
      poses_(poses),
      scores_(scores),
      params_(params),
      judge_(charData, params, isLeftHanded),
      knownLines_(mostKnownLines),
      lastOfKey_(lastOfKey(targetKeys)) {
  tree_.hold(node_);
}

void rz_PathTrials::grow(rzLong node) {
  tree_.hold(node);
  loadChoices_(node);
  tree_.release(node_);
  node_ = node;
  lineStart_ = choices_.empty() ? 0 : tree_.lineStart(node_);
  line_ = lastLine_();
  isLineLoaded_ = false;
  loadUsedCandidates_();
}

// Paths drawn one after the other have much in common. The old one is still held, so a node of it
// that is met on the way to the root is the same prefix.
void rz_PathTrials::loadChoices_(rzLong node) {
  const std::size_t length = rf_At(tree_.step(node).length);
  nodes_.resize(length, rz_PathTree::kRoot);
  choices_.resize(length);
  for (std::size_t i = length; i-- > 0 && nodes_[i] != node; node = tree_.step(node).parent) {
    nodes_[i] = node;
    choices_[i] = tree_.step(node).choice;
  }
}

// The number of the path's last line. Few of the lines that start are ever grown, so they get
// theirs here.
rzLong rz_PathTrials::lastLine_() {
  if (!tree_.step(node_).startsLine()) return tree_.sums(node_).line;
  const rzLong nothing = rz_KnownLines::emptyAt(lineStart_);
  const rzLong choice = tree_.step(node_).choice;
  const rzLong line = knownLines_.find(nothing, choice);
  return line != rz_KnownLines::kUnknown ? line : knownLines_.add(nothing, choice, {});
}

void rz_PathTrials::loadLine_() {
  isLineLoaded_ = true;
  chars_.clear();
  sumLogScale_ = 0.0;
  lastMatched_ = kUnmatched;
  for (rzLong i = lineStart_; i < rf_Count(choices_.size()); ++i) {
    const rzLong choice = choices_[rf_At(i)];
    if (choice == kUnmatched) continue;
    const rz_Pose& pose = poses_[rf_At(i)][rf_At(choice)];
    chars_.append(pose, charData_[rf_At(i)].symmetry);
    sumLogScale_ += pose.logScale;
    lastMatched_ = i;
  }
}

void rz_PathTrials::loadUsedCandidates_() {
  const std::size_t next = choices_.size();
  isUsed_.assign(poses_[next].size(), false);
  for (rzLong i = lastOfKey_[next]; i >= 0; i = lastOfKey_[rf_At(i)]) {
    const rzLong choice = choices_[rf_At(i)];
    if (choice != kUnmatched && rf_At(choice) < isUsed_.size()) isUsed_[rf_At(choice)] = true;
  }
}

bool rz_PathTrials::tryChoice(rzLong choice, bool startsLine, rz_PathNode& grown, double& total) {
  if (choice != kUnmatched && isUsed_[rf_At(choice)]) return false;
  if (!(startsLine ? mayStartLine_() : mayContinue_(choice))) return false;
  if (!addPosition_(choice, startsLine, grown)) return false;
  if (startsLine) {
    grown.sums.errors = tree_.sums(node_).errors;  // a single character has no shape
  } else if (!continueLine_(choice, grown.sums)) {
    return false;
  }
  total = total_(grown.sums);
  return true;
}

// A line is closed when the next one starts: it must end matched. With eCircular, one more thing
// changes: a line of two was judged as straight while the path had no third position.
bool rz_PathTrials::mayStartLine_() const {
  if (choices_.empty()) return true;
  const auto line = choices_.begin() + lineStart_;
  if (choices_.end() - line >= 2 && choices_.back() == kUnmatched) return false;
  if (params_.lineType() != rzOCArrangeDefs::eCircular) return true;
  const auto numMatched = choices_.end() - line - std::count(line, choices_.end(), kUnmatched);
  return numMatched != 2;
}

// A line of two or more must begin matched, and end matched where the text ends.
bool rz_PathTrials::mayContinue_(rzLong choice) const {
  const bool endsText = choices_.size() + 1 == targetKeys_.size();
  return choices_[rf_At(lineStart_)] != kUnmatched && !(endsText && choice == kUnmatched);
}

bool rz_PathTrials::addPosition_(rzLong choice, bool startsLine, rz_PathNode& grown) const {
  const std::size_t position = choices_.size();
  const rz_CharData& character = charData_[position];
  grown.step.parent = node_;
  grown.step.beforeLine = startsLine ? node_ : tree_.step(node_).beforeLine;
  grown.step.choice = choice;
  grown.step.length = rf_Count(position) + 1;
  grown.sums = tree_.sums(node_);
  if (choice != kUnmatched) {
    grown.sums.matchCost += 1.0 - scores_[position][rf_At(choice)];
    if (startsLine) ++grown.sums.realLines;
  } else if (!character.isBlank) {
    ++grown.sums.unmatched;
    if (character.costsWhenUnmatched) ++grown.sums.charged;
  }
  return grown.sums.unmatched <= params_.maxUnmatchedChars() &&
         grown.sums.realLines <= params_.maxLines();
}

bool rz_PathTrials::continueLine_(rzLong choice, rz_PathSums& sums) {
  rz_JudgedLine judged;
  sums.line = knownLines_.find(line_, choice);
  if (sums.line != rz_KnownLines::kUnknown) {
    judged = knownLines_[sums.line];
  } else {
    judged = judgeLine_(choice);
    sums.line = knownLines_.add(line_, choice, judged);
  }
  if (!judged.isPossible) return false;
  sums.errors = tree_.sums(tree_.step(node_).beforeLine).errors;
  sums.errors += judged.errors;
  return true;
}

// The last line with one more choice.
rz_JudgedLine rz_PathTrials::judgeLine_(rzLong choice) {
  if (!isLineLoaded_) loadLine_();
  const rzLong position = rf_Count(choices_.size());
  const bool isMatched = choice != kUnmatched;
  double sumLogScale = sumLogScale_;
  if (isMatched) {
    const rz_Pose& pose = poses_[rf_At(position)][rf_At(choice)];
    chars_.append(pose, charData_[rf_At(position)].symmetry);
    sumLogScale += pose.logScale;
  }
  choices_.push_back(choice);

  rz_JudgedLine judged;
  if (chars_.size() >= 2) {
    const rz_ScaleErrors scaleErrors = rf_ScaleErrors(chars_, sumLogScale);
    const rz_LineUnderWork line{chars_, choices_, lineStart_, isMatched ? position : lastMatched_,
                                std::exp(scaleErrors.meanLogScale)};
    const auto verdict = judge_.judge(line);
    judged.isPossible = verdict.has_value();
    if (judged.isPossible) {
      judged.errors = rf_WeightedErrors(verdict->errors, scaleErrors.sum, position + 1 - lineStart_,
                                        chars_.size());
    }
  }
  choices_.pop_back();
  if (isMatched) chars_.removeLast();
  return judged;
}

double rz_PathTrials::total_(const rz_PathSums& sums) const {
  rz_CostTerms cost;
  cost.matchCost = sums.matchCost;
  cost.unmatchedCost = sums.charged * params_.unmatchedCharCost();
  cost.breakCost = rf_BreakCost(sums.realLines, params_);
  sums.errors.price(params_, cost);
  return cost.total();
}
