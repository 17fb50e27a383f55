// SPDX-License-Identifier: Apache-2.0
//
// rzArchive: a sequence of bytes that objects are stored into or loaded from.
//
// One operator, `archive || value`, moves a value in the archive's direction, so a single sequence
// of statements serves both. `archive << value` and `archive >> value` insist on one direction.
//
//   std::vector<unsigned char> bytes;
//   {
//     auto out = rzArchive::storingTo(bytes);
//     out << count << name;
//   }
//   auto in = rzArchive::loadingFrom(bytes);
//   in >> count >> name;
//
// Bytes: little endian, two's complement, IEEE 754, no padding, no type tags. bool is one byte, 0
// or 1; std::string a 32-bit count and its bytes; rzString32 a count and four bytes for each
// character. Only types of the same width on every machine can be moved; others do not compile.
//
// Reading expects anything: what cannot be right is rzArchive::BadFormat, counts are checked
// against the bytes that are left before room is made, and nesting is limited. After an exception
// the archive is of no further use.
//
// An archive belongs to one thread. It refers to the bytes or the stream that it was made on.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <span>
#include <string>
#include <type_traits>
#include <typeindex>
#include <typeinfo>
#include <utility>
#include <vector>

#include "rz/exception.h"
#include "rz/export.h"
#include "rz/persistent.h"
#include "rz/ptr_handle.h"
#include "rz/types.h"

class RZ_API rzArchive {
 public:
  class UnknownVersion;
  class UnknownClass;
  class BadFormat;

  /// Objects nested deeper than this, by value or by pointer, are refused in both directions.
  static constexpr int kMaxNesting = 64;

  /// Appends to `bytes`.
  static rzArchive storingTo(std::vector<unsigned char>& bytes);
  /// Writes to the stream; throws rzFileError when that fails.
  static rzArchive storingTo(std::ostream& stream);
  /// Reads from `bytes`, which must stay as they are while the archive lives.
  static rzArchive loadingFrom(std::span<const unsigned char> bytes);
  static rzArchive loadingFrom(std::vector<unsigned char>&& bytes) = delete;
  /// Takes the rest of the stream; throws rzFileError when that fails.
  static rzArchive loadingFrom(std::istream& stream);

  rzArchive(const rzArchive&) = delete;
  rzArchive& operator=(const rzArchive&) = delete;
  ~rzArchive();

  bool isLoading() const noexcept { return loading_; }
  bool isStoring() const noexcept { return !loading_; }

  /// Loading: how many bytes are left. Storing: 0.
  std::size_t remaining() const noexcept { return source_.size() - position_; }

  /// Moves bytes as they are. Throws BadFormat when fewer are left.
  void moveBytes(void* bytes, std::size_t size);

  /// Moves the count of a row of elements. Storing writes `stored`. Loading reads the count and
  /// throws BadFormat unless that many elements of at least `smallestElementSize` bytes (1 or
  /// more) can still follow, so the caller may make room for them.
  rzULong checkedCount(std::size_t stored, std::size_t smallestElementSize);

  /// For data that several objects share without being persistent objects: moves the id of
  /// `shared`. True means that the content has to follow, moved by the caller; null and content
  /// moved before give false. Storing keeps the data alive while the archive lives. Loading sets
  /// `shared` when the answer is false; when it is true, the caller loads the content and hands
  /// it to addShared before it moves any other shared data.
  template <class T>
  bool sharedId(std::shared_ptr<T>& shared);
  template <class T>
  void addShared(const std::shared_ptr<T>& shared);

 private:
  friend class rzPersistent;
  struct State;

  rzArchive(bool loading, std::vector<unsigned char>* sink, std::ostream* stream);
  explicit rzArchive(std::span<const unsigned char> source);
  explicit rzArchive(std::vector<unsigned char>&& source);

  bool storeShared_(std::shared_ptr<const void> shared);
  bool loadShared_(std::shared_ptr<const void>& shared, std::type_index type);
  void addShared_(std::shared_ptr<const void> shared, std::type_index type);

  bool loading_;
  std::vector<unsigned char> owned_;  // what was read from a stream
  std::span<const unsigned char> source_;
  std::size_t position_ = 0;
  std::vector<unsigned char>* sink_;  // storing: one of the two
  std::ostream* stream_;
  std::unique_ptr<State> state_;
};

/// A version byte that this library does not know. The name is that of the class, or of the source
/// file, and the number belongs to it: the class's number, or the line of the check.
class RZ_API rzArchive::UnknownVersion : public rzExceptionWithString {
 public:
  explicit UnknownVersion(const std::string& name = {}, rzLong number = 0);
  const std::string& name() const noexcept { return name_; }
  rzLong number() const noexcept { return number_; }
  RZ_EXCEPTION_LEAF(UnknownVersion)
  std::string name_;
  rzLong number_ = 0;
};

