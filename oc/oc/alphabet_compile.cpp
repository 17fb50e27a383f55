// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <memory>
#include <vector>

#include "oc/alphabet.h"
#include "oc/alphabet_report.h"
#include "oc/oc/compile_row.h"
#include "rz/attention.h"
#include "rz/diag.h"
#include "rz/thread.h"

rzLong rf_NumCompileThreads() { return 1; }

void rf_CompileRows(const rz_CompileRowArgs& args, rzLong batchWidth) {
  const rzLong numRows = rf_Count(args.characters->size());
  for (rzLong start = 0; start < numRows; start += batchWidth) {
    const auto width = static_cast<std::size_t>(std::min(numRows - start, batchWidth));
    std::vector<rz_CompileRowArgs> rows(width, args);  // outlives the threads
    std::vector<rzThreadID> threads(width);
    rzLong row = start;
    for (rz_CompileRowArgs& rowArgs : rows) rowArgs.row = row++;
    for (std::size_t i = 0; i < width; ++i) {
      threads[i] = rfCreateThreadKit(rf_CompileRow, &rows[i], -1, -1);
    }
    for (rzThreadID& thread : threads) rfWaitForThreadTermination(thread);
    rzAttention::check();
  }
}

void rzOCAlphabet::compile(rzDiagObject* diagObject, rzULong diagFlags) {
  const auto records = [&](rzDiagDefs::What what) {
    return diagObject != nullptr && rzDiagObject::shouldRecord(diagFlags, what);
  };
  if (records(rzDiagDefs::eInputs)) {
    rf_AddAlphabet(diagObject, this, "Alphabet Compilation Input", true);
  }
  if (!compiled_) {
    mutating();
    const rzLong side = std::max<rzLong>(1, numChars());
    confusionMatrix_ = std::make_unique<rzNMMatrix>(side, side);
    characterOffsets_.resize(characters_.size());
    for (auto& row : characterOffsets_) row.resize(characters_.size());
    rf_CompileRows({&characters_, -1, confusionMatrix_.get(), &characterOffsets_},
                   rf_NumCompileThreads());
    compiled_ = true;
  }
  if (records(rzDiagDefs::eDetails)) {
    diagObject->newDiagRecord()->recordAnnotation("Alphabet Compilation Details");
  }
  if (records(rzDiagDefs::eResults)) {
    rf_AddAlphabet(diagObject, this, "Alphabet Compilation Results", false);
  }
}

void rzOCAlphabet::compileRow_(rzLong row) {
  rz_CompileRowArgs args{&characters_, row, confusionMatrix_.get(), &characterOffsets_};
  rf_CompileRow(&args);
}
