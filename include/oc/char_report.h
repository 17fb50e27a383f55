// SPDX-License-Identifier: Apache-2.0
//
// A character record in a form that a person can look at: its image with its rectangles, and its
// key. Nothing reads this back.
#pragma once

#include <string>

#include "rz/export.h"

class rzDiagObject;
class rzDiagRecord;
class rzOCChar;

/// Adds a record titled `label` and gives it back. It shows the whole image, which it shares, not
/// the image area alone; a text with name (left out when it has no 8-bit form), key and polarity;
/// and the cell in orange and the mark in green, either in image or in client coordinates:
/// whichever has more rectangles, the image when they are equal. `diag` must not be null.
RZ_API rzDiagRecord* rf_AddOCChar(rzDiagObject* diag, const rzOCChar& character,
                                  const std::string& label);
