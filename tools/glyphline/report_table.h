// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include "report.h"

namespace glyphline {

/// A short table for people.
void writeTable(std::ostream& out, const ArrangeReport& report);
void writeTable(std::ostream& out, const FindReport& report);

}  // namespace glyphline
