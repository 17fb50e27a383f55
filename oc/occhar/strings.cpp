// SPDX-License-Identifier: Apache-2.0
#include "oc/occhar/strings.h"

#include <algorithm>

#include "rz/char_code.h"

rzString32 widened(const std::string& narrow) {
  rzString32 wide(narrow.size(), U'\0');
  std::ranges::transform(narrow, wide.begin(), [](char byte) {
    return static_cast<char32_t>(static_cast<rzLong>(static_cast<signed char>(byte)));
  });
  return wide;
}

std::string narrowed(const rzString32& wide) {
  if (!std::ranges::all_of(wide, &rzCharCode::isRepresentableAsTChar)) return {};
  std::string narrow(wide.size(), '\0');
  std::ranges::transform(wide, narrow.begin(), &rzCharCode::getAsTChar);
  return narrow;
}
