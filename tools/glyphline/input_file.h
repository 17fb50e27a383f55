// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace glyphline {

/// How an input is called in messages: "FILE: OPTION", or the file alone when it has no option.
std::string inputName(const std::string& path, const std::string& option);

/// All bytes of the file, or of standard input for "-". Throws Failure that names the input and the
/// system's reason.
std::string readInput(const std::string& path, const std::string& option);

}  // namespace glyphline
