// SPDX-License-Identifier: Apache-2.0
//
// Alphabets as files: what `glyphline train` writes and a program loads at its start.
#pragma once

#include <string>

#include "oc/alphabet.h"
#include "rz/export.h"

/// The alphabet in the file. Throws rzFileError when the file cannot be read,
/// rzArchive::UnknownVersion when it is newer than this library, and rzArchive::BadFormat when it
/// is damaged or holds anything else.
RZ_API rzOCAlphabet rfOCReadAlphabet(const std::string& path);

/// Writes the file whole or not at all. Throws rzFileError.
RZ_API void rfOCWriteAlphabet(const std::string& path, const rzOCAlphabet& alphabet);
