// SPDX-License-Identifier: Apache-2.0
//
// rz2XformRadial: the lens distortion that moves points towards or away from a centre.
//
// With d = p - center the radial transform is p -> center + (1 + strength |d|^2) d. It is the first
// term of the usual series for a lens (D. C. Brown, "Decentering Distortion of Lenses",
// Photogrammetric Engineering, 1966). A positive strength spreads the picture (pincushion), a
// negative one draws it in (barrel) and folds over at the radius 1 / sqrt(-3 strength); only the
// points within are taken to be in the picture.
#pragma once

#include "rz/export.h"
#include "rz/ptr_handle.h"
#include "rz/vector.h"
#include "rz/xform_base.h"

class RZ_API rz2XformRadial final : public rz2XformBase {
 public:
  /// The identity in effect: strength 0.
  rz2XformRadial() = default;
  /// `strength` is in 1 / unit^2. `isInverse` asks for the opposite map, found numerically.
  rz2XformRadial(const rzVector<2>& center, double strength, bool isInverse = false)
      : center_(center), strength_(strength), isInverse_(isInverse) {}

  const rzVector<2>& center() const { return center_; }
  double strength() const { return strength_; }
  bool isInverse() const { return isInverse_; }

  /// False, also for a strength of 0.
  bool isLinear() const override { return false; }
  /// Throws rzMathError::Singular for the opposite map of a negative strength at a place that no
  /// point is moved to, beyond the fold.
  rzVector<2> mapPoint(const rzVector<2>& p) const override;
  rz2XformLinear linearXform(const rzVector<2>& p) const override;
  rzPtrHandle<rz2XformBase> inverseBase() const override;
  rzPtrHandle<rz2XformBase> cloneBase() const override;

  static const rz_Instantiator sExemplar;

 protected:
  void dispatchSerialize(rzArchive& ar) override;

 private:
  static rzPersistent* make();
  void serialize_(rzArchive& ar, unsigned char version);

  rzVector<2> center_;
  double strength_ = 0.0;
  bool isInverse_ = false;
};
