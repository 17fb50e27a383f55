// SPDX-License-Identifier: Apache-2.0
//
// Reducing a mask to its care region, for masks that may be written as well.
#pragma once

#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"

/// As rf_OCWindowMaskCareRegion (oc/padding.h).
rzPelRect windowMaskCareRegion(rzPelBuffer<unsigned char>& mask, unsigned char careThreshold,
                               bool& careFound);
