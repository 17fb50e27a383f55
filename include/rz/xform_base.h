// SPDX-License-Identifier: Apache-2.0
//
// rz2XformBase: a transform of the plane held by handle, linear or not, as an image carries it
// between its pel coordinates and the caller's own ("client") coordinates. When a transform is
// known to be linear, rzXform<2> is the lighter choice.
//
// Objects never change after construction, so one may be shared by images and threads.
#pragma once

#include <string>

#include "rz/exception.h"
#include "rz/export.h"
#include "rz/persistent.h"
#include "rz/ptr_handle.h"
#include "rz/rep_base.h"
#include "rz/vector.h"

class rz2XformLinear;

class RZ_API rz2XformBase : public rzPersistent, public rzRepBase {
 public:
  /// A linear transform was asked for where there is none.
  class NotLinear;

  ~rz2XformBase() override = default;

  /// Maps every straight line to a straight line and keeps parallels.
  virtual bool isLinear() const = 0;
  virtual rzVector<2> mapPoint(const rzVector<2>& p) const = 0;
  /// The linear transform that touches this one at `p`: it takes `p` to mapPoint(p).
  virtual rz2XformLinear linearXform(const rzVector<2>& p) const = 0;
  /// Throws rzMathError::Singular when there is none.
  virtual rzPtrHandle<rz2XformBase> inverseBase() const = 0;
  /// This transform after `inner`: maps p to mapPoint(inner.mapPoint(p)). Linear when both are.
  virtual rzPtrHandle<rz2XformBase> composeBase(const rz2XformBase& inner) const;
  rzPtrHandle<rz2XformBase> composeBase(const rzPtrHandle_const<rz2XformBase>& inner) const {
    return composeBase(*inner);
  }

  /// A copy of this object.
  virtual rzPtrHandle<rz2XformBase> cloneBase() const = 0;

 protected:
  rz2XformBase() = default;
  rz2XformBase(const rz2XformBase&) = default;
  rz2XformBase& operator=(const rz2XformBase&) = default;
};

class RZ_API rz2XformBase::NotLinear : public rzExceptionWithString {
 public:
  explicit NotLinear(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(NotLinear)
};
