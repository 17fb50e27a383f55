// SPDX-License-Identifier: Apache-2.0
#include "oc/alphabet.h"

#include <algorithm>
#include <utility>

#include "oc/oc/duplicates.h"
#include "oc/oc_defs.h"
#include "rz/real_eq.h"

namespace {

using Models = std::vector<rzPtrHandle_const<rzOCModel>>;
using Offsets = std::vector<std::vector<rzXform<2>>>;

constexpr char kNoCharacter[] =
    "The character for the specified key does not exist in the alphabet.";

Models constHandles(const std::vector<rzPtrHandle<rzOCModel>>& characters) {
  return Models(characters.begin(), characters.end());
}

std::vector<rzLong> keysOf(const Models& characters) {
  std::vector<rzLong> keys;
  for (const auto& character : characters) keys.push_back(character->key());
  return keys;
}

rzLong indexOfKey(const Models& characters, rzLong key) {
  const auto found = std::find_if(characters.begin(), characters.end(),
                                  [key](const auto& c) { return c->key() == key; });
  return found == characters.end() ? -1
                                   : rf_Count(static_cast<std::size_t>(found - characters.begin()));
}

void requireDistinct(const std::vector<rzLong>& keys) {
  if (rf_HasDuplicates(keys)) {
    throw rzOCDefs::SameKey("The keys for at least two of the supplied characters are identical.");
  }
}

std::unique_ptr<rzNMMatrix> squareMatrix(rzLong numChars) {
  const rzLong side = std::max<rzLong>(1, numChars);
  return std::make_unique<rzNMMatrix>(side, side);
}

void swapCharacters(Offsets& offsets, rzLong i, rzLong j) {
  const auto a = static_cast<std::size_t>(i);
  const auto b = static_cast<std::size_t>(j);
  std::swap(offsets[a], offsets[b]);
  for (auto& row : offsets) std::swap(row[a], row[b]);
}

void swapCharacters(rzNMMatrix& matrix, rzLong i, rzLong j) {
  matrix.swapRows(i, j);
  matrix.swapColumns(i, j);
}

void shrink(Offsets& offsets, std::size_t side) {
  offsets.resize(side);
  for (auto& row : offsets) row.resize(side);
}

template <class SameModel, class SameNumber>
bool sameAlphabet(const rzOCAlphabet& a, const rzOCAlphabet& b, SameModel sameModel,
                  SameNumber sameNumber) {
  return std::equal(a.characters().begin(), a.characters().end(), b.characters().begin(),
                    b.characters().end(),
                    [&](const auto& x, const auto& y) { return sameModel(*x, *y); }) &&
         a.name() == b.name() && sameNumber(a.confusionThreshold(), b.confusionThreshold()) &&
         a.isCompiled() == b.isCompiled();
}

}  // namespace

rzOCAlphabet::rzOCAlphabet() : confusionMatrix_(squareMatrix(0)) {}

rzOCAlphabet::rzOCAlphabet(const Models& characters, double confusionThreshold, bool compile,
                           const std::string& name)
    : compiled_(false), name_(name), confusionMatrix_(squareMatrix(0)) {
  this->confusionThreshold(confusionThreshold);
  this->characters(characters, compile);
}

rzOCAlphabet::rzOCAlphabet(const std::vector<rzPtrHandle<rzOCModel>>& characters,
                           double confusionThreshold, bool compile, const std::string& name)
    : rzOCAlphabet(constHandles(characters), confusionThreshold, compile, name) {}

rzOCAlphabet::rzOCAlphabet(const rzOCAlphabet& other)
    : rzPersistent(other), rzRepBase(other), confusionMatrix_(squareMatrix(0)) {
  *this = other;
}

rzOCAlphabet& rzOCAlphabet::operator=(const rzOCAlphabet& other) {
  if (this == &other) return *this;
  confusionThreshold_ = other.confusionThreshold_;
  characterOffsets_ = other.characterOffsets_;
  name_ = other.name_;
  characters_ = other.characters_;
  compiled_ = other.compiled_;
  if (other.compiled_) *confusionMatrix_ = *other.confusionMatrix_;
  return *this;
}

rzOCAlphabet::~rzOCAlphabet() = default;

rzLong rzOCAlphabet::numChars() const { return rf_Count(characters_.size()); }

void rzOCAlphabet::characters(const Models& characters, bool compile) {
  requireDistinct(keysOf(characters));
  characters_ = characters;
  mutating();
  compiled_ = false;
  if (compile) this->compile(nullptr, 0);
}

void rzOCAlphabet::characters(const std::vector<rzPtrHandle<rzOCModel>>& characters, bool compile) {
  this->characters(constHandles(characters), compile);
}

