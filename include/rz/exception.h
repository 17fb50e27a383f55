// SPDX-License-Identifier: Apache-2.0
//
// The exceptions of the library: every failure is an object derived from rzException. It has a
// number and a message, can be written to an archive and read back, and can be thrown again by its
// true type through a pointer to any of its bases.
//
// A concrete class ("leaf") is declared and defined in two lines:
//
//   class RZ_API rzMathError::Singular : public rzExceptionWithString {
//    public:
//     explicit Singular(const std::string& message = {}) : rzExceptionWithString(message) {}
//     RZ_EXCEPTION_LEAF(Singular)
//   };
//
//   RZ_DEFINE_EXCEPTION_LEAF(rzMathError::Singular, rzExceptionWithString, 0x10000110)
//
// the second in a source file that includes rz/archive.h. Numbers of the platform: 0x100001xx
// foundation, 0x100002xx geometry, 0x100003xx pels and sampling, 0x100004xx vision tools.
#pragma once

#include <exception>
#include <iosfwd>
#include <string>

#include "rz/export.h"
#include "rz/persistent.h"
#include "rz/types.h"

/// Base of all failures. Archive form: one version byte, 0.
class RZ_API rzException : public rzPersistent, public std::exception {
 public:
  rzException() = default;
  rzException(const rzException&) = default;
  rzException& operator=(const rzException&) = default;
  ~rzException() override;

 protected:
  void dispatchSerialize(rzArchive& archive) override;
  void serialize_(rzArchive& archive, unsigned char version);

 public:
  /// The number of the concrete class.
  virtual rzLong errorNumber() const = 0;

  /// Deletes this object, which must come from `new`, and throws a copy as its concrete class.
  [[noreturn]] virtual void suicideAndRethrow() = 0;

  /// Writes the message.
  virtual void message_(std::ostream& out) const = 0;

  /// The message.
  const char* what() const noexcept override = 0;
};

/// A failure with a message. Archive form: version byte 0, the level of rzException, the message.
class RZ_API rzExceptionWithString : public rzException {
 public:
  explicit rzExceptionWithString(const std::string& message = {});
  /// Null counts as the empty message.
  explicit rzExceptionWithString(const char* message);
  rzExceptionWithString(const rzExceptionWithString&) = default;
  rzExceptionWithString& operator=(const rzExceptionWithString&) = default;
  ~rzExceptionWithString() override;

 protected:
  void dispatchSerialize(rzArchive& archive) override;
  void serialize_(rzArchive& archive, unsigned char version);

 public:
  void message_(std::ostream& out) const override;
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

/// Declares what every concrete exception class has besides its constructors and fields.
#define RZ_EXCEPTION_LEAF(Leaf)                               \
 public:                                                      \
  Leaf(const Leaf&) = default;                                \
  Leaf& operator=(const Leaf&) = default;                     \
  ~Leaf() override = default;                                 \
                                                              \
 protected:                                                   \
  void dispatchSerialize(rzArchive& archive) override;        \
  void serialize_(rzArchive& archive, unsigned char version); \
                                                              \
 public:                                                      \
  rzLong errorNumber() const override;                        \
  [[noreturn]] void suicideAndRethrow() override;             \
  static const rz_Instantiator sExemplar;                     \
                                                              \
 private:                                                     \
  static rzPersistent* make();

/// Defines dispatchSerialize for a class that writes version 0.
#define RZ_DEFINE_DISPATCH_SERIALIZE(Class)                \
  void Class::dispatchSerialize(rzArchive& archive) {      \
    if (haveVisited(archive, this, sizeof(Class))) return; \
    unsigned char version = 0;                             \
    archive || version;                                    \
    serialize_(archive, version);                          \
    setVisited(archive, this, sizeof(Class));              \
  }

/// Defines both archive operations of a class without fields: version byte 0, then the level Next.
#define RZ_DEFINE_EMPTY_LEVEL(Class, Next)                            \
  RZ_DEFINE_DISPATCH_SERIALIZE(Class)                                 \
  void Class::serialize_(rzArchive& archive, unsigned char version) { \
    if (version != 0) throw rzArchive::UnknownVersion(#Class, 0);     \
    Next::dispatchSerialize(archive);                                 \
  }

/// Defines the number, the rethrow and the registration of a leaf.
#define RZ_DEFINE_EXCEPTION_IDENTITY(Leaf, number)    \
  rzLong Leaf::errorNumber() const { return number; } \
  void Leaf::suicideAndRethrow() {                    \
    const Leaf copy(*this);                           \
    delete this;                                      \
    throw Leaf(copy);                                 \
  }                                                   \
  rzPersistent* Leaf::make() { return new Leaf; }     \
  const rz_Instantiator Leaf::sExemplar(typeid(Leaf), &Leaf::make);

/// Defines all that RZ_EXCEPTION_LEAF declares, for a leaf without fields; Next is the next level
/// of its archive form.
#define RZ_DEFINE_EXCEPTION_LEAF(Leaf, Next, number) \
  RZ_DEFINE_EMPTY_LEVEL(Leaf, Next)                  \
  RZ_DEFINE_EXCEPTION_IDENTITY(Leaf, number)

/// The result of a failed call of a C-level library that no converter turned into an exception of
/// its own; the message holds the code in hexadecimal.
class RZ_API rzFailureCode : public rzExceptionWithString {
 public:
  explicit rzFailureCode(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(rzFailureCode)
};

/// Registers the function that turns the failure codes of one C-level library into exceptions. It
/// may return for a code that it does not know. One converter per id; a later one replaces it.
RZ_API void rfRegisterExceptionConverter(rzLong id, void (*converter)(rzLong code));

/// Returns when `code` is 0 or positive. Otherwise calls the converter registered for the id of
/// the code, which is (code & 0x7FFFFFFF) >> 5; throws rzFailureCode when there is none or it
/// returns.
RZ_API void rfThrowExceptionOnFailure(rzLong code);
