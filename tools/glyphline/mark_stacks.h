// SPDX-License-Identifier: Apache-2.0
//
// Marks without regard to the text: pieces of ink that stand above each other.
#pragma once

#include <cstddef>
#include <vector>

#include "blob_lines.h"

namespace glyphline {

/// Blobs that stand above each other.
struct Stack {
  std::size_t first = 0;  // in the row of blobs
  std::size_t count = 0;
  rzRect level;
  double lineHeight = 0.0;  // of its line's print, by the taller marks
};

/// The blobs of a printed line, or of all lines one after the other, and the marks that they make.
struct Print {
  BlobLine blobs;
  std::vector<std::size_t> lineOf;   // of each blob
  std::vector<std::size_t> stackOf;  // of each blob
  std::vector<Stack> stacks;
};

/// Adds the blobs of the line with this number.
void append(Print& print, BlobLine line, std::size_t number);

/// A mark alone that is no larger than `limit` is dirt.
void dropLoneSpecks(BlobLine& line, double limit);

}  // namespace glyphline
