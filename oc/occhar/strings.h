// SPDX-License-Identifier: Apache-2.0
//
// The two forms of the strings of a character record.
#pragma once

#include <string>

#include "rz/types.h"

/// Each byte as a signed char, sign-extended to 32 bits.
rzString32 widened(const std::string& narrow);

/// The characters as bytes; the empty string when one of them has no such form.
std::string narrowed(const rzString32& wide);
