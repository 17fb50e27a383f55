// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange_results.h"

#include "oc/errors/source_names.h"

namespace {

constexpr signed char kResultsVersion = 1;

bool areEqual(const rzPtrHandle_const<rzOCLineArrangement>& a,
              const rzPtrHandle_const<rzOCLineArrangement>& b) {
  if (a.isNull() || b.isNull()) return a.isNull() && b.isNull();
  return *a == *b;
}

void serializeStatus(rzArchive& archive, rzOCArrangeDefs::CharStatus& status) {
  rf_SerializeEnum(archive, status);
}

// Two figures that the first version had at its end.
void skipOldFigures(rzArchive& archive) {
  double figure = 0.0;
  archive || figure || figure;
}

}  // namespace

bool rzOCArrangeResults::operator==(const rzOCArrangeResults& other) const {
  return isFound_ == other.isFound_ && isSearchTruncated_ == other.isSearchTruncated_ &&
         areEqual(arrangement_, other.arrangement_) &&
         clientFromArrangementXform_ == other.clientFromArrangementXform_ &&
         statusFlags_ == other.statusFlags_ && scores_ == other.scores_;
}

rzArchive& operator||(rzArchive& archive, rzOCArrangeResults& results) {
  signed char version = kResultsVersion;
  archive || version;
  if (version > kResultsVersion) throw rzArchive::UnknownVersion(kSourceArrange, __LINE__);
  rzOCArrangeResults fields;
  if (archive.isStoring()) fields = results;
  archive || fields.isFound_ || fields.isSearchTruncated_;
  rf_SerializeHandle(archive, fields.arrangement_);
  archive || fields.clientFromArrangementXform_;
  rf_SerializeVector(archive, fields.statusFlags_, serializeStatus, sizeof(rzULong));
  rf_SerializeVector(archive, fields.scores_, sizeof(double));
  if (version == 0) skipOldFigures(archive);
  if (archive.isLoading()) results = fields;
  return archive;
}
