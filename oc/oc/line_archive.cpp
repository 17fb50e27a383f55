// SPDX-License-Identifier: Apache-2.0
//
// Lines and arrangements in archives.
#include <algorithm>
#include <typeinfo>

#include "oc/line.h"
#include "oc/line_arrangement.h"
#include "rz/archive.h"

namespace {

// A key set of version 0 without keys: version byte, empty vector of keys, one index.
constexpr std::size_t kSmallestKeySet = 1 + 5 + sizeof(rzLong);
constexpr std::size_t kRigidArchiveSize = 3 * sizeof(double);

void serializeRadians(rzArchive& archive, std::vector<rzRadian>& angles) {
  rf_SerializeVector(
      archive, angles,
      [](rzArchive& a, rzRadian& angle) {
        double radians = angle.toDouble();
        a || radians;
        angle = rzRadian(radians);
      },
      sizeof(double));
}

void serializeDoubles(rzArchive& archive, std::vector<double>& values) {
  rf_SerializeVector(archive, values, sizeof(double));
}

void requireLoaded(bool condition, const char* text) {
  if (!condition) throw rzArchive::BadFormat(text);
}

}  // namespace

const rz_Instantiator rzOCLine::sExemplar(typeid(rzOCLine), &rzOCLine::make);

rzPersistent* rzOCLine::make() { return new rzOCLine; }

RZ_DEFINE_DISPATCH_SERIALIZE(rzOCLine)

void rzOCLine::serialize_(rzArchive& archive, unsigned char version) {
  if (version != 0) throw rzArchive::UnknownVersion("rzOCLine", 0);
  rzPersistent::dispatchSerialize(archive);
  rzOCLine fields(*this);
  rf_SerializeVector(archive, fields.keySetSequence_, kSmallestKeySet);
  rf_SerializeHandle(archive, fields.alphabet_);
  rf_SerializeVector(archive, fields.charPoses_, kRigidArchiveSize);
  serializeDoubles(archive, fields.charScales_);
  serializeDoubles(archive, fields.translationUncertainties_);
  serializeRadians(archive, fields.rotationUncertainties_);
  serializeDoubles(archive, fields.scaleUncertainties_);
  archive || fields.name_;
  if (archive.isStoring()) return;
  fields.checkLoaded_();
  *this = fields;
}

void rzOCLine::checkLoaded_() const {
  const std::size_t n = keySetSequence_.size();
  requireLoaded(!alphabet_.isNull(), "Line without an alphabet");
  requireLoaded(charPoses_.size() == n && charScales_.size() == n &&
                    translationUncertainties_.size() == n && rotationUncertainties_.size() == n &&
                    scaleUncertainties_.size() == n,
                "Line with vectors of unequal length");
}

const rz_Instantiator rzOCLineArrangement::sExemplar(typeid(rzOCLineArrangement),
                                                     &rzOCLineArrangement::make);

rzPersistent* rzOCLineArrangement::make() { return new rzOCLineArrangement; }

RZ_DEFINE_DISPATCH_SERIALIZE(rzOCLineArrangement)

void rzOCLineArrangement::serialize_(rzArchive& archive, unsigned char version) {
  if (version != 0) throw rzArchive::UnknownVersion("rzOCLineArrangement", 0);
  rzPersistent::dispatchSerialize(archive);
  rzOCLineArrangement fields(*this);
  rf_SerializeHandles(archive, fields.lines_);
  rf_SerializeVector(archive, fields.linePoses_, kRigidArchiveSize);
  serializeDoubles(archive, fields.translationUncertainties_);
  serializeRadians(archive, fields.rotationUncertainties_);
  archive || fields.name_;
  if (archive.isStoring()) return;
  fields.checkLoaded_();
  *this = fields;
}

void rzOCLineArrangement::checkLoaded_() const {
  const std::size_t n = lines_.size();
  requireLoaded(
      std::none_of(lines_.begin(), lines_.end(), [](const auto& line) { return line.isNull(); }),
      "Arrangement with a null line");
  requireLoaded(linePoses_.size() == n && translationUncertainties_.size() == n &&
                    rotationUncertainties_.size() == n,
                "Arrangement with vectors of unequal length");
}
