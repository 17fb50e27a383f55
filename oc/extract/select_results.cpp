// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/select_results.h"

#include <algorithm>
#include <iterator>

#include "rz/cx_align.h"

void rf_SelectResults(const rzCXAlignResultSet& resultSet, std::vector<rzCXAlignResult>& list) {
  constexpr double kLeastCoverage = 0.0;
  const auto& all = resultSet.results();
  list.clear();
  std::copy_if(all.begin(), all.end(), std::back_inserter(list), [](const rzCXAlignResult& result) {
    return result.accepted() && result.coverage() >= kLeastCoverage;
  });
  if (list.empty()) list = all;
}
