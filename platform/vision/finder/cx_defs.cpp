// SPDX-License-Identifier: Apache-2.0
#include "rz/cx_defs.h"

#include "rz/archive.h"

RZ_DEFINE_EXCEPTION_LEAF(rz_CXDefs::Errors, rzExceptionWithString, 0x10000401)
RZ_DEFINE_EXCEPTION_LEAF(rz_CXDefs::InternalError, rzExceptionWithString, 0x10000402)
