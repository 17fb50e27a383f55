// SPDX-License-Identifier: Apache-2.0
//
// rzHistoStats: statistics of a histogram as rfPelHistogram makes it.
#pragma once

#include <vector>

#include "rz/export.h"
#include "rz/types.h"

class RZ_API rzHistoStats {
 public:
  /// `histogram` holds the count of each grey, none negative. The second argument has no effect.
  explicit rzHistoStats(const std::vector<rzLong>& histogram, bool = false);

  /// The smallest grey g such that at least half of all pels are g or darker; 0 without pels.
  rzLong median() const { return median_; }

 private:
  rzLong median_;
};
