// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace glyphline {

/// Throws Failure where a device, a pipe or a folder has this name: a rename would do away with it.
void requireReplaceable(const std::string& path);

/// Writes the file whole or not at all: under a temporary name beside it, then renamed. Throws
/// Failure naming the file.
void writeWhole(const std::string& path, const std::string& content);

}  // namespace glyphline
