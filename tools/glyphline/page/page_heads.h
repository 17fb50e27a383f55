// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "page/diag_page.h"
#include "report.h"

namespace glyphline {

/// What stands above the record of an arrangement with the alphabet in that file.
PageHead headOfArrangement(const ArrangeReport& report, const std::string& alphabetPath);

/// What stands above the record of an alphabet.
PageHead headOfAlphabet(const rzOCAlphabet& alphabet, const std::string& path);

}  // namespace glyphline
