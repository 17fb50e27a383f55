// SPDX-License-Identifier: Apache-2.0
#include "oc/char_key.h"

#include "oc/errors/source_names.h"
#include "rz/text.h"

namespace {

constexpr unsigned char kCharKeyVersion = 1;

bool fieldsMatch(rzLong a, rzLong b) {
  return a == b || a == rzOCCharKey::kUnspecified || b == rzOCCharKey::kUnspecified;
}

// Orders `last` behind every other value.
template <class T>
bool lessButLast(T a, T b, T last) {
  if (a == b || a == last) return false;
  return b == last || a < b;
}

bool fieldLess(rzLong a, rzLong b) { return lessButLast(a, b, rzOCCharKey::kUnspecified); }

}  // namespace

bool rzOCCharKey::isMatch(const rzOCCharKey& other) const {
  if (!isCharacterCodeKnown() || !other.isCharacterCodeKnown()) return false;
  return equalCharacterCode(other) && fieldsMatch(instance_, other.instance_) &&
         fieldsMatch(variant_, other.variant_) && fieldsMatch(fontID_, other.fontID_);
}

bool rzOCCharKey::operator<(const rzOCCharKey& other) const {
  if (!equalCharacterCode(other)) {
    return lessButLast(characterCode_, other.characterCode_, kUnknownCode);
  }
  if (fontID_ != other.fontID_) return fieldLess(fontID_, other.fontID_);
  if (instance_ != other.instance_) return fieldLess(instance_, other.instance_);
  return fieldLess(variant_, other.variant_);
}

void rzOCCharKey::setKey(const roc_charKey& record) {
  *this = rzOCCharKey(record.characterCode, record.instance, record.variant, record.fontID);
}

void rzOCCharKey::getKey(roc_charKey& record) const {
  record = {characterCode_, instance_, variant_, fontID_};
}

rzArchive& operator||(rzArchive& archive, rzOCCharKey& key) {
  unsigned char version = kCharKeyVersion;
  archive || version;
  if (version > kCharKeyVersion) throw rzArchive::UnknownVersion(kSourceOCChar, __LINE__);
  rzULong code = key.characterCode();
  rzLong instance = key.instance();
  rzLong variant = version >= 1 ? key.variant() : rzOCCharKey::kUnspecified;
  rzLong fontID = key.fontID();
  archive || code || instance || fontID;
  if (version >= 1) archive || variant;
  if (archive.isLoading()) key = rzOCCharKey(code, instance, variant, fontID);
  return archive;
}

std::string rf_OCCharKeyText(const rzOCCharKey& key) {
  return "Character code : " + rfStr(key.characterCode()) +
         "\nInstance : " + rfStr(key.instance()) + "\nVariant : " + rfStr(key.variant()) +
         "\nFontID : " + rfStr(key.fontID()) + "\n";
}
