// SPDX-License-Identifier: Apache-2.0
//
// The arranger's records in words: how values, characters and keys are written there.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "oc/alphabet.h"
#include "oc/arrange_defs.h"
#include "oc/model.h"
#include "rz/angle.h"
#include "rz/matrix.h"
#include "rz/rigid.h"
#include "rz/types.h"
#include "rz/vector.h"
#include "rz/xform.h"

/// One string of many pieces.
std::string rf_Joined(std::initializer_list<std::string_view> pieces);

std::string rf_VectorText(const rzVector<2>& vector);
std::string rf_AngleText(const rzDegree& angle, rzLong places);
std::string rf_MatrixText(const rzMatrix<2>& matrix);
std::string rf_RigidText(const rz2Rigid& rigid);
std::string rf_XformText(const rzXform<2>& xform);
/// Rotation and scale of both axes.
std::string rf_MatrixDetailsText(const rzMatrix<2>& matrix);
std::string rf_XformDetailsText(const rzXform<2>& xform);

/// The enumerator's name, or "BadEnumValue". Names of statuses are of equal width.
std::string rf_CharTypeText(rzOCModel::CharType type);
std::string rf_CharStatusText(rzOCArrangeDefs::CharStatus status);

/// A key with 8 hexadecimal digits.
std::string rf_KeyText(rzLong key);
/// Name, type and size of a character, with tabs between and `times` between width and height, or
/// that the alphabet has no such key.
std::string rf_CharacterText(const rzOCAlphabet& alphabet, rzLong key, std::string_view times);
/// A table of those.
std::string rf_KeyListText(const rzOCAlphabet& alphabet, const std::vector<rzLong>& keys);
