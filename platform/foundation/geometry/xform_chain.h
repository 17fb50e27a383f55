// SPDX-License-Identifier: Apache-2.0
//
// rz2XformChain: one transform after another, where at least one of them is not linear.
#pragma once

#include "rz/ptr_handle.h"
#include "rz/vector.h"
#include "rz/xform_base.h"
#include "rz/xform_linear.h"

class rz2XformChain final : public rz2XformBase {
 public:
  /// The identity.
  rz2XformChain() = default;
  /// `outer` after `inner`; neither is null.
  rz2XformChain(rzPtrHandle<rz2XformBase> outer, rzPtrHandle<rz2XformBase> inner);

  const rzPtrHandle<rz2XformBase>& outer() const { return outer_; }
  const rzPtrHandle<rz2XformBase>& inner() const { return inner_; }

  bool isLinear() const override;
  rzVector<2> mapPoint(const rzVector<2>& p) const override;
  rz2XformLinear linearXform(const rzVector<2>& p) const override;
  rzPtrHandle<rz2XformBase> inverseBase() const override;
  rzPtrHandle<rz2XformBase> cloneBase() const override;

  static const rz_Instantiator sExemplar;

 protected:
  void dispatchSerialize(rzArchive& archive) override;

 private:
  static rzPersistent* make();
  void serialize_(rzArchive& archive, unsigned char version);

  rzPtrHandle<rz2XformBase> outer_ = new rz2XformLinear;
  rzPtrHandle<rz2XformBase> inner_ = new rz2XformLinear;
  // How many transforms a point goes through. 0 while the chain is being loaded, by which a chain
  // that claims to be a link of itself is found out.
  rzLong length_ = 2;

  static rzLong lengthOf_(const rz2XformBase& link);
};

/// `outer` after `inner`. Linear neighbours become one, so that shifting a distorted picture again
/// and again does not make the chain grow.
rzPtrHandle<rz2XformBase> rf_ComposeXforms(const rz2XformBase& outer, const rz2XformBase& inner);
