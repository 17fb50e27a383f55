// SPDX-License-Identifier: Apache-2.0
//
// What one position of a line may hold: the keys of the characters that are possible there, which
// of them the position holds now, and optional lists of keys that are to count as confusable with
// a given one. A position whose current index is -1 is a wild card: any character may stand there.
//
//     rzOCKeySet digit({48, 49, 50}, 1);   // 48, 49 or 50; at present 49
//     rzOCKeySet any;                      // a wild card
//
// A plain value, copied freely. The lists of confusable keys are only kept here: nothing tests
// what they hold.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "oc/alphabet.h"
#include "rz/archive.h"
#include "rz/export.h"
#include "rz/ptr_handle.h"
#include "rz/types.h"

class RZ_API rzOCKeySet {
 public:
  /// No keys; a wild card.
  rzOCKeySet();

  /// These possible keys, of which the one at that index is current; -1 for a wild card.
  /// Throws what keys() throws; an index below -1 counts as one that is too large.
  rzOCKeySet(const std::vector<rzLong>& keys, rzLong currentKeyIndex);

  /// These possible keys, several of them current. Throws what the two setters throw.
  rzOCKeySet(const std::vector<rzLong>& keys, std::vector<rzLong> currentKeyIndices);

  /// The characters of these names are possible, all those of `currentName` are current. The
  /// alphabet is not kept. Throws rzOCDefs::SameKey for equal names, rzOCDefs::BadKey for a name
  /// that no character has, rzOCDefs::BadIndex when `currentName` is not among the names.
  rzOCKeySet(const rzPtrHandle_const<rzOCAlphabet>& alphabet, const std::vector<std::string>& names,
             const std::string& currentName);

  /// The possible keys. The setter refuses equal keys (rzOCDefs::SameKey) and a number of keys
  /// that a current index does not fit (rzOCDefs::BadIndex); it drops all overrides.
  const std::vector<rzLong>& keys() const { return keys_; }
  void keys(const std::vector<rzLong>& keys);

  /// Places in keys() of what the position holds now, -1 for a wild card. The setter throws
  /// rzOCDefs::BadIndex for equal indices and for one that is out of range.
  const std::vector<rzLong>& currentKeyIndices() const { return currentKeyIndices_; }
  void currentKeyIndices(const std::vector<rzLong>& indices);

  /// The same for the common case of one index. Both throw rzOCDefs::BadParams when there are
  /// several (the getter also when there is none); the setter throws rzOCDefs::BadIndex for an
  /// index out of range.
  rzLong currentKeyIndex() const;
  void currentKeyIndex(rzLong index);

  /// Whether any current index is -1.
  bool isCurrentWildcard() const;

  /// The current key. Throws rzOCDefs::BadKey if the first current index is -1, then
  /// rzOCDefs::BadParams unless there is exactly one.
  rzLong currentKey() const;

  /// The current keys, in the order of the indices; rzOCDefs::BadKey for a wild card.
  std::vector<rzLong> currentKeys() const;

  /// The keys that are to count as confusable with `key`. All four throw rzOCDefs::BadKey for a
  /// key that is not possible here; the getter and the removal also when it has no list.
  void confusionOverrides(rzLong key, const std::vector<rzLong>& list);
  const std::vector<rzLong>& confusionOverrides(rzLong key) const;
  bool hasConfusionOverrides(rzLong key) const;
  void removeConfusionOverrides(rzLong key);

  /// Equal keys, indices and overrides; the order in which overrides were given does not count.
  bool operator==(const rzOCKeySet& other) const;
  bool operator!=(const rzOCKeySet& other) const { return !(*this == other); }

  /// Writes version 2, reads 0 to 2. Throws rzArchive::UnknownVersion, and rzArchive::BadFormat
  /// for indices that do not fit the keys; a failed load changes nothing.
  friend RZ_API rzArchive& operator||(rzArchive& archive, rzOCKeySet& keySet);

 private:
  void checkLoaded_() const;
  void requireKey_(rzLong key) const;
  std::size_t overrideIndex_(rzLong key) const;
  std::size_t requireOverride_(rzLong key) const;

  std::vector<rzLong> currentKeyIndices_;
  std::vector<rzLong> keys_;
  std::vector<rzLong> overrideKeys_;
  std::vector<std::vector<rzLong>> overrideLists_;
};

RZ_API rzArchive& operator||(rzArchive& archive, rzOCKeySet& keySet);
