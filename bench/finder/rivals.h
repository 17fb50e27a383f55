// SPDX-License-Identifier: Apache-2.0
//
// Other ways to find a character, made of what OpenCV offers: yardsticks for the pattern finder.
#pragma once

#include <memory>

#include "tests/support/print/trials.h"

namespace rivals {

/// Where the centre of a character's ink box was found.
struct Hit {
  rzVector<2> centre;
  double degrees = 0.0;
  double scale = 1.0;
  double score = 0.0;
};

class Rival {
 public:
  virtual ~Rival() = default;
  virtual const char* title() const = 0;
  /// Prepares the turned and scaled templates of a glyph.
  virtual void train(const scene::Trained& glyph) = 0;
  /// The best instance in a picture. Score 0 when there is none.
  virtual Hit find(const rzPelBuffer_const<unsigned char>& picture) const = 0;
};

/// Normalised coefficients of correlation over templates turned by 4 degrees and scaled by 5 %, at
/// full size, with a refinement of the best pose.
std::unique_ptr<Rival> fullCorrelation();
/// The same from a quarter of the size on.
std::unique_ptr<Rival> pyramidCorrelation();
/// The gradient response matcher of the contributed modules, with the same templates.
std::unique_ptr<Rival> gradientResponses();

}  // namespace rivals
