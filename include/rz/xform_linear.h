// SPDX-License-Identifier: Apache-2.0
//
// rz2XformLinear: an rzXform<2> in the form that is held by handle. It converts both ways.
#pragma once

#include "rz/export.h"
#include "rz/matrix.h"
#include "rz/vector.h"
#include "rz/xform.h"
#include "rz/xform_base.h"

class RZ_API rz2XformLinear final : public rz2XformBase {
 public:
  /// The identity.
  rz2XformLinear() = default;
  rz2XformLinear(const rzXform<2>& xform) : xform_(xform) {}
  rz2XformLinear(const rzMatrix<2>& matrix, const rzVector<2>& trans) : xform_(matrix, trans) {}

  operator rzXform<2>() const { return xform_; }
  const rzXform<2>& xform() const { return xform_; }
  const rzMatrix<2>& matrix() const { return xform_.matrix(); }
  const rzVector<2>& trans() const { return xform_.trans(); }

  bool isLinear() const override { return true; }
  rzVector<2> mapPoint(const rzVector<2>& p) const override { return xform_.mapPoint(p); }
  /// Itself, wherever `p` is.
  rz2XformLinear linearXform(const rzVector<2>& p) const override;
  rzPtrHandle<rz2XformBase> inverseBase() const override;
  rzPtrHandle<rz2XformBase> cloneBase() const override;

  bool operator==(const rz2XformLinear& other) const { return xform_ == other.xform_; }

  static const rz_Instantiator sExemplar;

 protected:
  void dispatchSerialize(rzArchive& ar) override;

 private:
  static rzPersistent* make();
  void serialize_(rzArchive& ar, unsigned char version);

  rzXform<2> xform_;
};
