// SPDX-License-Identifier: Apache-2.0
//
// Key sets in archives. Version 0 had a single current index, version 1 no overrides.
#include "oc/key_set.h"
#include "rz/archive.h"

namespace {

constexpr unsigned char kKeySetVersion = 2;
constexpr std::size_t kEmptyVectorArchiveSize = 1 + sizeof(rzULong);  // version byte and count

void serializeKeys(rzArchive& archive, std::vector<rzLong>& keys) {
  rf_SerializeVector(archive, keys, sizeof(rzLong));
}

}  // namespace

rzArchive& operator||(rzArchive& archive, rzOCKeySet& keySet) {
  unsigned char version = kKeySetVersion;
  archive || version;
  if (version > kKeySetVersion) throw rzArchive::UnknownVersion("rzOCKeySet", 0);
  rzOCKeySet fields;
  if (archive.isStoring()) fields = keySet;
  serializeKeys(archive, fields.keys_);
  if (version >= 1) {
    serializeKeys(archive, fields.currentKeyIndices_);
  } else {
    archive >> fields.currentKeyIndices_.front();
  }
  if (version >= 2) {
    serializeKeys(archive, fields.overrideKeys_);
    rf_SerializeVector(archive, fields.overrideLists_, serializeKeys, kEmptyVectorArchiveSize);
  }
  if (archive.isStoring()) return archive;
  fields.checkLoaded_();
  keySet = fields;
  return archive;
}
