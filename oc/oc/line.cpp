// SPDX-License-Identifier: Apache-2.0
#include "oc/line.h"

#include <algorithm>

#include "oc/oc/enclose.h"
#include "oc/oc/poses.h"
#include "oc/oc_defs.h"

namespace {

// The texts for one value that is out of range, in the wording of each constructor.
struct RangeTexts {
  const char* translation;
  const char* rotation;
  const char* scale;
};

constexpr RangeTexts kStepTexts = {"Character translation uncertainty must be >= 0",
                                   "Character rotation uncertainty must be >= 0",
                                   "Character scale uncertainty must be >= 0"};
constexpr RangeTexts kPosesTexts = {"Character position uncertainty must be >= 0",
                                    "Character angular uncertainty must be >= 0",
                                    "Character scale uncertainty must be >= 0"};
constexpr RangeTexts kVectorsTexts = {"Character translation uncertainties must be >= 0",
                                      "Character rotation uncertainties must be >= 0",
                                      "Character scale uncertainties must be >= 0"};

void requireAlphabet(const rzPtrHandle_const<rzOCAlphabet>& alphabet) {
  rf_RequireParams(!alphabet.isNull(), "Alphabet must point to a valid object.");
}

void requirePoses(const std::vector<rz2Rigid>& poses, const std::vector<rzOCKeySet>& keySets) {
  rf_RequireParams(poses.size() == keySets.size(),
                   "Number of character poses does not match the number of key sets.");
}

void requireRanges(double scale, double translationUncertainty, const rzRadian& rotationUncertainty,
                   double scaleUncertainty, const RangeTexts& texts) {
  rf_RequireParams(scale > 0.0, "Character scale factors must be > 0");
  rf_RequireParams(translationUncertainty >= 0.0, texts.translation);
  rf_RequireParams(rotationUncertainty.toDouble() >= 0.0, texts.rotation);
  rf_RequireParams(scaleUncertainty >= 0.0, texts.scale);
}

void requireKeys(const std::vector<rzOCKeySet>& keySets, const rzOCAlphabet& alphabet) {
  for (const rzOCKeySet& keySet : keySets) {
    for (const rzLong key : keySet.keys()) {
      if (!alphabet.hasCharacter(key)) {
        throw rzOCDefs::BadKey(
            "A key in the set sequence is not available in the supplied "
            "alphabet.");
      }
    }
  }
}

// The pose of a position with its scale: a similarity.
rzXform<2> charXform(const rz2Rigid& pose, double scale) {
  constexpr double kAspect = 1.0;
  return rzXform<2>(pose.trans(), scale, kAspect, rzRadian(0.0), rzRadian(pose.angle()));
}

}  // namespace

rzOCLine::rzOCLine() : alphabet_(new rzOCAlphabet) {}

rzOCLine::rzOCLine(const std::vector<rzOCKeySet>& keySetSequence,
                   const rzPtrHandle_const<rzOCAlphabet>& alphabet, const rz2Rigid& step,
                   double charScale, double translationUncertainty,
                   const rzRadian& rotationUncertainty, double scaleUncertainty,
                   const std::string& name)
    : keySetSequence_(keySetSequence), alphabet_(alphabet), name_(name) {
  requireAlphabet(alphabet);
  requireRanges(charScale, translationUncertainty, rotationUncertainty, scaleUncertainty,
                kStepTexts);
  requireKeys(keySetSequence, *alphabet);
  charPoses_ = rf_RepeatedSteps(step, keySetSequence.size());
  fill_(charScale, translationUncertainty, rotationUncertainty, scaleUncertainty);
}

rzOCLine::rzOCLine(const std::vector<rzOCKeySet>& keySetSequence,
                   const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                   const std::vector<rz2Rigid>& charPoses, double charScale,
                   double positionUncertainty, const rzRadian& angularUncertainty,
                   double scaleUncertainty, const std::string& name)
    : keySetSequence_(keySetSequence), alphabet_(alphabet), name_(name) {
  requireAlphabet(alphabet);
  requirePoses(charPoses, keySetSequence);
  requireRanges(charScale, positionUncertainty, angularUncertainty, scaleUncertainty, kPosesTexts);
  requireKeys(keySetSequence, *alphabet);
  charPoses_ = charPoses;
  fill_(charScale, positionUncertainty, angularUncertainty, scaleUncertainty);
}

