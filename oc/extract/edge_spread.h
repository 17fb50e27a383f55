// SPDX-License-Identifier: Apache-2.0
//
// How well the edges of an image pin it down. An outline whose edges run mostly in one direction
// slides along itself, and an outline of few edges fits anywhere; neither can be located reliably.
#pragma once

#include <vector>

#include "rz/pel_buffer.h"
#include "rz/types.h"

class rzDiagObject;

enum class EdgeVerdict { kUsable, kTooFew, kTooParallel };

struct EdgeSpread {
  EdgeVerdict verdict = EdgeVerdict::kTooFew;
  double spread = 0.0;  // edgelets outside the dominant direction; 0 unless usable
};

/// Judges edgelets by their directions, 256 steps to the turn.
EdgeSpread judgeDirections(const std::vector<unsigned char>& directions);

/// Judges the edgelets of an image.
EdgeSpread judgeEdges(const rzPelBuffer_const<unsigned char>& image);

/// Whether the image has too few edges, or too many of them in one direction. Otherwise `*spread`
/// tells how many lie outside the dominant direction; it is 0 if the answer is true.
bool rf_HasPoorEdgeSpread(const rzPelBuffer_const<unsigned char>& image, rzDiagObject* diag,
                          rzULong flags, double* spread);
