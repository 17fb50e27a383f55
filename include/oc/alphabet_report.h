// SPDX-License-Identifier: Apache-2.0
//
// An alphabet in a form that a person can read: its characters, and which of them pass for which.
// For looking at a font that reads badly, and for log files; nothing reads these texts back, and
// nothing here changes the alphabet.
//
//     alphabet.compile();
//     std::cout << rf_ConfusionMatrix(&alphabet, true);
#pragma once

#include <string>

#include "rz/export.h"

class rzDiagObject;
class rzDiagRecord;
class rzOCAlphabet;

/// The confusion of every ordered pair as a table with tabs: the row is the character that passes
/// for that of the column. With `listPairs` a list follows of the pairs of different characters
/// whose confusion exceeds the threshold, each with the place at which the one passes for the
/// other. Empty for null, and for an alphabet that has no characters or is not compiled.
RZ_API std::string rf_ConfusionMatrix(const rzOCAlphabet* alphabet, bool listPairs);

/// Adds a record titled `label` with a text about the alphabet, its confusion matrix included. With
/// `addCharacters` a record for each character follows, one level deeper, with a copy of its image,
/// a text, its image area and its client axes; and one level deeper still its mask, if it has one.
/// Gives the alphabet's record; null, and nothing done, when `diag` or `alphabet` is null.
RZ_API rzDiagRecord* rf_AddAlphabet(rzDiagObject* diag, const rzOCAlphabet* alphabet,
                                    const std::string& label, bool addCharacters);
