// SPDX-License-Identifier: Apache-2.0
#include "oc/char.h"
#include "oc/errors/source_names.h"

namespace {

constexpr unsigned char kCharVersion = 1;

}  // namespace

rzArchive& operator||(rzArchive& archive, rzOCChar& character) {
  unsigned char version = kCharVersion;
  archive || version;
  if (version != kCharVersion) throw rzArchive::UnknownVersion(kSourceOCChar, __LINE__);
  rzOCChar moved = character;
  archive || moved.key_;
  rf_SerializeEnum(archive, moved.polarity_);
  archive || moved.image_ || moved.mask_ || moved.normalizedImage_;
  archive || moved.binarizedCached_ || moved.binarizedImage_;
  archive || moved.hasThresholdAndInvert_ || moved.threshold_ || moved.invert_;
  rf_PersistenceHelper<rzLong>(archive, moved.imageArea_);
  archive || moved.metrics_;
  archive || moved.name32_ || moved.description32_ || moved.name_ || moved.description_;
  if (archive.isLoading()) character = moved;
  return archive;
}
