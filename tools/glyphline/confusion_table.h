// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "oc/oc.h"

namespace glyphline {

/// How far each character, a row, can pass for each other one, a column, 0 to 1, in the alphabet's
/// order; empty when the alphabet is not compiled.
std::vector<std::vector<double>> confusionTable(const rzOCAlphabet& alphabet);

/// The table in percent, as lines of text that fit a terminal: a wide alphabet's columns come in
/// several blocks. Empty when the alphabet is not compiled.
std::string confusionText(const rzOCAlphabet& alphabet);

/// The name as it is printed: a space has a sign of its own.
std::string shownName(const std::string& name);

}  // namespace glyphline
