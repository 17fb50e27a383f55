// SPDX-License-Identifier: Apache-2.0
//
// rzPersistent: the base of every class whose objects can be written to an rzArchive and read back.
//
// A persistent class registers itself and moves its fields in both directions by one sequence:
//
//   class rzShape : public rzPersistent, public rzRepBase {
//    public:
//     static const rz_Instantiator sExemplar;
//    protected:
//     void dispatchSerialize(rzArchive& archive) override;
//     void serialize_(rzArchive& archive, unsigned char version);
//    private:
//     static rzPersistent* make() { return new rzShape; }
//   };
//
//   const rz_Instantiator rzShape::sExemplar(typeid(rzShape), &rzShape::make);
//
//   void rzShape::dispatchSerialize(rzArchive& archive) {
//     if (haveVisited(archive, this, sizeof(*this))) return;
//     unsigned char version = 0;
//     archive || version;
//     serialize_(archive, version);
//     setVisited(archive, this, sizeof(*this));
//   }
//
// An object is moved by value with `archive || shape` (rz/archive.h), or by pointer with
// serializePointer, which keeps shared objects shared.
#pragma once

#include <cstddef>
#include <type_traits>
#include <typeinfo>

#include "rz/export.h"
#include "rz/types.h"

class rzArchive;

class RZ_API rzPersistent {
 public:
  rzPersistent() noexcept = default;
  rzPersistent(const rzPersistent&) noexcept {}
  rzPersistent& operator=(const rzPersistent&) noexcept { return *this; }
  virtual ~rzPersistent();

 protected:
  /// Moves the object with all its levels. This level itself has no bytes.
  virtual void dispatchSerialize(rzArchive& archive);

 public:
  /// Brings derived state up to date after a change from outside; does nothing at this level.
  virtual void reInit();

  /// Reads a reduced form; does nothing at this level.
  virtual void loadSimple(rzArchive& archive);

  /// How often this object has announced a change. Copies start at 0 and assignment leaves it.
  rzULong mutationCount() const noexcept { return mutations_; }

  /// Moves a pointer to a persistent object: null is id 0, an object seen before in this archive
  /// is its id, a new one is the next id, its class name and its content.
  ///
  /// Storing keeps counted objects (rzRepBase) alive while the archive lives, if a handle holds
  /// them. Loading leaves the one reference on a new counted object with the archive: take a
  /// handle before the archive goes. Objects that are not counted are written in full each time,
  /// and after a successful load the caller owns them.
  ///
  /// Throws rzArchive::UnknownClass for a class that is not registered and rzArchive::BadFormat
  /// for an object that is no T; `pointer` is then unchanged.
  template <class T>
  static void serializePointer(rzArchive& archive, T*& pointer) {
    using Object = std::remove_const_t<T>;
    if (isLoading_(archive)) {
      rzPersistent* loaded = load_(archive, [](rzPersistent& candidate) {
        return dynamic_cast<Object*>(&candidate) != nullptr;
      });
      pointer = dynamic_cast<Object*>(loaded);
    } else {
      store_(archive, const_cast<Object*>(pointer));
    }
  }

 protected:
  /// Announces a change of the object.
  void mutating() noexcept { ++mutations_; }

  /// True when this object's level of `size` bytes has been moved already on the present visit. A
  /// visit is one passage of an object through `archive || object` or serializePointer; a field
  /// moved that way has a visit of its own, so equal addresses of short-lived fields do no harm.
  static bool haveVisited(const rzArchive& archive, const void* address, std::size_t size);

  /// To be called after the fields, never before: a class and its base may agree in both
  /// numbers.
  static void setVisited(rzArchive& archive, const void* address, std::size_t size);

 private:
  friend RZ_API rzArchive& operator||(rzArchive& archive, rzPersistent& object);

  using Accepts = bool (*)(rzPersistent&);
  static bool isLoading_(const rzArchive& archive);
  static void store_(rzArchive& archive, rzPersistent* object);
  static rzPersistent* load_(rzArchive& archive, Accepts accepts);
  static rzPersistent* loadNew_(rzArchive& archive, Accepts accepts);
  static void visit_(rzArchive& archive, rzPersistent& object);

  rzULong mutations_ = 0;
};

/// Registers a persistent class under its name as the source text spells it ("rzOCDefs::BadKey"),
/// together with the function that makes an object to load into. Registrations happen during
/// static initialisation and are never undone.
class RZ_API rz_Instantiator {
 public:
  rz_Instantiator(const std::type_info& type, rzPersistent* (*make)());
};
