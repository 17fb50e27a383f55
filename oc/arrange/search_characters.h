// SPDX-License-Identifier: Apache-2.0
//
// The arranger's first step on the image: the whole text is searched for, and the instances found
// become the candidates of each position.
#pragma once

#include <vector>

#include "oc/alphabet.h"
#include "oc/arrange/arrange_records.h"
#include "oc/arrange_params.h"
#include "oc/extract_result.h"
#include "rz/diag.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"

/// Fills `poses` and `scores`, best candidate first, and what `charData`, sized to the text, holds
/// of the found instances. Positions of one key get the same candidates. Adds the time of training
/// and searching to `searchMilliseconds`. False if the search for a character was cut short.
/// Throws rzTimeout::Expired when the work was stopped from outside.
bool rf_SearchCharacters(const rzPelBuffer_const<unsigned char>& image,
                         const rzPelBuffer_const<unsigned char>& mask,
                         const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                         const std::vector<rzLong>& keys, const rzOCArrangeParams& params,
                         rz_PoseTable& poses, rz_ScoreTable& scores,
                         std::vector<rz_CharData>& charData, double& searchMilliseconds,
                         rzDiagObject* diag, rzULong flags);

/// The part of it for one position.
void rf_TakeCandidates(const rz_OCExtractCharResult& found, std::vector<rz_Pose>& poses,
                       std::vector<double>& scores, rz_CharData& charData);
