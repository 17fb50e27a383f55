// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/diagnostic_text.h"

#include "rz/text.h"

namespace {

constexpr rzLong kPlaces = 3;
constexpr rzLong kKeyDigits = 8;

}  // namespace

std::string rf_Joined(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text += piece;
  return text;
}

std::string rf_VectorText(const rzVector<2>& vector) {
  return rf_Joined({"( ", rfStr(vector.x()), " , ", rfStr(vector.y()), " )"});
}

std::string rf_AngleText(const rzDegree& angle, rzLong places) {
  return rfDbl(angle.toDouble(), places, false) + " degrees ";
}

std::string rf_MatrixText(const rzMatrix<2>& matrix) {
  return rf_Joined({" < rz2Matrix > [ ", rfStr(matrix(0, 0)), " , ", rfStr(matrix(0, 1)), " , ",
                    rfStr(matrix(1, 0)), " , ", rfStr(matrix(1, 1)), " ] "});
}

std::string rf_RigidText(const rz2Rigid& rigid) {
  return rf_Joined({" < rz2Rigid > ", rf_VectorText(rigid.trans()), " : ",
                    rf_AngleText(rigid.angle(), kPlaces)});
}

std::string rf_XformText(const rzXform<2>& xform) {
  return rf_Joined(
      {" < rz2Xform > ", rf_VectorText(xform.trans()), " : ", rf_MatrixText(xform.matrix())});
}

std::string rf_MatrixDetailsText(const rzMatrix<2>& matrix) {
  return rf_Joined({" xRot=", rf_AngleText(matrix.xRot(), kPlaces),
                    " yRot=", rf_AngleText(matrix.yRot(), kPlaces),
                    " xScale=", rfDbl(matrix.xScale(), kPlaces, false),
                    " yScale=", rfDbl(matrix.yScale(), kPlaces, false)});
}

std::string rf_XformDetailsText(const rzXform<2>& xform) {
  return rf_XformText(xform) + rf_MatrixDetailsText(xform.matrix());
}

std::string rf_CharTypeText(rzOCModel::CharType type) {
  switch (type) {
    case rzOCModel::eNormal:
      return "eNormal";
    case rzOCModel::eBlank:
      return "eBlank";
  }
  return "BadEnumValue";
}

std::string rf_CharStatusText(rzOCArrangeDefs::CharStatus status) {
  switch (status) {
    case rzOCArrangeDefs::eMatched:
      return "eMatched ";
    case rzOCArrangeDefs::eInferred:
      return "eInferred";
    case rzOCArrangeDefs::eUnknown:
      return "eUnknown ";
  }
  return "BadEnumValue";
}

std::string rf_KeyText(rzLong key) { return rfHex(key, kKeyDigits); }

std::string rf_CharacterText(const rzOCAlphabet& alphabet, rzLong key, std::string_view times) {
  if (!alphabet.hasCharacter(key)) return "Key not found in alphabet!";
  const rzOCModel& model = *alphabet.character(key);
  return rf_Joined({"'", model.name(), "'\t", rf_CharTypeText(model.charType()), "\t",
                    rfStr(model.imageArea().width()), times, rfStr(model.imageArea().height())});
}

std::string rf_KeyListText(const rzOCAlphabet& alphabet, const std::vector<rzLong>& keys) {
  std::string text = rf_Joined({"Number of characters: ", rfStr(rf_Count(keys.size())),
                                "\nIndex\tKey\t\tName\tType\tSize\n"});
  rzLong index = 0;
  for (const rzLong key : keys) {
    text += rf_Joined({rfStr(index++), "\t", rf_KeyText(key), "\t",
                       rf_CharacterText(alphabet, key, " x "), "\n"});
  }
  return text;
}
