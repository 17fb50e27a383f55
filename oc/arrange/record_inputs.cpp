// SPDX-License-Identifier: Apache-2.0
#include <locale>
#include <ostream>
#include <sstream>
#include <string>

#include "oc/alphabet_report.h"
#include "oc/arrange/arrange_diagnostics.h"
#include "oc/arrange/diagnostic_text.h"

namespace {

std::string imageText(const rzPelBuffer_const<unsigned char>& image) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << "Image info\n"
       << "Size:\t" << image.width() << " x " << image.height() << "\n"
       << "Offset:\t" << image.offset().x() << " x " << image.offset().y() << "\n"
       << "\n"
       << std::ends;
  return text.str();
}

std::string alphabetText(const rzOCAlphabet& alphabet) {
  std::vector<rzLong> keys;
  for (const auto& character : alphabet.characters()) keys.push_back(character->key());
  return "Alphabet info\n" + rf_KeyListText(alphabet, keys) + "\n";
}

std::string limitText(rzLong limit) {
  return limit == rzOCArrangeParams::kNoLimit ? "No limit" : std::to_string(limit);
}

std::string lineTypeText(rzOCArrangeDefs::LineType type) {
  if (type == rzOCArrangeDefs::eStraight) return "Straight";
  return type == rzOCArrangeDefs::eCircular ? "Circular" : "Don't care";
}

std::string paramsText(const rzOCArrangeParams& params) {
  const bool isSpecified = params.orientationMode() == rzOCArrangeDefs::eSpecified;
  const bool isAbsolute = params.orientationReference() == rzOCArrangeDefs::eAbsolute;
  const rzRadian expected = params.expectedOrientation();
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << "Run params\n"
       << "Max lines\t\t" << limitText(params.maxLines()) << "\n"
       << "Max unmatched chars\t" << limitText(params.maxUnmatchedChars()) << "\n"
       << "Line type\t\t\t" << lineTypeText(params.lineType()) << "\n"
       << "Orientation mode\t\t" << (isSpecified ? "Specified" : "Average") << "\n"
       << "Orientation frame\t\t" << (isAbsolute ? "Absolute" : "Relative") << "\n"
       << "Expected Orientation\t" << expected.toDouble() << " rad/"
       << rzDegree(expected).toDouble() << " deg (" << (isSpecified ? "used" : "not used") << ")\n"
       << "\n"
       << "Line break cost\t\t" << params.lineBreakCost() << "\n"
       << "Unmatched char cost\t" << params.unmatchedCharCost() << "\n"
       << "Normal trans cost\t\t" << params.normalTransCost() << "\n"
       << "Tangential trans cost\t" << params.tangentialTransCost() << "\n"
       << "Orientation cost\t\t" << params.orientationCost() << "\n"
       << "Scale cost\t\t" << params.scaleCost() << "\n"
       << "\n"
       << std::ends;
  return text.str();
}

}  // namespace

void rf_RecordArrangeInputs(const rzPelBuffer_const<unsigned char>& image,
                            const rzPelBuffer_const<unsigned char>& mask,
                            const rzOCAlphabet& alphabet, const std::vector<rzLong>& targetKeys,
                            const rzOCArrangeParams& params, rzDiagObject* diag) {
  rzDiagRecord* record = rf_AddImage(diag, image, "OC Arranger: Input", false);
  record->text(imageText(image), "Image info");
  record->text(alphabetText(alphabet), "Alphabet info");
  record->text("Target string\n" + rf_KeyListText(alphabet, targetKeys) + "\n", "Target string");
  record->text(paramsText(params), "Run params");

  const rzDiagLevelScope level(diag);
  if (mask.isBound()) rf_AddImage(diag, mask, "Runtime mask", false);
  rf_AddAlphabet(diag, &alphabet, "Alphabet details", true);
}
