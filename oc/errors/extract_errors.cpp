// SPDX-License-Identifier: Apache-2.0
#include "oc/extract_defs.h"
#include "rz/archive.h"

RZ_DEFINE_EXCEPTION_LEAF(rz_OCExtractDefs::rz_OCExtractError, rzExceptionWithString, 0x10007402)
