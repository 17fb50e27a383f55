// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "oc/alphabet.h"

namespace glyphline {

/// The alphabet in the file. Throws Failure that names the file and the option that it came with,
/// if any.
rzOCAlphabet readAlphabet(const std::string& path, const std::string& option = {});

/// Writes the file whole or not at all. Throws Failure that names the file.
void writeAlphabet(const std::string& path, const rzOCAlphabet& alphabet);

/// The keys of a text. Throws Failure that names the option, the alphabet and the first character
/// that it lacks.
std::vector<rzLong> keysOf(const std::u32string& text, const rzOCAlphabet& alphabet,
                           const std::string& path, const std::string& option);

}  // namespace glyphline
