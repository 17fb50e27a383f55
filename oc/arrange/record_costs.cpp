// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <locale>
#include <ostream>
#include <sstream>
#include <string>

#include "oc/arrange/arrange_diagnostics.h"
#include "oc/arrange/diagnostic_graphics.h"
#include "oc/arrange/diagnostic_text.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;
// Match, tangential, normal, rotation, scale: the columns of the table.
using Errors = std::array<double, 5>;

constexpr int kDigits = 2;  // that the table shows of a number

// What the records of all lines are made from.
struct Account {
  const rzOCAlphabet& alphabet;
  const std::vector<rzLong>& targetKeys;
  const std::vector<rz_CharData>& charData;
  const std::vector<rz_Pose>& poses;
  const std::vector<double>& scores;
  const std::vector<rzOCArrangeDefs::CharStatus>& statuses;
  const rz_ArrangePath& path;
  const rz_ArrangeCost& cost;
};

Errors errorsOf(const Account& account, std::size_t p) {
  return {1.0 - account.scores[p], account.cost.tangentialErrors[p], account.cost.normalErrors[p],
          account.cost.rotationErrors[p], account.cost.logScaleErrors[p]};
}

void writeErrors(std::ostream& text, const Errors& errors) {
  const char* separator = "";
  for (const double error : errors) {
    text << separator << error;
    separator = "\t";
  }
}

void writeHeader(std::ostream& text, const Account& account, rzLong k, rzLong length) {
  const rz_ArrangeCost& cost = account.cost;
  const bool isStraight = cost.lineTypes[rf_At(k)] == rzOCArrangeDefs::eStraight;
  text << "Line " << k << ":\n"
       << (isStraight ? "Straight" : "Circular") << ", " << length << " characters\n"
       << "Average angle: " << rzDegree(cost.lineAngles[rf_At(k)]).toDouble() << " degrees\n"
       << "Aerage scale: " << cost.lineScales[rf_At(k)] << "\n"
       << "\n"
       << "Cost details:\n"
       << "Index\tChar\tChoice\tMatch\tTan\tNorm\tRot\tScale\n";
}

void writePosition(std::ostream& text, const Account& account, std::size_t p) {
  const rzLong choice = account.path.choices[p];
  text << p << "\t'" << account.alphabet.character(account.targetKeys[p])->name() << "'\t";
  if (choice >= 0) {
    text << choice << "\t";
    writeErrors(text, errorsOf(account, p));
  } else {
    const bool isInferred = account.statuses[p] == rzOCArrangeDefs::eInferred;
    text << "--\t0\tCharacter unmatched; pose " << (isInferred ? "inferred" : "unknown");
  }
  text << "\n";
}

// Sums over the matched positions. Those that are not count as if they had erred like the others,
// but in the first column.
Errors normalizedTotal(const Account& account, rzLong start, rzLong end) {
  Errors total{};
  rzLong numMatched = 0;
  for (rzLong p = start; p < end; ++p) {
    if (account.path.choices[rf_At(p)] < 0) continue;
    const Errors errors = errorsOf(account, rf_At(p));
    for (std::size_t i = 0; i < total.size(); ++i) total[i] += errors[i];
    ++numMatched;
  }
  const double weight = numMatched > 0 ? static_cast<double>(end - start) / numMatched : 1.0;
  for (std::size_t i = 1; i < total.size(); ++i) total[i] *= weight;
  return total;
}

std::string lineText(const Account& account, rzLong k) {
  const rzLong start = account.path.lineStarts[rf_At(k)];
  const rzLong end = account.path.lineEnd(k);
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text.precision(kDigits);
  writeHeader(text, account, k, end - start);
  for (rzLong p = start; p < end; ++p) writePosition(text, account, rf_At(p));
  text << "Normalized total\t\t";
  writeErrors(text, normalizedTotal(account, start, end));
  text << "\n\n" << std::ends;
  return text.str();
}

void drawBoxes(rzGraphicList& list, const Account& account, rzLong k) {
  for (rzLong i = account.path.lineStarts[rf_At(k)]; i < account.path.lineEnd(k); ++i) {
    const std::size_t p = rf_At(i);
    rf_DrawCharBox(list, account.charData[p].imageArea(), rzXform<2>(account.poses[p]),
                   account.statuses[p]);
  }
}

std::string costText(const rz_ArrangeCost& cost) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << "Best solution:\n"
       << "Line break cost\t\t" << cost.breakCost << "\n"
       << "Unmatched char cost\t" << cost.unmatchedCost << "\n"
       << "Normal trans cost\t\t" << cost.normalCost << "\n"
       << "Tangential trans cost\t" << cost.tangentialCost << "\n"
       << "Orientation cost\t\t" << cost.rotationCost << "\n"
       << "Scale cost\t\t" << cost.logScaleCost << "\n"
       << "Total cost\t\t\t" << cost.total() << "\n";
  return text.str();
}

}  // namespace

void rf_RecordArrangeCosts(const Image& image, const rzOCAlphabet& alphabet,
                           const std::vector<rzLong>& targetKeys,
                           const std::vector<rz_CharData>& charData,
                           const std::vector<rz_Pose>& positionPoses,
                           const std::vector<double>& scores,
                           const std::vector<rzOCArrangeDefs::CharStatus>& statuses,
                           const rzOCArrangeParams&, const rz_ArrangePath& path,
                           const rz_ArrangeCost& cost, rzDiagObject* diag) {
  const Account account{alphabet, targetKeys, charData, positionPoses,
                        scores,   statuses,   path,     cost};
  const rzDiagLevelScope level(diag);
  rzDiagRecord* record = rf_AddImage(diag, image, "Build arrangement", false);
  std::size_t nextSeg = 0;
  std::size_t nextArc = 0;
  for (rzLong k = 0; k < path.numLines(); ++k) {
    rzGraphicList list;
    rf_DrawLineShape(list, cost.lineTypes[rf_At(k)], cost.lineSegs, nextSeg, cost.lineArcs,
                     nextArc);
    drawBoxes(list, account, k);
    const std::string title = "Line #" + std::to_string(k);
    record->graphics(list, rzDiagDefs::eClientCoordinates, title + " graphics");
    record->text(lineText(account, k), title + " details");
  }
  record->text(costText(cost), "Arrangement cost");
}
