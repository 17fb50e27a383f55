// SPDX-License-Identifier: Apache-2.0
//
// Small texts of the alphabet's report.
#pragma once

#include <string>

#include "oc/model.h"
#include "rz/pel_rect.h"

/// The enumerator's name, or "InvalidEnumValue".
std::string rf_CharTypeName(rzOCModel::CharType type);

/// Corners and size.
std::string rf_PelRectText(const rzPelRect& rect);
