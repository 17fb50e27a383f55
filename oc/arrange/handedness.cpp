// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/handedness.h"

#include "rz/xform.h"
#include "rz/xform_linear.h"

bool rf_IsLeftHanded(const rzPelBuffer_const<unsigned char>& image) {
  const rzVector<2> corner(image.offset().x(), image.offset().y());
  const rzVector<2> center = corner + 0.5 * rzVector<2>(image.width(), image.height());
  const rzXform<2> tangent = image.clientFromImageXformBase()->linearXform(center);
  return tangent.matrix().determinant() < 0.0;
}
