// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange_defs.h"
#include "rz/archive.h"

rzOCArrangeDefs& rzOCArrangeDefs::operator=(const rzOCArrangeDefs&) { return *this; }

// The archive form passes by the level that holds the message.
RZ_DEFINE_EMPTY_LEVEL(rzOCArrangeDefs::Errors, rzException)

RZ_DEFINE_EXCEPTION_LEAF(rzOCArrangeDefs::BadParams, rzOCArrangeDefs::Errors, 0x10007400)
RZ_DEFINE_EXCEPTION_LEAF(rzOCArrangeDefs::BadMask, rzOCArrangeDefs::Errors, 0x10007401)
