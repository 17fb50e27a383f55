// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "rz/types.h"

/// Whether `minSamples` of the scales lie within a factor of less than 1.08. If so, `out` becomes
/// the geometric mean of the ends of the tightest such run; otherwise it is left alone.
bool rf_FindScaleCluster(const std::vector<double>& samples, rzLong minSamples, double& out);
