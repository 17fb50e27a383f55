// SPDX-License-Identifier: Apache-2.0
//
// rzOCArrangeDefs: the enumerations and exceptions of the arranger.
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"
#include "rz/types.h"

class RZ_API rzOCArrangeDefs {
 public:
  /// The shape of a line of characters.
  enum LineType : rzLong {
    eStraight = 0,  ///< Straight lines only.
    eCircular = 1,  ///< Circular lines only, from three positions on.
    eDontCare = 2,  ///< Whichever of the two fits better, for each line.
  };

  /// What orientation is expected of a character.
  enum OrientationMode : rzLong {
    eSpecified = 0,  ///< The one given as a parameter.
    eAverage = 1,    ///< The average of the line's matched characters.
  };

  /// What the orientation of a character is measured against.
  enum OrientationReference : rzLong {
    eAbsolute = 0,  ///< The client frame.
    eRelative = 1,  ///< The direction of the line at the character.
  };

  /// What became of a position.
  enum CharStatus : rzLong {
    eMatched = 0,   ///< A character was found there.
    eInferred = 1,  ///< Nothing found; the pose follows from matched neighbours on both sides.
    eUnknown = 2,   ///< Nothing found, and nothing can be said of the pose.
  };

  class Errors;
  class BadParams;
  class BadMask;

  /// Copies nothing.
  rzOCArrangeDefs& operator=(const rzOCArrangeDefs&);
};

/// Base of the arranger's failures. Its level in an archive skips the message: a loaded one is
/// empty.
class RZ_API rzOCArrangeDefs::Errors : public rzExceptionWithString {
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

/// A parameter is outside its range (0x10007400).
class RZ_API rzOCArrangeDefs::BadParams : public Errors {
 public:
  explicit BadParams(const char* message = nullptr) : Errors(message) {}
  RZ_EXCEPTION_LEAF(BadParams)
};

/// The mask does not fit the image (0x10007401).
class RZ_API rzOCArrangeDefs::BadMask : public Errors {
 public:
  explicit BadMask(const char* message = nullptr) : Errors(message) {}
  RZ_EXCEPTION_LEAF(BadMask)
};
