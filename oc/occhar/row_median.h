// SPDX-License-Identifier: Apache-2.0
//
// The median filter that smooths a row of background.
#pragma once

#include <span>

/// Replaces each value by the median of those up to a quarter of the row away on either side; of an
/// even number of values the upper one of the middle two. Rows of fewer than four values stay.
void rf_medianFilterRow_(std::span<unsigned char> pels);
