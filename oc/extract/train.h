// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "rz/types.h"

/// The order in which models are searched, each given by its index and edge spread: the greatest
/// spread first, among equals the lower index first.
bool rf_OrderModels(const std::pair<rzLong, double>& a, const std::pair<rzLong, double>& b);
