// SPDX-License-Identifier: Apache-2.0
//
// rzPtrHandle<T> and rzPtrHandle_const<T>: counted pointers to an object derived from rzRepBase.
//
// Each handle holds one reference; the last one released deletes the object. The first kind gives
// access to change the object, the second to read it, and the first converts to the second. A
// handle is null by default. Handles compare by address.
//
// Different handles to one object may live on different threads; a single handle may not be
// changed by one thread while another uses it.
#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <utility>

#include "rz/exception.h"
#include "rz/export.h"
#include "rz/rep_base.h"

/// A null handle was dereferenced.
class RZ_API rzBadPointer : public rzExceptionWithString {
 public:
  explicit rzBadPointer(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(rzBadPointer)
};

/// Throws rzBadPointer.
[[noreturn]] RZ_API void rf_ThrowBadPointer();

/// What both handles have in common. `Pointee` is the class as the handle shows it, const or not.
template <class Pointee>
class rz_Handle {
 public:
  bool isNull() const noexcept { return object_ == nullptr; }
  bool isBound() const noexcept { return object_ != nullptr; }

  /// Throws rzBadPointer when the handle is null.
  Pointee* operator->() const { return checked_(); }
  Pointee& operator*() const { return *checked_(); }

  /// The bare pointer, which may be null. The handle keeps its reference.
  Pointee* rep() const noexcept { return object_; }

 protected:
  constexpr rz_Handle() noexcept = default;
  explicit rz_Handle(Pointee* object) noexcept : object_(object) {
    if (object_) object_->addRef();
  }
  rz_Handle(const rz_Handle& other) noexcept : rz_Handle(other.object_) {}
  rz_Handle(rz_Handle&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  rz_Handle& operator=(const rz_Handle& other) noexcept {
    rz_Handle(other).swap_(*this);
    return *this;
  }
  rz_Handle& operator=(rz_Handle&& other) noexcept {
    rz_Handle(std::move(other)).swap_(*this);
    return *this;
  }
  ~rz_Handle() {
    if (object_) object_->releaseRef();
  }

 private:
  Pointee* checked_() const {
    if (!object_) rf_ThrowBadPointer();
    return object_;
  }
  void swap_(rz_Handle& other) noexcept { std::swap(object_, other.object_); }

  Pointee* object_ = nullptr;
};

template <class T>
class rzPtrHandle : public rz_Handle<T> {
 public:
  constexpr rzPtrHandle() noexcept = default;
  constexpr rzPtrHandle(std::nullptr_t) noexcept {}
  rzPtrHandle(T* object) noexcept : rz_Handle<T>(object) {}

  /// From a handle to a derived class.
  template <class U>
  requires std::convertible_to<U*, T*> rzPtrHandle(const rzPtrHandle<U>& other)
  noexcept : rz_Handle<T>(other.rep()) {}
};

template <class T>
class rzPtrHandle_const : public rz_Handle<const T> {
 public:
  constexpr rzPtrHandle_const() noexcept = default;
  constexpr rzPtrHandle_const(std::nullptr_t) noexcept {}
  rzPtrHandle_const(const T* object) noexcept : rz_Handle<const T>(object) {}

  /// From a handle of either kind to the same or a derived class.
  template <class U>
  requires std::convertible_to<U*, const T*> rzPtrHandle_const(const rzPtrHandle<U>& other)
  noexcept : rz_Handle<const T>(other.rep()) {}
  template <class U>
  requires std::convertible_to<const U*, const T*> rzPtrHandle_const(
      const rzPtrHandle_const<U>& other)
  noexcept : rz_Handle<const T>(other.rep()) {}
};

/// Same object, or both null.
template <class T, class U>
requires std::equality_comparable_with<T*, U*>
bool operator==(const rz_Handle<T>& a, const rz_Handle<U>& b) noexcept {
  return a.rep() == b.rep();
}
template <class T>
bool operator==(const rz_Handle<T>& a, std::nullptr_t) noexcept {
  return a.isNull();
}
