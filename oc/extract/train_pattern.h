// SPDX-License-Identifier: Apache-2.0
//
// From one character to its pattern, if it can have one.
#pragma once

#include <memory>
#include <utility>

#include "oc/extract_model.h"
#include "rz/cx_align.h"
#include "rz/pel_buffer.h"

struct TrainedPattern {
  std::unique_ptr<rzCXAlignPattern> pattern;  // null exactly if there is an obstacle
  double spread = 0.0;                        // edgelets outside the dominant direction
  rz_OCExtractObstacle obstacle = eNoObstacle;
};

/// The character's image, which is bound, narrowed to its area.
rzPelBuffer_const<unsigned char> characterWindow(const rzOCModel& character);

/// The scale at which a character window is worked: small ones are doubled.
double workingScale(const rzPelBuffer_const<unsigned char>& window);

/// `grainLimits` as in rz_OCExtractModelParams. Limits that fail are replaced once by 1 and 1.
TrainedPattern trainPattern(const rzOCModel& character,
                            const std::pair<double, double>& grainLimits);
