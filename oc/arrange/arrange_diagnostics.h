// SPDX-License-Identifier: Apache-2.0
//
// The arranger's account of a call for a reader: what it was given, how the cost of the chosen
// arrangement came about, and what it found. Nothing reads it back. Records nest from the level at
// which `diag` stands, and the level stands there again afterwards.
#pragma once

#include <vector>

#include "oc/alphabet.h"
#include "oc/arrange/arrange_records.h"
#include "oc/arrange_params.h"
#include "oc/arrange_results.h"
#include "oc/line.h"
#include "rz/diag.h"
#include "rz/graphics.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"

/// "OC Arranger: Input", and below it the mask, if it is bound, and the alphabet.
void rf_RecordArrangeInputs(const rzPelBuffer_const<unsigned char>& image,
                            const rzPelBuffer_const<unsigned char>& mask,
                            const rzOCAlphabet& alphabet, const std::vector<rzLong>& targetKeys,
                            const rzOCArrangeParams& params, rzDiagObject* diag);

/// "Build arrangement", one level down: the errors of every position, line by line, and the cost
/// that they make. `cost` is that of the final evaluation of `path`, which has to be a valid one;
/// the weights of `params` are in it already.
void rf_RecordArrangeCosts(const rzPelBuffer_const<unsigned char>& image,
                           const rzOCAlphabet& alphabet, const std::vector<rzLong>& targetKeys,
                           const std::vector<rz_CharData>& charData,
                           const std::vector<rz_Pose>& positionPoses,
                           const std::vector<double>& scores,
                           const std::vector<rzOCArrangeDefs::CharStatus>& statuses,
                           const rzOCArrangeParams& params, const rz_ArrangePath& path,
                           const rz_ArrangeCost& cost, rzDiagObject* diag);

/// "OC Arranger: Output", and below it a record for each line. Does nothing when `diag` is null or
/// `flags` do not ask for results.
void rf_RecordArrangeOutputs(const rzPelBuffer_const<unsigned char>& image,
                             const std::vector<rzLong>& targetKeys, const rzOCAlphabet& alphabet,
                             const rzOCArrangeResults& results, rzDiagObject* diag, rzULong flags);

/// Draws one line into `list`, behind what is there, and adds that and a text to the newest record.
/// Does nothing when `line` or `diag` is null.
void rf_RecordLineDetails(const rzPtrHandle_const<rzOCLine>& line, const rz2Rigid& linePose,
                          const std::vector<rzLong>& targetKeys,
                          const std::vector<rzOCArrangeDefs::CharStatus>& statuses,
                          const rzXform<2>& clientFromArrangement, rzDiagObject* diag,
                          rzGraphicList& list);

/// The first place of the key, or -1.
rzLong rf_FindKeyIndex(const std::vector<rzLong>& keys, rzLong key);
