// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "rz/types.h"

/// Row alignment in bytes of every working buffer.
inline constexpr rzLong kWorkingAlign = 32;