rzOCLine::rzOCLine(const std::vector<rzOCKeySet>& keySetSequence,
                   const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                   const std::vector<rz2Rigid>& charPoses, const std::vector<double>& charScales,
                   const std::vector<double>& translationUncertainties,
                   const std::vector<rzRadian>& rotationUncertainties,
                   const std::vector<double>& scaleUncertainties, const std::string& name)
    : keySetSequence_(keySetSequence), alphabet_(alphabet), name_(name) {
  const std::size_t n = keySetSequence.size();
  requireAlphabet(alphabet);
  requirePoses(charPoses, keySetSequence);
  rf_RequireParams(charScales.size() == n,
                   "Number of character scales does not match the number of key sets.");
  rf_RequireParams(translationUncertainties.size() == n,
                   "Number of translation uncertainties does not match the number of key sets.");
  rf_RequireParams(rotationUncertainties.size() == n,
                   "Number of rotation uncertainties does not match the number of key sets.");
  rf_RequireParams(scaleUncertainties.size() == n,
                   "Number of scale uncertainties does not match the number of key sets.");
  for (std::size_t i = 0; i < n; ++i) {
    requireRanges(charScales[i], translationUncertainties[i], rotationUncertainties[i],
                  scaleUncertainties[i], kVectorsTexts);
  }
  requireKeys(keySetSequence, *alphabet);
  charPoses_ = charPoses;
  charScales_ = charScales;
  translationUncertainties_ = translationUncertainties;
  rotationUncertainties_ = rotationUncertainties;
  scaleUncertainties_ = scaleUncertainties;
}

// Gives every position the same scale and uncertainties.
void rzOCLine::fill_(double charScale, double translationUncertainty,
                     const rzRadian& rotationUncertainty, double scaleUncertainty) {
  const std::size_t n = keySetSequence_.size();
  charScales_.assign(n, charScale);
  translationUncertainties_.assign(n, translationUncertainty);
  rotationUncertainties_.assign(n, rotationUncertainty);
  scaleUncertainties_.assign(n, scaleUncertainty);
}

rzLong rzOCLine::numPositions() const { return rf_Count(charPoses_.size()); }

bool rzOCLine::isWildcard(rzLong position) const {
  if (position < 0 || position >= numPositions()) {
    throw rzOCDefs::BadIndex("Invalid position index.");
  }
  return keySetSequence_[static_cast<std::size_t>(position)].isCurrentWildcard();
}

std::vector<rzLong> rzOCLine::currentKeys_(rzLong position) const {
  if (isWildcard(position)) {
    throw rzOCDefs::BadIndex("The specified position contains a wildcard character.");
  }
  return keySetSequence_[static_cast<std::size_t>(position)].currentKeys();
}

const rzPtrHandle_const<rzOCModel>& rzOCLine::character(rzLong position) const {
  const std::vector<rzLong> keys = currentKeys_(position);
  rf_RequireParams(!keys.empty(), "The specified position has no current character.");
  return alphabet_->character(keys.front());
}

std::vector<rzPtrHandle_const<rzOCModel>> rzOCLine::characters(rzLong position) const {
  std::vector<rzPtrHandle_const<rzOCModel>> models;
  for (const rzLong key : currentKeys_(position)) models.push_back(alphabet_->character(key));
  return models;
}

rzLong rzOCLine::numNormalChars() const {
  rzLong count = 0;
  for (rzLong position = 0; position < numPositions(); ++position) {
    if (isWildcard(position)) continue;
    const auto models = characters(position);
    if (std::any_of(models.begin(), models.end(),
                    [](const auto& m) { return m->charType() == rzOCModel::eNormal; })) {
      ++count;
    }
  }
  return count;
}

rzRect rzOCLine::encloseRect(const rzXform<2>& pose, const rzXform<2>& originXform,
                             const rzXform<2>& targetXform, double translationUncertainty,
                             const rzRadian& rotationUncertainty, double scaleUncertainty,
                             bool includeConfusable) const {
  const rz_EnclosePlacement placement{pose,
                                      originXform,
                                      targetXform,
                                      translationUncertainty,
                                      rotationUncertainty,
                                      scaleUncertainty};
  rf_CheckUncertainties(placement);
  rz_EncloseUnion reach(placement);
  const rzXform<2> identity;
  for (std::size_t i = 0; i < charPoses_.size(); ++i) {
    if (keySetSequence_[i].isCurrentWildcard()) continue;
    const std::vector<rzLong> keys = keySetSequence_[i].currentKeys();
    if (keys.empty()) continue;
    const rzXform<2> placed = charXform(charPoses_[i], charScales_[i]);
    for (const auto& character : alphabet_->characters()) {
      const bool isSelected =
          character->key() == keys.front() ||
          (includeConfusable && alphabet_->areConfusable(keys.front(), character->key()));
      if (!isSelected) continue;
      reach.add(character->encloseRect(placed, identity, identity, translationUncertainties_[i],
                                       rotationUncertainties_[i], scaleUncertainties_[i]));
    }
  }
  return reach.result();
}

bool rzOCLine::operator==(const rzOCLine& other) const {
  return *alphabet_ == *other.alphabet_ && keySetSequence_ == other.keySetSequence_ &&
         charPoses_ == other.charPoses_ && charScales_ == other.charScales_ &&
         translationUncertainties_ == other.translationUncertainties_ &&
         rotationUncertainties_ == other.rotationUncertainties_ &&
         scaleUncertainties_ == other.scaleUncertainties_ && name_ == other.name_;
}
