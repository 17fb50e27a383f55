// SPDX-License-Identifier: Apache-2.0
//
// Lists of keys, indices and names must not name one thing twice.
#pragma once

#include <algorithm>
#include <vector>

template <class T>
bool rf_HasDuplicates(std::vector<T> values) {
  std::sort(values.begin(), values.end());
  return std::adjacent_find(values.begin(), values.end()) != values.end();
}
