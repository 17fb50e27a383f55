// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "oc/alphabet.h"
#include "oc/arrange/arrange_records.h"

/// What the alphabet says of the character of each position; what the search finds out is left at
/// its defaults. The alphabet must have all the keys.
std::vector<rz_CharData> rf_CharDataOf(const rzOCAlphabet& alphabet,
                                       const std::vector<rzLong>& keys);
