// SPDX-License-Identifier: Apache-2.0
//
// Archive forms of the small values that are not persistent objects: numbers only, no version.
#include "rz/archive.h"
#include "rz/pel_rect.h"
#include "rz/range.h"
#include "rz/rigid.h"
#include "rz/vector.h"
#include "rz/xform.h"

rzArchive& operator||(rzArchive& ar, rzVector<2>& v) {
  double x = v.x();
  double y = v.y();
  ar || x || y;
  if (ar.isLoading()) v = {x, y};
  return ar;
}

rzArchive& operator||(rzArchive& ar, rzRange& range) {
  double start = range.start();
  double end = range.end();
  ar || start || end;
  if (ar.isLoading()) range = {start, end};
  return ar;
}

rzArchive& operator||(rzArchive& ar, rz2Rigid& rigid) {
  double degrees = rigid.angle().toDouble();
  rzVector<2> trans = rigid.trans();
  ar || degrees || trans;
  if (ar.isStoring()) return ar;
  if (!std::isfinite(degrees) || !trans.isFinite()) {
    throw rzArchive::BadFormat("Rigid motion is not finite");
  }
  rigid = {rzDegree(degrees), trans};
  return ar;
}

rzArchive& operator||(rzArchive& ar, rzXform<2>& xform) {
  const rzMatrix<2>& m = xform.matrix();
  double m00 = m(0, 0);
  double m01 = m(0, 1);
  double m10 = m(1, 0);
  double m11 = m(1, 1);
  rzVector<2> trans = xform.trans();
  ar || m00 || m01 || m10 || m11 || trans;
  if (ar.isStoring()) return ar;
  const rzXform<2> loaded(rzMatrix<2>(m00, m01, m10, m11), trans);
  if (!loaded.isFinite()) throw rzArchive::BadFormat("Transform is not finite");
  xform = loaded;
  return ar;
}

template <>
void rf_PersistenceHelper<rzLong>(rzArchive& ar, rzRectangle<rzLong>& rect) {
  rzLong x = rect.x();
  rzLong y = rect.y();
  rzLong width = rect.width();
  rzLong height = rect.height();
  ar || x || y || width || height;
  if (ar.isLoading()) rect = {x, y, width, height};
}
