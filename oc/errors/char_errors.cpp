// SPDX-License-Identifier: Apache-2.0
#include "oc/oc_defs.h"
#include "rz/archive.h"

RZ_DEFINE_EMPTY_LEVEL(rzOCDefs::Errors, rzExceptionWithString)

RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::BadParams, rzOCDefs::Errors, 0x10005E00)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::BadImage, rzOCDefs::Errors, 0x10005E01)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::NotImplemented, rzOCDefs::Errors, 0x10005E02)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::SameKey, rzOCDefs::Errors, 0x10005E03)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::BadKey, rzOCDefs::Errors, 0x10005E04)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::BadIndex, rzOCDefs::Errors, 0x10005E05)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::NotCompiled, rzOCDefs::Errors, 0x10005E06)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::RectNotSpecified, rzOCDefs::Errors, 0x10005E09)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::MetricNotSpecified, rzOCDefs::Errors, 0x10005E0A)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::ThresholdAndInvertNotSpecified, rzOCDefs::Errors, 0x10005E0B)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::IntegerOverflow, rzOCDefs::Errors, 0x10005E0D)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::UnrepresentableKey, rzOCDefs::Errors, 0x10005E0E)
RZ_DEFINE_EXCEPTION_LEAF(rzOCDefs::BadFileFormat, rzOCDefs::Errors, 0x10005E0F)
