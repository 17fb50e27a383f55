// SPDX-License-Identifier: Apache-2.0
//
// The steps of rfScoreBlankness.
#pragma once

#include <cstdint>

#include "oc/image_helpers.h"
#include "platform/vision/correlation/corr_core.h"

/// How strongly a region resembles itself at small shifts. Pels count where `care`, which has the
/// region's window, is 128 or more; an unbound one leaves none out.
double rf_AutoCorrelationScore(const rzPelBuffer_const<unsigned char>& region,
                               const rzPelBuffer_const<unsigned char>& care);

/// The score of the model at each place inside `image`; an unbound buffer when it does not fit.
void rf_CorrelateScores(const rzPelBuffer_const<unsigned char>& image,
                        const rz_CorrelationModel<unsigned char>& model,
                        rzPelBuffer<std::int16_t>& scores, rz_CorrelationDefs::ScoreMode mode);
