// SPDX-License-Identifier: Apache-2.0
#include "oc/key_set.h"

#include <algorithm>
#include <utility>

#include "oc/oc/duplicates.h"
#include "oc/oc_defs.h"

namespace {

constexpr rzLong kWildcardIndex = -1;

constexpr char kBadIndices[] =
    "At least one of the current key indices is not valid for specified set of possible keys.";
constexpr char kNotOneIndex[] = "Set of current key indices must contain only one element.";

bool isIndexInto(const std::vector<rzLong>& keys, rzLong index) {
  return index >= kWildcardIndex && index < rf_Count(keys.size());
}

bool areIndicesInto(const std::vector<rzLong>& keys, const std::vector<rzLong>& indices) {
  return std::all_of(indices.begin(), indices.end(),
                     [&keys](rzLong index) { return isIndexInto(keys, index); });
}

template <class T>
bool contains(const std::vector<T>& values, const T& value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

}  // namespace

rzOCKeySet::rzOCKeySet() : currentKeyIndices_{kWildcardIndex} {}

rzOCKeySet::rzOCKeySet(const std::vector<rzLong>& keys, rzLong currentKeyIndex)
    : currentKeyIndices_{currentKeyIndex} {
  this->keys(keys);
}

rzOCKeySet::rzOCKeySet(const std::vector<rzLong>& keys, std::vector<rzLong> currentKeyIndices) {
  this->keys(keys);
  this->currentKeyIndices(currentKeyIndices);
}

rzOCKeySet::rzOCKeySet(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                       const std::vector<std::string>& names, const std::string& currentName) {
  if (rf_HasDuplicates(names)) {
    throw rzOCDefs::SameKey("Possible character names for a character position must be unique.");
  }
  for (const std::string& name : names) {
    const std::size_t numBefore = keys_.size();
    for (const auto& character : alphabet->characters()) {
      if (character->name() != name) continue;
      if (name == currentName) currentKeyIndices_.push_back(rf_Count(keys_.size()));
      keys_.push_back(character->key());
    }
    if (keys_.size() == numBefore) {
      throw rzOCDefs::BadKey(
          "At least one of the character names is not found in the supplied alphabet.");
    }
  }
  if (currentKeyIndices_.empty()) {
    throw rzOCDefs::BadIndex(
        "Current character is not valid for specified set of possible character names.");
  }
}

void rzOCKeySet::keys(const std::vector<rzLong>& keys) {
  if (rf_HasDuplicates(keys)) {
    throw rzOCDefs::SameKey("Possible keys for a character position must be unique.");
  }
  if (!areIndicesInto(keys, currentKeyIndices_)) throw rzOCDefs::BadIndex(kBadIndices);
  overrideKeys_.clear();
  overrideLists_.clear();
  keys_ = keys;
}

void rzOCKeySet::currentKeyIndices(const std::vector<rzLong>& indices) {
  if (rf_HasDuplicates(indices)) throw rzOCDefs::BadIndex("Key indices must be unique.");
  if (!areIndicesInto(keys_, indices)) throw rzOCDefs::BadIndex(kBadIndices);
  currentKeyIndices_ = indices;
}

rzLong rzOCKeySet::currentKeyIndex() const {
  if (currentKeyIndices_.size() != 1) throw rzOCDefs::BadParams(kNotOneIndex);
  return currentKeyIndices_.front();
}

void rzOCKeySet::currentKeyIndex(rzLong index) {
  if (currentKeyIndices_.size() > 1) throw rzOCDefs::BadParams(kNotOneIndex);
  if (!isIndexInto(keys_, index)) {
    throw rzOCDefs::BadIndex("Current key index is not valid for specified set of possible keys.");
  }
  currentKeyIndices_.assign(1, index);
}

bool rzOCKeySet::isCurrentWildcard() const { return contains(currentKeyIndices_, kWildcardIndex); }

rzLong rzOCKeySet::currentKey() const {
  if (!currentKeyIndices_.empty() && currentKeyIndices_.front() == kWildcardIndex) {
    throw rzOCDefs::BadKey("Wild-card characters have no key.");
  }
  return keys_[static_cast<std::size_t>(currentKeyIndex())];
}

std::vector<rzLong> rzOCKeySet::currentKeys() const {
  if (isCurrentWildcard()) throw rzOCDefs::BadKey("Wild-card characters have no key index.");
  std::vector<rzLong> current;
  for (const rzLong index : currentKeyIndices_) {
    current.push_back(keys_[static_cast<std::size_t>(index)]);
  }
  return current;
}

void rzOCKeySet::requireKey_(rzLong key) const {
  if (!contains(keys_, key)) {
    throw rzOCDefs::BadKey("The specified key is not a member of the key set.");
  }
}

// Where the key's list is; the number of lists if it has none.
std::size_t rzOCKeySet::overrideIndex_(rzLong key) const {
  return static_cast<std::size_t>(std::find(overrideKeys_.begin(), overrideKeys_.end(), key) -
                                  overrideKeys_.begin());
}

std::size_t rzOCKeySet::requireOverride_(rzLong key) const {
  if (!hasConfusionOverrides(key)) {
    throw rzOCDefs::BadKey("There are no confusion keys overrides for the specified key.");
  }
  return overrideIndex_(key);
}

bool rzOCKeySet::hasConfusionOverrides(rzLong key) const {
  requireKey_(key);
  return overrideIndex_(key) < overrideKeys_.size();
}

void rzOCKeySet::confusionOverrides(rzLong key, const std::vector<rzLong>& list) {
  if (hasConfusionOverrides(key)) {
    overrideLists_[overrideIndex_(key)] = list;
    return;
  }
  overrideLists_.push_back(list);
  overrideKeys_.push_back(key);
}

const std::vector<rzLong>& rzOCKeySet::confusionOverrides(rzLong key) const {
  return overrideLists_[requireOverride_(key)];
}

void rzOCKeySet::removeConfusionOverrides(rzLong key) {
  const std::size_t hole = requireOverride_(key);
  std::swap(overrideKeys_[hole], overrideKeys_.back());
  std::swap(overrideLists_[hole], overrideLists_.back());
  overrideKeys_.pop_back();
  overrideLists_.pop_back();
}

bool rzOCKeySet::operator==(const rzOCKeySet& other) const {
  if (keys_ != other.keys_ || currentKeyIndices_ != other.currentKeyIndices_ ||
      overrideKeys_.size() != other.overrideKeys_.size()) {
    return false;
  }
  for (std::size_t i = 0; i < overrideKeys_.size(); ++i) {
    const std::size_t j = other.overrideIndex_(overrideKeys_[i]);
    if (j == other.overrideKeys_.size() || overrideLists_[i] != other.overrideLists_[j]) {
      return false;
    }
  }
  return true;
}

// What a load must refuse, since it would be read out of range later.
void rzOCKeySet::checkLoaded_() const {
  if (!areIndicesInto(keys_, currentKeyIndices_)) {
    throw rzArchive::BadFormat("Key set with an index outside its keys");
  }
  if (overrideKeys_.size() != overrideLists_.size()) {
    throw rzArchive::BadFormat("Key set with override vectors of unequal length");
  }
}
