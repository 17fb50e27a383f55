// SPDX-License-Identifier: Apache-2.0
#include "oc/char_polarity.h"

static_assert(roc_darkOnLight == rzLong{rzOCDefs::eDarkOnLight});
static_assert(roc_lightOnDark == rzLong{rzOCDefs::eLightOnDark});
static_assert(roc_polarityUnknown == rzLong{rzOCDefs::ePolarityUnknown});

void rfConvertPolarity(rzOCDefs::Polarity from, roc_charPolarity& to) {
  switch (from) {
    case rzOCDefs::eDarkOnLight:
    case rzOCDefs::eLightOnDark:
    case rzOCDefs::ePolarityUnknown:
      to = from;
      return;
  }
  throw rzOCDefs::BadParams("Illegal polarity");
}

void rfConvertPolarity(roc_charPolarity from, rzOCDefs::Polarity& to) {
  const auto polarity = static_cast<rzOCDefs::Polarity>(from);
  roc_charPolarity checked;
  rfConvertPolarity(polarity, checked);
  to = polarity;
}