rzLong rzOCAlphabet::characterIndex(rzLong key) const { return indexOfKey(characters_, key); }

bool rzOCAlphabet::hasCharacter(rzLong key) const { return characterIndex(key) != -1; }

const rzPtrHandle_const<rzOCModel>& rzOCAlphabet::character(rzLong key) const {
  const rzLong index = characterIndex(key);
  if (index == -1) throw rzOCDefs::BadKey(kNoCharacter);
  return characters_[static_cast<std::size_t>(index)];
}

void rzOCAlphabet::add(const rzPtrHandle_const<rzOCModel>& character, bool compile) {
  add(Models{character}, compile);
}

void rzOCAlphabet::add(const std::vector<rzPtrHandle<rzOCModel>>& characters, bool compile) {
  add(constHandles(characters), compile);
}

void rzOCAlphabet::add(const Models& characters, bool compile) {
  if (std::any_of(characters.begin(), characters.end(),
                  [this](const auto& c) { return hasCharacter(c->key()); })) {
    throw rzOCDefs::SameKey(
        "At least one of the supplied characters has the same key as one of the characters in the "
        "alphabet.");
  }
  requireDistinct(keysOf(characters));
  mutating();
  characters_.insert(characters_.end(), characters.begin(), characters.end());
  compiled_ = false;
  if (compile) this->compile(nullptr, 0);
}

void rzOCAlphabet::remove(rzLong key) { remove(std::vector<rzLong>{key}); }

void rzOCAlphabet::remove(const std::vector<rzLong>& keys) {
  if (keys.empty()) return;
  if (!std::all_of(keys.begin(), keys.end(), [this](rzLong key) { return hasCharacter(key); })) {
    throw rzOCDefs::BadKey(
        "At least one of the supplied keys does not reference a character in this alphabet.");
  }
  if (rf_HasDuplicates(keys)) {
    throw rzOCDefs::SameKey("At least one of the supplied keys is identical.");
  }
  mutating();
  for (const rzLong key : keys) {
    const rzLong last = numChars() - 1;
    const rzLong i = characterIndex(key);
    characters_[static_cast<std::size_t>(i)] = characters_.back();
    characters_.pop_back();
    if (i < last && compiled_) {
      swapCharacters(*confusionMatrix_, i, last);
      swapCharacters(characterOffsets_, i, last);
    }
  }
  auto remaining = squareMatrix(numChars());
  if (compiled_) {
    if (!characters_.empty()) remaining->copySub(*confusionMatrix_, 0, 0);
    shrink(characterOffsets_, characters_.size());
  }
  confusionMatrix_ = std::move(remaining);
}

void rzOCAlphabet::confusionThreshold(double threshold) {
  if (!(threshold >= 0.0 && threshold <= 1.0)) {
    throw rzOCDefs::BadParams("Confusion threshold must be between 0 and 1.");
  }
  confusionThreshold_ = threshold;
  mutating();
}

void rzOCAlphabet::confusionThreshold(double threshold, bool /*compile*/) {
  confusionThreshold(threshold);
}

void rzOCAlphabet::checkPair_(rzLong key1, rzLong key2) const {
  if (!compiled_) throw rzOCDefs::NotCompiled();
  if (!hasCharacter(key1) || !hasCharacter(key2)) throw rzOCDefs::BadKey(kNoCharacter);
}

double rzOCAlphabet::confusion(rzLong key1, rzLong key2) const {
  checkPair_(key1, key2);
  return confusionMatrix_->element(characterIndex(key1), characterIndex(key2));
}

rzXform<2> rzOCAlphabet::characterOffset(rzLong key1, rzLong key2) const {
  checkPair_(key1, key2);
  return characterOffsets_[static_cast<std::size_t>(characterIndex(key1))]
                          [static_cast<std::size_t>(characterIndex(key2))];
}

bool rzOCAlphabet::areConfusable(rzLong key1, rzLong key2) const {
  const bool isBlank = character(key1)->charType() == rzOCModel::eBlank;
  return confusion(key1, key2) > (isBlank ? 0.0 : confusionThreshold_);
}

bool rzOCAlphabet::operator==(const rzOCAlphabet& other) const {
  return sameAlphabet(
      *this, other, [](const rzOCModel& a, const rzOCModel& b) { return a == b; },
      [](double a, double b) { return a == b; });
}

bool rfRealEq(const rzOCAlphabet& a, const rzOCAlphabet& b, double epsilon) {
  return sameAlphabet(
      a, b, [epsilon](const rzOCModel& x, const rzOCModel& y) { return rfRealEq(x, y, epsilon); },
      [epsilon](double x, double y) { return rfRealEq(x, y, epsilon); });
}
