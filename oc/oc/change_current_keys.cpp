// SPDX-License-Identifier: Apache-2.0
//
// Arrangements with another reading at one position.
#include <algorithm>

#include "oc/line_arrangement.h"
#include "oc/oc/poses.h"
#include "oc/oc_defs.h"

namespace {

constexpr rzLong kWildcardIndex = -1;

const rzOCLine& lineAt(const rzOCLineArrangement& arrangement, rzLong lineIndex) {
  rf_RequireParams(lineIndex >= 0 && lineIndex < arrangement.numLines(),
                   "The supplied line index is not valid.");
  return *arrangement.lines()[static_cast<std::size_t>(lineIndex)];
}

std::vector<rzLong> indicesOf(const rzOCKeySet& keySet, const std::vector<rzLong>& keys) {
  const std::vector<rzLong>& possible = keySet.keys();
  std::vector<rzLong> indices;
  for (const rzLong key : keys) {
    const auto found = std::find(possible.begin(), possible.end(), key);
    if (found == possible.end()) {
      throw rzOCDefs::BadKey("The specified key is not in the keySet for this position.");
    }
    indices.push_back(rf_Count(static_cast<std::size_t>(found - possible.begin())));
  }
  return indices;
}

rzPtrHandle_const<rzOCLine> lineWithKeySet(const rzOCLine& line, std::size_t position,
                                           const rzOCKeySet& keySet) {
  std::vector<rzOCKeySet> sequence = line.keySetSequence();
  sequence[position] = keySet;
  return rzPtrHandle_const<rzOCLine>(
      new rzOCLine(sequence, line.alphabet(), line.charPoses(), line.charScales(),
                   line.translationUncertainties(), line.rotationUncertainties(),
                   line.scaleUncertainties(), line.name()));
}

rzPtrHandle<rzOCLineArrangement> rf_OCChangeCurrentKeys(const rzOCLineArrangement& arrangement,
                                                        rzLong lineIndex, rzLong positionIndex,
                                                        const std::vector<rzLong>& keys,
                                                        bool isWildcard) {
  if (keys.empty() && !isWildcard) {
    throw rzOCDefs::BadKey("At least one of the keys is not found in the alphabet.");
  }
  const rzOCLine& line = lineAt(arrangement, lineIndex);
  rf_RequireParams(positionIndex >= 0 && positionIndex < rf_Count(line.keySetSequence().size()),
                   "The supplied position index is not valid.");
  const auto position = static_cast<std::size_t>(positionIndex);
  rzOCKeySet keySet = line.keySetSequence()[position];
  keySet.currentKeyIndices(isWildcard ? std::vector<rzLong>{kWildcardIndex}
                                      : indicesOf(keySet, keys));
  std::vector<rzPtrHandle_const<rzOCLine>> lines = arrangement.lines();
  lines[static_cast<std::size_t>(lineIndex)] = lineWithKeySet(line, position, keySet);
  return rzPtrHandle<rzOCLineArrangement>(new rzOCLineArrangement(
      lines, arrangement.linePoses(), arrangement.translationUncertainties(),
      arrangement.rotationUncertainties(), arrangement.name()));
}

}  // namespace

rzPtrHandle<rzOCLineArrangement> rfOCChangeCurrentKey(const rzOCLineArrangement& arrangement,
                                                      rzLong lineIndex, rzLong positionIndex) {
  return rf_OCChangeCurrentKeys(arrangement, lineIndex, positionIndex, {}, true);
}

rzPtrHandle<rzOCLineArrangement> rfOCChangeCurrentKey(const rzOCLineArrangement& arrangement,
                                                      rzLong lineIndex, rzLong positionIndex,
                                                      rzLong key) {
  return rf_OCChangeCurrentKeys(arrangement, lineIndex, positionIndex, {key}, false);
}

rzPtrHandle<rzOCLineArrangement> rfOCChangeCurrentKeys(const rzOCLineArrangement& arrangement,
                                                       rzLong lineIndex, rzLong positionIndex,
                                                       const std::vector<rzLong>& keys) {
  return rf_OCChangeCurrentKeys(arrangement, lineIndex, positionIndex, keys, false);
}

rzPtrHandle<rzOCLineArrangement> rfOCChangeCurrentKeys(const rzOCLineArrangement& arrangement,
                                                       rzLong lineIndex, rzLong positionIndex,
                                                       const std::string& name) {
  std::vector<rzLong> keys;
  for (const auto& character : lineAt(arrangement, lineIndex).alphabet()->characters()) {
    if (character->name() == name) keys.push_back(character->key());
  }
  return rf_OCChangeCurrentKeys(arrangement, lineIndex, positionIndex, keys, false);
}
