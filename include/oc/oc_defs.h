// SPDX-License-Identifier: Apache-2.0
//
// rzOCDefs: the enumeration and the exceptions of characters, alphabets, key sets and lines.
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"
#include "rz/types.h"

class RZ_API rzOCDefs {
 public:
  /// How a mark differs from its background.
  enum Polarity : rzLong {
    eDarkOnLight = 1,
    eLightOnDark = 2,
    ePolarityUnknown = 4,
  };

  class Errors;
  class BadParams;
  class BadImage;
  class NotImplemented;
  class SameKey;
  class BadKey;
  class BadIndex;
  class NotCompiled;
  class RectNotSpecified;
  class MetricNotSpecified;
  class ThresholdAndInvertNotSpecified;
  class IntegerOverflow;
  class UnrepresentableKey;
  class BadFileFormat;
};

/// Base of the family.
class RZ_API rzOCDefs::Errors : public rzExceptionWithString {
 public:
  Errors(const Errors&) = default;
  Errors& operator=(const Errors&) = default;
  ~Errors() override = default;

 protected:
  explicit Errors(const std::string& message) : rzExceptionWithString(message) {}
  explicit Errors(const char* message) : rzExceptionWithString(message) {}
  void dispatchSerialize(rzArchive& archive) override;
  void serialize_(rzArchive& archive, unsigned char version);
};

/// A parameter is outside its range (0x10005E00).
class RZ_API rzOCDefs::BadParams : public Errors {
 public:
  explicit BadParams(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(BadParams)
};

/// An image or mask cannot be used (0x10005E01).
class RZ_API rzOCDefs::BadImage : public Errors {
 public:
  explicit BadImage(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(BadImage)
};

/// The operation is not available for these arguments (0x10005E02).
class RZ_API rzOCDefs::NotImplemented : public Errors {
 public:
  explicit NotImplemented(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(NotImplemented)
};

/// A key occurs twice where keys must differ (0x10005E03).
class RZ_API rzOCDefs::SameKey : public Errors {
 public:
  explicit SameKey(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(SameKey)
};

/// A key names no character (0x10005E04).
class RZ_API rzOCDefs::BadKey : public Errors {
 public:
  explicit BadKey(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(BadKey)
};

/// An index is outside its range (0x10005E05).
class RZ_API rzOCDefs::BadIndex : public Errors {
 public:
  explicit BadIndex(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(BadIndex)
};

/// The alphabet has to be compiled first (0x10005E06).
class RZ_API rzOCDefs::NotCompiled : public Errors {
 public:
  explicit NotCompiled(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(NotCompiled)
};

/// A rectangle was asked for that has not been set (0x10005E09).
class RZ_API rzOCDefs::RectNotSpecified : public Errors {
 public:
  explicit RectNotSpecified(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(RectNotSpecified)
};

/// A metric was asked for that has not been set (0x10005E0A).
class RZ_API rzOCDefs::MetricNotSpecified : public Errors {
 public:
  explicit MetricNotSpecified(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(MetricNotSpecified)
};

/// The binarized image was asked for without threshold and inversion (0x10005E0B).
class RZ_API rzOCDefs::ThresholdAndInvertNotSpecified : public Errors {
 public:
  explicit ThresholdAndInvertNotSpecified(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(ThresholdAndInvertNotSpecified)
};

/// A value does not fit into its fixed point or integer form (0x10005E0D).
class RZ_API rzOCDefs::IntegerOverflow : public Errors {
 public:
  explicit IntegerOverflow(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(IntegerOverflow)
};

/// A key has no form in the type asked for (0x10005E0E).
class RZ_API rzOCDefs::UnrepresentableKey : public Errors {
 public:
  explicit UnrepresentableKey(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(UnrepresentableKey)
};

/// A file is not of the format expected (0x10005E0F).
class RZ_API rzOCDefs::BadFileFormat : public Errors {
 public:
  explicit BadFileFormat(const std::string& message = {}) : Errors(message) {}
  RZ_EXCEPTION_LEAF(BadFileFormat)
};
