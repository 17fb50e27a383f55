// SPDX-License-Identifier: Apache-2.0
#include "rz/xform_base.h"

#include "platform/foundation/geometry/xform_chain.h"
#include "rz/archive.h"

RZ_DEFINE_EXCEPTION_LEAF(rz2XformBase::NotLinear, rzExceptionWithString, 0x10000200)

rzPtrHandle<rz2XformBase> rz2XformBase::composeBase(const rz2XformBase& inner) const {
  return rf_ComposeXforms(*this, inner);
}
