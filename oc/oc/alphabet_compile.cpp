// SPDX-License-Identifier: Apache-2.0
//
// The place of the compilation: the confusion of every ordered pair of characters, measured by
// searching the image of the first in the image of the second. It needs the search for a part of a
// picture, which this build does not have. Until that is there the alphabet refuses, and so stays
// not compiled; whatever replaces this function must fill confusionMatrix_ and characterOffsets_
// before it sets compiled_. Alphabets that were stored compiled can be loaded and asked.
#include "oc/alphabet.h"
#include "oc/oc_defs.h"

void rzOCAlphabet::compile(rzDiagObject* /*diagObject*/, rzULong /*diagFlags*/) {
  if (compiled_) return;
  throw rzOCDefs::NotImplemented("Alphabet compilation is not available in this build");
}
