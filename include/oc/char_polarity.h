// SPDX-License-Identifier: Apache-2.0
//
// The polarity of a character, between this library and the C-level character library.
#pragma once

#include "oc/oc_defs.h"
#include "rz/charlib/char_record.h"
#include "rz/export.h"

/// The same value in the other type. Throw rzOCDefs::BadParams for any number but 1, 2 and 4, and
/// then leave `to` as it was.
RZ_API void rfConvertPolarity(rzOCDefs::Polarity from, roc_charPolarity& to);
RZ_API void rfConvertPolarity(roc_charPolarity from, rzOCDefs::Polarity& to);
