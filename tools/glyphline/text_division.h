// SPDX-License-Identifier: Apache-2.0
//
// A line of marks against a line of text.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "mark_stacks.h"

namespace glyphline {

/// A character of the text that leaves ink.
struct Expected {
  char32_t character = 0;
  std::size_t place = 0;  // in the text
};

using Row = std::vector<Expected>;

/// The likeliest way to divide the blobs among the characters: where each one's blobs end. Nothing
/// if there is none in which each character can look like that.
std::optional<std::vector<std::size_t>> division(const Print& print, const Row& row);

}  // namespace glyphline
