// SPDX-License-Identifier: Apache-2.0
//
// rfThresholdWGV: the grey level that best divides a picture into dark and light.
//
// The level is the one for which the grey values of the two groups scatter least about their own
// means, the within-group-variance criterion of N. Otsu, "A threshold selection method from
// gray-level histograms", IEEE Transactions on Systems, Man, and Cybernetics 9 (1), 1979, 62-66.
// Sums are exact, so the answer does not depend on the order of the pels or on their number. Cost:
// one pass over the pels.
#pragma once

#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"

class RZ_API rzThresholdResult {
 public:
  rzThresholdResult() = default;
  rzThresholdResult(rzLong threshold, double score) : threshold_(threshold), score_(score) {}

  /// Pels below are dark, pels of this grey or above are light; 0 to 255. Of several levels that
  /// divide equally well it is the middle one. The grey itself in a picture of one grey, 0 when no
  /// pel counts.
  rzLong threshold() const { return threshold_; }
  /// The share of the picture's variance that lies between the two groups: 1 for a picture of two
  /// greys, 0 for one of a single grey and when no pel counts.
  double score() const { return score_; }

 private:
  rzLong threshold_ = 0;
  double score_ = 0.0;
};

/// Looks at the pels of the image's window; with a bound mask at those of them, by pel number, for
/// which the mask is 128 or more. Throw rzPel::UnboundWindow for an unbound image.
RZ_API void rfThresholdWGV(const rzPelBuffer_const<unsigned char>& image,
                           rzThresholdResult& result);
RZ_API void rfThresholdWGV(const rzPelBuffer_const<unsigned char>& image,
                           const rzPelBuffer_const<unsigned char>& mask, rzThresholdResult& result);
