// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/path_trials.h"

#include <cmath>

rz_PathTrials::rz_PathTrials(rz_PathTree& tree, const std::vector<rzLong>& targetKeys,
                             const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                             const rz_ScoreTable& scores, const rzOCArrangeParams& params,
                             bool isLeftHanded)
    : tree_(tree),
      targetKeys_(targetKeys),
      charData_(charData),
      poses_(poses),
      scores_(scores),
      params_(params),
      judge_(charData, params, isLeftHanded) {
  tree_.hold(node_);
}

void rz_PathTrials::grow(rzLong node) {
  tree_.hold(node);
  loadChoices_(node);
  tree_.release(node_);
  node_ = node;
  loadLine_();
  loadUsedCandidates_();
}

// Paths drawn one after the other have much in common. The old one is still held, so a node of it
// that is met on the way to the root is the same prefix.
void rz_PathTrials::loadChoices_(rzLong node) {
  const std::size_t length = rf_At(tree_[node].length);
  nodes_.resize(length, rz_PathTree::kRoot);
  choices_.resize(length);
  for (std::size_t i = length; i-- > 0 && nodes_[i] != node; node = tree_[node].parent) {
    nodes_[i] = node;
    choices_[i] = tree_[node].choice;
  }
}

void rz_PathTrials::loadLine_() {
  chars_.clear();
  sumLogScale_ = 0.0;
  lastMatched_ = kUnmatched;
  const rzLong length = rf_Count(choices_.size());
  lineStart_ = length > 0 ? tree_.lineStart(node_) : 0;
  for (rzLong i = lineStart_; i < length; ++i) {
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
  for (std::size_t i = 0; i < next; ++i) {
    const bool isRival = targetKeys_[i] == targetKeys_[next] && choices_[i] != kUnmatched;
    if (isRival && rf_At(choices_[i]) < isUsed_.size()) isUsed_[rf_At(choices_[i])] = true;
  }
}

bool rz_PathTrials::tryChoice(rzLong choice, bool startsLine, rz_PathNode& grown, double& total) {
  if (choice != kUnmatched && isUsed_[rf_At(choice)]) return false;
  if (!(startsLine ? mayStartLine_() : mayContinue_(choice))) return false;
  if (!addPosition_(choice, startsLine, grown)) return false;
  if (startsLine) {
    grown.errors = tree_[node_].errors;  // a single character has no shape
  } else {
    grown.errors = tree_[grown.beforeLine].errors;
    if (!addErrorsOfLine_(choice, grown.errors)) return false;
  }
  total = total_(grown);
  return true;
}

// A line is closed when the next one starts: it must end matched. With eCircular, one more thing
// changes: a line of two was judged as straight while the path had no third position.
bool rz_PathTrials::mayStartLine_() const {
  if (choices_.empty()) return true;
  const rzLong count = rf_Count(choices_.size()) - lineStart_;
  if (count >= 2 && choices_.back() == kUnmatched) return false;
  return params_.lineType() != rzOCArrangeDefs::eCircular || chars_.size() != 2;
}

// A line of two or more must begin matched, and end matched where the text ends.
bool rz_PathTrials::mayContinue_(rzLong choice) const {
  const bool endsText = choices_.size() + 1 == targetKeys_.size();
  return choices_[rf_At(lineStart_)] != kUnmatched && !(endsText && choice == kUnmatched);
}

bool rz_PathTrials::addPosition_(rzLong choice, bool startsLine, rz_PathNode& grown) const {
  const rz_PathNode& node = tree_[node_];
  const rz_CharData& character = charData_[choices_.size()];
  grown = node;
  grown.parent = node_;
  grown.beforeLine = startsLine ? node_ : node.beforeLine;
  grown.choice = choice;
  ++grown.length;
  if (choice != kUnmatched) {
    grown.matchCost += 1.0 - scores_[choices_.size()][rf_At(choice)];
    if (startsLine) ++grown.realLines;
  } else if (!character.isBlank) {
    ++grown.unmatched;
    if (character.costsWhenUnmatched) ++grown.charged;
  }
  return grown.unmatched <= params_.maxUnmatchedChars() && grown.realLines <= params_.maxLines();
}

bool rz_PathTrials::addErrorsOfLine_(rzLong choice, rz_PathErrors& errors) {
  const rzLong position = rf_Count(choices_.size());
  const bool isMatched = choice != kUnmatched;
  double sumLogScale = sumLogScale_;
  if (isMatched) {
    const rz_Pose& pose = poses_[rf_At(position)][rf_At(choice)];
    chars_.append(pose, charData_[rf_At(position)].symmetry);
    sumLogScale += pose.logScale;
  }
  choices_.push_back(choice);

  bool isPossible = true;
  if (chars_.size() >= 2) {
    const rz_ScaleErrors scaleErrors = rf_ScaleErrors(chars_, sumLogScale);
    const rz_LineUnderWork line{chars_, choices_, lineStart_, isMatched ? position : lastMatched_,
                                std::exp(scaleErrors.meanLogScale)};
    const auto verdict = judge_.judge(line);
    isPossible = verdict.has_value();
    if (isPossible) {
      errors.add(verdict->errors, scaleErrors.sum, position + 1 - lineStart_, chars_.size());
    }
  }
  choices_.pop_back();
  if (isMatched) chars_.removeLast();
  return isPossible;
}

double rz_PathTrials::total_(const rz_PathNode& grown) const {
  rz_CostTerms cost;
  cost.matchCost = grown.matchCost;
  cost.unmatchedCost = grown.charged * params_.unmatchedCharCost();
  cost.breakCost = rf_BreakCost(grown.realLines, params_);
  grown.errors.price(params_, cost);
  return cost.total();
}
