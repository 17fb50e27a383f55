// SPDX-License-Identifier: Apache-2.0
//
// What an archive remembers besides its bytes: the objects on their way and the objects seen.
#pragma once

#include <cstddef>
#include <memory>
#include <typeindex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "rz/archive.h"

struct rzArchive::State {
  /// The levels (address, size) of one object on its way that have been moved.
  using Visit = std::vector<std::pair<const void*, std::size_t>>;

  struct LoadedObject {
    rzPersistent* object;  ///< Null for an object that is not counted.
    rzPtrHandle<rzRepBase> holder;
  };

  struct LoadedShared {
    std::shared_ptr<const void> shared;
    std::type_index type;
  };

  /// Objects on their way, outermost first.
  std::vector<Visit> visits;

  // Ids are counted from 1, in the order of first sight; 0 is null. Objects stored are kept alive,
  // so that no address comes back as that of another object.
  std::unordered_map<const void*, rzULong> storedIds;
  std::vector<rzPtrHandle_const<rzRepBase>> storedObjects;
  rzULong numStored = 0;
  std::vector<LoadedObject> loadedObjects;

  // The same for shared data.
  std::unordered_map<const void*, rzULong> storedSharedIds;
  std::vector<std::shared_ptr<const void>> storedShared;
  std::vector<LoadedShared> loadedShared;
};
