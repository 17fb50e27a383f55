// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "report.h"

namespace glyphline {

/// One JSON object on one line, without the line's end.
std::string jsonOf(const ArrangeReport& report);
std::string jsonOf(const FindReport& report);

/// The object for a picture that could not be read.
std::string jsonOfFailure(const std::string& image, const std::string& message);

}  // namespace glyphline
