// SPDX-License-Identifier: Apache-2.0
//
// Turns the failure codes of the C-level character library into exceptions.
#include "oc/oc_defs.h"
#include "rz/exception.h"

namespace {

constexpr rzLong kConverterId = 159;

constexpr rzULong kThresholdOutOfRange = 0x800013EC;
constexpr rzULong kThresholdNotSpecified = 0x800013ED;
constexpr rzULong kRectNotSpecified = 0x800013EF;
constexpr rzULong kFixedPointOverflow = 0x800013F0;
constexpr rzULong kIntegerOverflow = 0x800013F1;

void converter(rzLong code) {
  switch (static_cast<rzULong>(code)) {
    case kThresholdOutOfRange:
      throw rzOCDefs::BadParams("Threshold must be between 0 and 256 inclusive");
    case kThresholdNotSpecified:
      throw rzOCDefs::ThresholdAndInvertNotSpecified("Threshold and invert not specified");
    case kRectNotSpecified:
      throw rzOCDefs::RectNotSpecified("Rect not specified");
    case kFixedPointOverflow:
      throw rzOCDefs::IntegerOverflow("Value overflows fixed point value range");
    case kIntegerOverflow:
      throw rzOCDefs::IntegerOverflow("Value overflows integer value range");
    default:
      return;
  }
}

[[maybe_unused]] const bool kRegistered = [] {
  rfRegisterExceptionConverter(kConverterId, &converter);
  return true;
}();

}  // namespace
