// SPDX-License-Identifier: Apache-2.0
//
// Keys with instances of their own.
#include <algorithm>
#include <span>

#include "oc/char.h"

namespace {

constexpr std::size_t kMaxInstances = 0x7FFFFFFF;

// The first position of the sorted instances that does not hold its own number.
rzLong freeInstance(std::vector<rzLong> taken) {
  std::ranges::sort(taken);
  rzLong position = 0;
  for (const rzLong instance : taken) {
    if (instance != position) break;
    ++position;
  }
  return position;
}

rzOCCharKey uniqueInstanceKey(const rzOCCharKey& key, std::span<const rzOCCharKey> keys) {
  std::vector<rzLong> taken;
  for (const rzOCCharKey& other : keys) {
    if (!other.equalCharacterCode(key) || !other.isInstanceSpecified()) continue;
    taken.push_back(other.instance());
  }
  if (taken.size() == kMaxInstances) throw rzOCDefs::BadParams("All key values in use");
  const bool isTaken = std::ranges::find(taken, key.instance()) != taken.end();
  if (!isTaken && key.isInstanceSpecified()) return key;
  rzOCCharKey unique = key;
  unique.instance(freeInstance(taken));
  return unique;
}

}  // namespace

rzOCCharKey rzOCChar::makeUniqueInstanceKey(const rzOCCharKey& key,
                                            const std::vector<rzOCCharKey>& keys) {
  return uniqueInstanceKey(key, keys);
}

rzOCCharKey rzOCChar::makeUniqueInstanceKey(const rzOCCharKey& key,
                                            const std::vector<rzOCChar>& characters) {
  std::vector<rzOCCharKey> keys;
  keys.reserve(characters.size());
  for (const rzOCChar& character : characters) keys.push_back(character.key());
  return uniqueInstanceKey(key, keys);
}

bool rzOCChar::makeUniqueInstanceKeys(std::vector<rzOCCharKey>& keys) {
  if (keys.empty()) return false;
  if (!keys.front().isInstanceSpecified()) keys.front().instance(0);
  bool changed = false;
  for (std::size_t i = 1; i < keys.size(); ++i) {
    const rzOCCharKey unique = uniqueInstanceKey(keys[i], std::span(keys).first(i));
    if (unique == keys[i]) continue;
    keys[i] = unique;
    changed = true;
  }
  return changed;
}
