// SPDX-License-Identifier: Apache-2.0
#include "rz/persistent.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <typeindex>

#include "platform/foundation/base/archive_state.h"
#include "rz/archive.h"

namespace {

constexpr std::size_t kLongestClassName = 128;  // bytes; what is longer is no name of ours

using Make = rzPersistent* (*)();

struct Registry {
  std::mutex mutex;
  std::map<std::string, Make> makers;
  std::map<std::type_index, std::string> names;
};

// Inside a function, since classes register during static initialisation.
Registry& registry() {
  static Registry theRegistry;
  return theRegistry;
}

// The name as the source text spells it. Needs the C++ ABI of the Itanium platform, which all
// compilers for Linux share.
std::string sourceName(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  return name ? name.get() : type.name();
}

std::string registeredName(const rzPersistent& object) {
  const std::type_info& type = typeid(object);
  Registry& known = registry();
  const std::lock_guard lock(known.mutex);
  const auto found = known.names.find(type);
  if (found == known.names.end())
    throw rzArchive::UnknownClass("Class is not registered: " + sourceName(type));
  return found->second;
}

rzPersistent* makeObject(const std::string& name) {
  Registry& known = registry();
  Make make = nullptr;
  {
    const std::lock_guard lock(known.mutex);
    const auto found = known.makers.find(name);
    if (found == known.makers.end())
      throw rzArchive::UnknownClass("Class is not registered: " + name);
    make = found->second;
  }
  return make();
}

}  // namespace

rz_Instantiator::rz_Instantiator(const std::type_info& type, rzPersistent* (*make)()) {
  Registry& known = registry();
  const std::string name = sourceName(type);
  const std::lock_guard lock(known.mutex);
  known.makers[name] = make;
  known.names[type] = name;
}

rzPersistent::~rzPersistent() = default;

void rzPersistent::dispatchSerialize(rzArchive&) {}

void rzPersistent::reInit() {}

void rzPersistent::loadSimple(rzArchive&) {}

bool rzPersistent::haveVisited(const rzArchive& archive, const void* address, std::size_t size) {
  const auto& visits = archive.state_->visits;
  if (visits.empty()) return false;
  return std::ranges::find(visits.back(), std::pair(address, size)) != visits.back().end();
}

void rzPersistent::setVisited(rzArchive& archive, const void* address, std::size_t size) {
  auto& visits = archive.state_->visits;
  if (!visits.empty()) visits.back().emplace_back(address, size);
}

void rzPersistent::visit_(rzArchive& archive, rzPersistent& object) {
  auto& visits = archive.state_->visits;
  if (visits.size() == rzArchive::kMaxNesting)
    throw rzArchive::BadFormat("Objects are nested too deeply");
  visits.emplace_back();
  try {
    object.dispatchSerialize(archive);
  } catch (...) {
    visits.pop_back();
    throw;
  }
  visits.pop_back();
}

rzArchive& operator||(rzArchive& archive, rzPersistent& object) {
  rzPersistent::visit_(archive, object);
  return archive;
}

bool rzPersistent::isLoading_(const rzArchive& archive) { return archive.isLoading(); }

void rzPersistent::store_(rzArchive& archive, rzPersistent* object) {
  rzULong id = 0;
  if (!object) {
    archive || id;
    return;
  }
  rzArchive::State& state = *archive.state_;
  const auto* counted = dynamic_cast<const rzRepBase*>(object);
  const void* address = dynamic_cast<const void*>(object);
  const auto known = state.storedIds.find(address);
  if (counted && known != state.storedIds.end()) {
    id = known->second;
    archive || id;
    return;
  }
  std::string name = registeredName(*object);
  id = ++state.numStored;
  if (counted) state.storedIds.emplace(address, id);
  // An object that no handle holds belongs to the caller; a reference would delete it in the end.
  if (counted && counted->refCount() > 0) state.storedObjects.emplace_back(counted);
  archive || id || name;
  visit_(archive, *object);
}

rzPersistent* rzPersistent::load_(rzArchive& archive, Accepts accepts) {
  rzULong id = 0;
  archive || id;
  if (id == 0) return nullptr;
  const auto& known = archive.state_->loadedObjects;
  if (id > known.size() + 1) throw rzArchive::BadFormat("Unknown id of an object");
  if (id == known.size() + 1) return loadNew_(archive, accepts);
  rzPersistent* object = known[id - 1].object;
  if (!object) throw rzArchive::BadFormat("An object that cannot be shared occurs twice");
  if (!accepts(*object)) throw rzArchive::BadFormat("An object of another class was expected");
  return object;
}

rzPersistent* rzPersistent::loadNew_(rzArchive& archive, Accepts accepts) {
  std::string name;
  archive || name;
  if (name.size() > kLongestClassName) throw rzArchive::BadFormat("Not the name of a class");
  std::unique_ptr<rzPersistent> made(makeObject(name));
  if (!accepts(*made)) throw rzArchive::BadFormat("Unexpected object of class " + name);
  rzPersistent* object = made.get();
  auto& known = archive.state_->loadedObjects;
  if (auto* counted = dynamic_cast<rzRepBase*>(object)) {
    known.push_back({object, nullptr});
    made.release();
    known.back().holder = rzPtrHandle<rzRepBase>(counted);
  } else {
    known.push_back({nullptr, nullptr});
  }
  visit_(archive, *object);
  made.release();
  return object;
}
