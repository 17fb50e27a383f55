// SPDX-License-Identifier: Apache-2.0
//
// rzOCCharKey: the name of one character record (rzOCChar): which character code it shows, which
// instance and which variant of that code, in which font. A plain value of four numbers. Alphabets,
// key sets and lines name characters by a single number instead and do not use it.
//
// There are two notions of sameness. Equality and order take all four fields literally, so keys
// can be sorted and looked up. isMatch() takes a field that is not specified for a wild card, so a
// key can stand for many: (65, any, any, any) matches every A. It is symmetric, not transitive.
#pragma once

#include <string>

#include "rz/archive.h"
#include "rz/char_code.h"
#include "rz/charlib/char_record.h"
#include "rz/export.h"
#include "rz/types.h"

class RZ_API rzOCCharKey {
 public:
  /// Only these two values mean "unknown" and "not specified"; other negative numbers are
  /// ordinary ones.
  static constexpr rzULong kUnknownCode = rzCharCodeDefs::kUnknown;
  static constexpr rzLong kUnspecified = -1;

  explicit rzOCCharKey(rzULong characterCode = kUnknownCode, rzLong instance = kUnspecified,
                       rzLong variant = kUnspecified, rzLong fontID = kUnspecified)
      : characterCode_(characterCode), instance_(instance), variant_(variant), fontID_(fontID) {}

  /// Back to the default key: nothing known, nothing specified.
  void reset() { *this = rzOCCharKey(); }

  /// The code that rzCharCode understands.
  rzULong characterCode() const { return characterCode_; }
  void characterCode(rzULong code) { characterCode_ = code; }
  /// Tells apart several characters of one code.
  rzLong instance() const { return instance_; }
  void instance(rzLong instance) { instance_ = instance; }
  rzLong variant() const { return variant_; }
  void variant(rzLong variant) { variant_ = variant; }
  rzLong fontID() const { return fontID_; }
  void fontID(rzLong fontID) { fontID_ = fontID; }

  bool isCharacterCodeKnown() const { return characterCode_ != kUnknownCode; }
  bool isInstanceSpecified() const { return instance_ != kUnspecified; }
  bool isVariantSpecified() const { return variant_ != kUnspecified; }
  bool isFontIDSpecified() const { return fontID_ != kUnspecified; }

  /// Compare the codes literally: two unknown codes are equal.
  bool equalCharacterCode(const rzOCCharKey& other) const {
    return equalCharacterCode(other.characterCode_);
  }
  bool equalCharacterCode(rzULong code) const { return characterCode_ == code; }

  /// The codes are known and equal, and in each other field the two agree or one of them is not
  /// specified. An unknown code matches nothing.
  bool isMatch(const rzOCCharKey& other) const;

  /// All four fields, literally.
  bool operator==(const rzOCCharKey& other) const = default;

  /// A strict weak order: by code, then font, instance, variant. The unknown code and fields that
  /// are not specified come after all others.
  bool operator<(const rzOCCharKey& other) const;

  /// The code as a character; rzCharCodeDefs::NotRepresentable when it has no such form.
  explicit operator char() const { return rzCharCode::getAsChar(characterCode_); }
  explicit operator wchar_t() const { return rzCharCode::getAsWChar(characterCode_); }
  bool isRepresentableAsChar() const { return rzCharCode::isRepresentableAsChar(characterCode_); }
  bool isRepresentableAsWChar() const { return rzCharCode::isRepresentableAsWChar(characterCode_); }
  bool isRepresentableAsTChar() const { return rzCharCode::isRepresentableAsTChar(characterCode_); }
  bool isSpace() const { return rzCharCode::isSpace(characterCode_); }

  /// Exchange the four numbers with the C-level record.
  void setKey(const roc_charKey& record);
  void getKey(roc_charKey& record) const;

 private:
  rzULong characterCode_;
  rzLong instance_;
  rzLong variant_;
  rzLong fontID_;
};

/// Archive form: version byte 1, code, instance, font, variant. A version 0 form has no variant.
RZ_API rzArchive& operator||(rzArchive& archive, rzOCCharKey& key);

/// Four lines for people, one for each field.
RZ_API std::string rf_OCCharKeyText(const rzOCCharKey& key);
