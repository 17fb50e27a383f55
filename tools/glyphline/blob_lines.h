// SPDX-License-Identifier: Apache-2.0
//
// From pieces of ink to printed lines.
#pragma once

#include <vector>

#include "ink_pieces.h"
#include "rz/rect.h"

namespace glyphline {

/// Pieces that belong together for sure: one piece of solid print, the dots of dot print.
struct Blob {
  rzPelRect box;            // pels of the picture
  rzRect level;             // the box in a frame in which the lines run level
  std::vector<int> pieces;  // indices
};

using BlobLine = std::vector<Blob>;

/// Joins pieces whose boxes are at most `reach` pels apart; with a reach of 0 each piece is a blob.
std::vector<Blob> joinedPieces(const std::vector<InkPiece>& pieces, rzLong reach);

/// The height of the print: the median height of the largest blobs, as many as the text has
/// characters.
double printHeight(const std::vector<Blob>& blobs, std::size_t numChars);

/// The lines from the top down, each from left to right. Lines are found among the tall blobs;
/// small ones go to the nearest line. What is far from any line is left out as dirt.
std::vector<BlobLine> linesOf(std::vector<Blob> blobs, double height);

}  // namespace glyphline
