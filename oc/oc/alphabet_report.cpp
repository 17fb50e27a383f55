// SPDX-License-Identifier: Apache-2.0
#include "oc/alphabet_report.h"

#include <algorithm>
#include <vector>

#include "oc/alphabet.h"
#include "oc/oc/report_text.h"
#include "rz/diag.h"
#include "rz/graphics.h"
#include "rz/pel_functions.h"
#include "rz/text.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

constexpr rzLong kPlaces = 3;
constexpr rzLong kKeyDigits = 8;
constexpr rzLong kMaskThreshold = 128;  // pels from here on are looked at
constexpr double kShortestAxis = 3.0;   // pels; shorter ones could not be seen

std::string threePlaces(double value) { return rfDbl(value, kPlaces, false); }

std::string quoted(const rzOCModel& character) { return "'" + character.name() + "'"; }

std::string line(const std::string& name, const std::string& value) {
  return "  " + name + " = " + value + "\n";
}

std::string headerRow(const rzOCAlphabet& alphabet) {
  std::string text;
  for (const auto& character : alphabet.characters()) text.append("\t").append(quoted(*character));
  return text + "\n";
}

std::string matrixRow(const rzOCAlphabet& alphabet, const rzOCModel& row) {
  std::string text = quoted(row);
  for (const auto& column : alphabet.characters()) {
    text.append("\t").append(threePlaces(alphabet.confusion(row.key(), column->key())));
  }
  return text + "\n";
}

// The columns that `row` passes for, a line each.
std::string confusingPairs(const rzOCAlphabet& alphabet, const rzOCModel& row) {
  std::string text;
  for (const auto& column : alphabet.characters()) {
    const double confusion = alphabet.confusion(row.key(), column->key());
    if (row.key() == column->key() || !(confusion > alphabet.confusionThreshold())) continue;
    const rzVector<2> place = alphabet.characterOffset(row.key(), column->key()).trans();
    text += "score " + threePlaces(confusion) + " for (" + quoted(row) + ", " + quoted(*column) +
            ") keys(" + rfHex(row.key(), kKeyDigits) + ", " + rfHex(column->key(), kKeyDigits) +
            ") at (" + threePlaces(place.x()) + ", " + threePlaces(place.y()) + ")\n";
  }
  return text;
}

std::string alphabetText(const rzOCAlphabet& alphabet) {
  return "Alphabet general info\n" + line("name", "'" + alphabet.name() + "'") +
         line("numChars", rfStr(alphabet.numChars())) +
         line("confusionThreshold", threePlaces(alphabet.confusionThreshold())) +
         line("isCompiled", rfStr(alphabet.isCompiled())) + rf_ConfusionMatrix(&alphabet, true) +
         "\n";
}

Image areaOf(Image image, const rzPelRect& area) {
  image.window(area, false);
  return image;
}

bool isBlank(const rzOCModel& character) { return character.charType() == rzOCModel::eBlank; }

std::string characterText(const rzOCModel& character) {
  std::string text = "Character info\n" + line("key", rfHex(character.key(), kKeyDigits)) +
                     line("name", quoted(character)) +
                     line("description", "'" + character.description() + "'") +
                     line("type", rf_CharTypeName(character.charType())) +
                     line("imageArea", rf_PelRectText(character.imageArea()));
  if (character.image().isBound() && !isBlank(character)) {
    const Image area = areaOf(character.image(), character.imageArea());
    text += line("minPixelValue", rfStr(rzLong{rfPelMin(area)})) +
            line("maxPixelValue", rfStr(rzLong{rfPelMax(area)}));
  }
  return text;
}

std::string maskText(const rzOCModel& character) {
  const rzPelRect& rect = character.imageArea();
  const std::vector<rzLong> histogram = rfPelHistogram(areaOf(character.mask(), rect));
  rzLong numDontCare = 0;
  for (rzLong v = 0; v < kMaskThreshold; ++v) {
    numDontCare += histogram[static_cast<std::size_t>(v)];
  }
  return "Mask info\n" + line("nCarePixels", rfStr(rect.width() * rect.height() - numDontCare)) +
         line("nDontCarePixels", rfStr(numDontCare));
}

void addFrame(rzDiagRecord& record, const rzPelRect& area) {
  rzGraphicList box;
  box.append(new rzGraphicWithFill<rzRect, rzGenRect>(rzRect(area), rzColor::greenColor(), false),
             true);
  const double length = std::max(kShortestAxis, 0.5 * std::min(area.width(), area.height()));
  const rzCoordAxes axes(rzVector<2>(), rzVector<2>(length, 0.0), rzVector<2>(0.0, length));
  rzGraphicList origin;
  origin.append(new rzGraphicSimple<rzCoordAxes>(axes, rzColor::blueColor()), true);
  record.graphics(box, rzDiagDefs::ePelCoordinates, "Image area");
  record.graphics(origin, rzDiagDefs::eClientCoordinates, "Client coordinate axes");
}

void addMask(rzDiagObject* diag, const rzOCModel& character) {
  const rzDiagLevelScope level(diag);
  rzDiagRecord* record = rf_AddImage(diag, character.mask(), "mask", true);
  addFrame(*record, character.imageArea());
  if (!isBlank(character)) record->text(maskText(character), "Mask info");
}

void addCharacter(rzDiagObject* diag, const rzOCModel& character, rzLong index) {
  rzDiagRecord* record = rf_AddImage(diag, character.image(),
                                     "Character #" + rfStr(index) + ": " + quoted(character), true);
  record->text(characterText(character), "Character info");
  addFrame(*record, character.imageArea());
  if (character.mask().isBound()) addMask(diag, character);
}

}  // namespace

std::string rf_CharTypeName(rzOCModel::CharType type) {
  switch (type) {
    case rzOCModel::eNormal:
      return "eNormal";
    case rzOCModel::eBlank:
      return "eBlank";
  }
  return "InvalidEnumValue";
}

std::string rf_PelRectText(const rzPelRect& rect) {
  const auto pair = [](rzLong a, rzLong b) { return rfStr(a) + ", " + rfStr(b) + ")"; };
  return std::string("ul(") + pair(rect.ul().x(), rect.ul().y()) + " lr(" +
         pair(rect.lr().x(), rect.lr().y()) + " size(" + pair(rect.width(), rect.height());
}

std::string rf_ConfusionMatrix(const rzOCAlphabet* alphabet, bool listPairs) {
  if (!alphabet || alphabet->numChars() == 0 || !alphabet->isCompiled()) return "";
  std::string text = "Confusion matrix:\n" + headerRow(*alphabet);
  std::string pairs = "Confusing pairs:\n";
  for (const auto& row : alphabet->characters()) {
    text += matrixRow(*alphabet, *row);
    if (listPairs) pairs += confusingPairs(*alphabet, *row);
  }
  return listPairs ? text + pairs : text;
}

rzDiagRecord* rf_AddAlphabet(rzDiagObject* diag, const rzOCAlphabet* alphabet,
                             const std::string& label, bool addCharacters) {
  if (!diag || !alphabet) return nullptr;
  rzDiagRecord* record = diag->newDiagRecord();
  record->recordAnnotation(label);
  record->text(alphabetText(*alphabet), "Alphabet general info");
  if (!addCharacters) return record;
  const rzDiagLevelScope level(diag);
  rzLong index = 0;
  for (const auto& character : alphabet->characters()) addCharacter(diag, *character, index++);
  return record;
}
