// SPDX-License-Identifier: Apache-2.0
//
// What the constructors of lines and arrangements share.
#pragma once

#include <cstddef>
#include <vector>

#include "oc/oc_defs.h"
#include "rz/rigid.h"

// Throws rzOCDefs::BadParams with the text unless the condition holds. Ranges are asked as "value
// is at least 0", so that NaN fails.
inline void rf_RequireParams(bool condition, const char* text) {
  if (!condition) throw rzOCDefs::BadParams(text);
}

// Identity, step, step * step, and so on: `count` poses.
std::vector<rz2Rigid> rf_RepeatedSteps(const rz2Rigid& step, std::size_t count);
