// SPDX-License-Identifier: Apache-2.0
//
// Alphabets in archives. Version 1 keeps the tables of the compilation; version 0, which is only
// read, did not, so an alphabet that was compiled is compiled again.
#include <algorithm>
#include <typeinfo>

#include "oc/alphabet.h"
#include "rz/archive.h"
#include "rz/assert.h"

namespace {

constexpr unsigned char kAlphabetVersion = 1;

constexpr std::size_t kXformArchiveSize = 6 * sizeof(double);
constexpr std::size_t kEmptyVectorArchiveSize = 1 + sizeof(rzULong);  // version byte and count

void serializeOffsets(rzArchive& archive, std::vector<std::vector<rzXform<2>>>& offsets) {
  rf_SerializeVector(
      archive, offsets,
      [](rzArchive& a, std::vector<rzXform<2>>& row) {
        rf_SerializeVector(a, row, kXformArchiveSize);
      },
      kEmptyVectorArchiveSize);
}

}  // namespace

const rz_Instantiator rzOCAlphabet::sExemplar(typeid(rzOCAlphabet), &rzOCAlphabet::make);

rzPersistent* rzOCAlphabet::make() { return new rzOCAlphabet; }

void rzOCAlphabet::dispatchSerialize(rzArchive& archive) {
  if (haveVisited(archive, this, sizeof(*this))) return;
  unsigned char version = kAlphabetVersion;
  archive || version;
  serialize_(archive, version);
  setVisited(archive, this, sizeof(*this));
}

void rzOCAlphabet::serialize_(rzArchive& archive, unsigned char version) {
  if (version > kAlphabetVersion) throw rzArchive::UnknownVersion("rzOCAlphabet", 0);
  rstd_assert_(archive.isLoading() || version == kAlphabetVersion, __LINE__);
  rzPersistent::dispatchSerialize(archive);
  rzOCAlphabet fields(*this);
  bool wasCompiled = compiled_;
  archive || fields.name_;
  archive || fields.confusionThreshold_;
  rf_SerializeHandles(archive, fields.characters_);
  archive || wasCompiled;
  fields.compiled_ = version >= 1 && wasCompiled;
  if (version >= 1) {
    archive || *fields.confusionMatrix_;
    serializeOffsets(archive, fields.characterOffsets_);
  }
  if (archive.isStoring()) return;
  fields.checkLoaded_();
  *this = fields;
  if (version == 0 && wasCompiled) compile(nullptr, 0);
}

// Tables of another size than the alphabet would be read out of their range later.
void rzOCAlphabet::checkLoaded_() const {
  for (const auto& character : characters_) {
    if (character.isNull()) throw rzArchive::BadFormat("Alphabet with a null character");
  }
  if (!compiled_) return;
  const std::size_t n = characters_.size();
  const rzLong side = std::max<rzLong>(1, rf_Count(n));
  const bool fits = confusionMatrix_->numRows() == side && confusionMatrix_->numColumns() == side &&
                    characterOffsets_.size() == n &&
                    std::all_of(characterOffsets_.begin(), characterOffsets_.end(),
                                [n](const auto& row) { return row.size() == n; });
  if (!fits) throw rzArchive::BadFormat("Compiled alphabet with tables of another size");
}
