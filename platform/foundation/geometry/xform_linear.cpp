// SPDX-License-Identifier: Apache-2.0
#include "rz/xform_linear.h"

#include "rz/archive.h"

const rz_Instantiator rz2XformLinear::sExemplar(typeid(rz2XformLinear), &rz2XformLinear::make);

rzPersistent* rz2XformLinear::make() { return new rz2XformLinear; }

rz2XformLinear rz2XformLinear::linearXform(const rzVector<2>&) const { return *this; }

rzPtrHandle<rz2XformBase> rz2XformLinear::inverseBase() const {
  return new rz2XformLinear(xform_.inverse());
}

rzPtrHandle<rz2XformBase> rz2XformLinear::cloneBase() const { return new rz2XformLinear(*this); }

RZ_DEFINE_DISPATCH_SERIALIZE(rz2XformLinear)

void rz2XformLinear::serialize_(rzArchive& archive, unsigned char version) {
  if (version != 0) throw rzArchive::UnknownVersion("rz2XformLinear", 0);
  archive || xform_;
}
