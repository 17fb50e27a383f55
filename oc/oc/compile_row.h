// SPDX-License-Identifier: Apache-2.0
//
// The rows of a compilation: how far one character can pass for each of the others. Rows do not
// depend on one another and may be filled on threads of their own.
#pragma once

#include <vector>

#include "oc/model.h"
#include "rz/nm_matrix.h"
#include "rz/ptr_handle.h"
#include "rz/types.h"
#include "rz/xform.h"

/// What a row worker reads, and the tables of which it writes one row. The tables have a row and a
/// column for each character.
struct rz_CompileRowArgs {
  const std::vector<rzPtrHandle_const<rzOCModel>>* characters;
  rzLong row;  // -1 where a row has yet to be chosen
  rzNMMatrix* confusionMatrix;
  std::vector<std::vector<rzXform<2>>>* characterOffsets;
};

/// Fills one row; the entry of a thread, whose argument is the address of a rz_CompileRowArgs. What
/// it throws leaves the entries that it has not reached at 0 and at the identity.
void rf_CompileRow(void* args);

/// Rows that are filled at once.
rzLong rf_NumCompileThreads();

/// Fills all rows, `batchWidth` at once, each on a thread of its own. Looks for a stop after each
/// batch.
void rf_CompileRows(const rz_CompileRowArgs& args, rzLong batchWidth);
