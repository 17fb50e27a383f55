// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <mutex>

#include "rz/exception.h"
#include "rz/text.h"

namespace {

using Converter = void (*)(rzLong);

// Inside functions, since converters register during static initialisation.
std::mutex& mutex() {
  static std::mutex theMutex;
  return theMutex;
}

std::map<rzLong, Converter>& converters() {
  static std::map<rzLong, Converter> theConverters;
  return theConverters;
}

Converter converterOf(rzLong id) {
  const std::lock_guard lock(mutex());
  const auto found = converters().find(id);
  return found == converters().end() ? nullptr : found->second;
}

}  // namespace

void rfRegisterExceptionConverter(rzLong id, void (*converter)(rzLong code)) {
  const std::lock_guard lock(mutex());
  converters()[id] = converter;
}

void rfThrowExceptionOnFailure(rzLong code) {
  if (code >= 0) return;
  const auto bits = static_cast<rzULong>(code);
  const auto id = static_cast<rzLong>((bits & 0x7FFFFFFF) >> 5);
  if (const Converter convert = converterOf(id)) convert(code);
  throw rzFailureCode("Failure code " + rfHex(bits, 8));
}
