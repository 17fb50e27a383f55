// SPDX-License-Identifier: Apache-2.0
//
// rz_Pose: where a character stands in the client coordinates of an image, as the stages of the
// arranger pass it on. Callers get poses as transforms (rzOCArrangeResults); this record is shown
// for those who call rf_RefineArrangement by themselves.
#pragma once

#include "rz/angle.h"
#include "rz/export.h"
#include "rz/rigid.h"
#include "rz/vector.h"
#include "rz/xform.h"

/// The pose of a character in the client coordinates of the image.
struct RZ_API rz_Pose {
  rz_Pose() = default;
  rz_Pose(const rzVector<2>& place, const rzRadian& turn, double size);
  /// Shear and anisotropy are dropped.
  explicit rz_Pose(const rzXform<2>& xform);

  explicit operator rzXform<2>() const;
  /// Without the scale.
  explicit operator rz2Rigid() const;

  rzVector<2> translation;  ///< Where the character's origin lies.
  rzRadian rotation{0.0};
  double scale = 1.0;
  double logScale = 0.0;  ///< Natural logarithm of `scale`.
};