/// A class name that no class is registered under, or an object of a class that is not registered.
class RZ_API rzArchive::UnknownClass : public rzExceptionWithString {
 public:
  explicit UnknownClass(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(UnknownClass)
};

/// Bytes that no archive of this form can hold.
class RZ_API rzArchive::BadFormat : public rzExceptionWithString {
 public:
  explicit BadFormat(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(BadFormat)
};

/// Move one value in the archive's direction and give the archive back. Loading throws
/// rzArchive::BadFormat when the bytes are missing or wrong, and leaves the value as it was.
RZ_API rzArchive& operator||(rzArchive& archive, bool& value);
RZ_API rzArchive& operator||(rzArchive& archive, char& value);
RZ_API rzArchive& operator||(rzArchive& archive, signed char& value);
RZ_API rzArchive& operator||(rzArchive& archive, unsigned char& value);
RZ_API rzArchive& operator||(rzArchive& archive, std::int16_t& value);
RZ_API rzArchive& operator||(rzArchive& archive, rzLong& value);
RZ_API rzArchive& operator||(rzArchive& archive, rzULong& value);
RZ_API rzArchive& operator||(rzArchive& archive, std::uint64_t& value);
RZ_API rzArchive& operator||(rzArchive& archive, float& value);
RZ_API rzArchive& operator||(rzArchive& archive, double& value);
RZ_API rzArchive& operator||(rzArchive& archive, std::string& value);
RZ_API rzArchive& operator||(rzArchive& archive, rzString32& value);

/// Moves a persistent object with its own form and nothing beside it.
RZ_API rzArchive& operator||(rzArchive& archive, rzPersistent& object);

/// Other numbers and enumerations have no archive form; see rf_SerializeEnum for the latter.
template <class T>
requires(std::is_arithmetic_v<T> || std::is_enum_v<T>) rzArchive& operator||(rzArchive& archive,
                                                                             T& value) = delete;

/// Throw rzArchive::BadFormat unless the archive has the direction named.
RZ_API void rf_RequireStoring(const rzArchive& archive);
RZ_API void rf_RequireLoading(const rzArchive& archive);

/// Stores `value`.
template <class T>
requires requires(rzArchive& archive, T& value) { archive || value; }
rzArchive& operator<<(rzArchive& archive, const T& value) {
  rf_RequireStoring(archive);
  return archive || const_cast<T&>(value);  // storing reads only
}

/// Loads `value`.
template <class T>
requires requires(rzArchive& archive, T& value) { archive || value; }
rzArchive& operator>>(rzArchive& archive, T& value) {
  rf_RequireLoading(archive);
  return archive || value;
}

/// Moves an enumeration with a fixed 32-bit type. A value outside its list is kept as it is.
template <class Enum>
requires std::is_same_v<std::underlying_type_t<Enum>, rzLong> rzArchive& rf_SerializeEnum(
    rzArchive& archive, Enum& value) {
  rzLong number = static_cast<rzLong>(value);
  archive || number;
  if (archive.isLoading()) value = static_cast<Enum>(number);
  return archive;
}

/// Moves a handle through rzPersistent::serializePointer; null is allowed.
template <class T>
rzArchive& rf_SerializeHandle(rzArchive& archive, rzPtrHandle<T>& handle) {
  T* object = handle.rep();
  rzPersistent::serializePointer(archive, object);
  if (archive.isLoading()) handle = rzPtrHandle<T>(object);
  return archive;
}
template <class T>
rzArchive& rf_SerializeHandle(rzArchive& archive, rzPtrHandle_const<T>& handle) {
  const T* object = handle.rep();
  rzPersistent::serializePointer(archive, object);
  if (archive.isLoading()) handle = rzPtrHandle_const<T>(object);
  return archive;
}

/// The fewest bytes of a handle in an archive: the id.
inline constexpr std::size_t kHandleArchiveSize = 4;

/// Moves a vector: a version byte 0, the count, the elements, each by `moveElement(archive,
/// element)`. `smallestElementSize` is the fewest bytes an element can have. A failed load leaves
/// `vector` as it was.
template <class T, class MoveElement>
void rf_SerializeVector(rzArchive& archive, std::vector<T>& vector, MoveElement moveElement,
                        std::size_t smallestElementSize) {
  unsigned char version = 0;
  archive || version;
  if (version != 0) throw rzArchive::UnknownVersion("std::vector", 0);
  const rzULong count = archive.checkedCount(vector.size(), smallestElementSize);
  if (archive.isStoring()) {
    for (T& element : vector) moveElement(archive, element);
    return;
  }
  std::vector<T> loaded(count);
  for (T& element : loaded) moveElement(archive, element);
  vector = std::move(loaded);
}

/// Moves a vector whose elements have an `operator||`.
template <class T>
void rf_SerializeVector(rzArchive& archive, std::vector<T>& vector,
                        std::size_t smallestElementSize) {
  rf_SerializeVector(
      archive, vector, [](rzArchive& a, T& element) { a || element; }, smallestElementSize);
}

/// Moves a vector of handles.
template <class Handle>
void rf_SerializeHandles(rzArchive& archive, std::vector<Handle>& handles) {
  rf_SerializeVector(
      archive, handles, [](rzArchive& a, Handle& handle) { rf_SerializeHandle(a, handle); },
      kHandleArchiveSize);
}

template <class T>
bool rzArchive::sharedId(std::shared_ptr<T>& shared) {
  if (!loading_) return storeShared_(shared);
  std::shared_ptr<const void> known;
  const bool isNew = loadShared_(known, typeid(T));
  if (!isNew) shared = std::static_pointer_cast<T>(std::const_pointer_cast<void>(known));
  return isNew;
}

template <class T>
void rzArchive::addShared(const std::shared_ptr<T>& shared) {
  addShared_(shared, typeid(T));
}
