// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace glyphline {

/// Writes the file whole or not at all: under a temporary name beside it, then renamed. Throws
/// Failure naming the file.
void writeWhole(const std::string& path, const std::string& content);

}  // namespace glyphline
