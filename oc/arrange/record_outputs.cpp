// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <string>

#include "oc/arrange/arrange_diagnostics.h"
#include "oc/arrange/diagnostic_graphics.h"
#include "oc/arrange/diagnostic_text.h"
#include "rz/text.h"

namespace {

constexpr rzLong kPlaces = 3;

std::string overallText(const rzOCArrangeResults& results, const rzOCAlphabet& alphabet,
                        const std::vector<rzLong>& targetKeys) {
  std::string text = rf_Joined(
      {"isFound: ", rfStr(results.isFound()),
       "\nisSearchTruncated: ", rfStr(results.isSearchTruncated()),
       "\nclientFromArrangementXform: ", rf_XformDetailsText(results.clientFromArrangementXform()),
       "\n\nNumber of characters: ", rfStr(rf_Count(targetKeys.size())),
       "\nIndex\tStatus\t\tScore\tKey\t\tName\tType\tSize\n"});
  for (std::size_t i = 0; i < targetKeys.size(); ++i) {
    text += rf_Joined({rfStr(rf_Count(i)), "\t", rf_CharStatusText(results.statusFlags()[i]), "\t",
                       rfDbl(results.scores()[i], kPlaces, false), "\t", rf_KeyText(targetKeys[i]),
                       "\t", rf_CharacterText(alphabet, targetKeys[i], "x"), "\n"});
  }
  const auto& arrangement = results.arrangement();
  const bool isNull = arrangement.isNull();
  text += rf_Joined({"\nArrangement name: ", isNull ? std::string() : arrangement->name(),
                     "\nNumber of lines: ", rfStr(isNull ? 0 : arrangement->numLines()), "\n"});
  return text;
}

// One line of the arrangement as it is told and drawn, character by character.
class LineDetails {
 public:
  LineDetails(const rzOCLine& line, const std::vector<rzLong>& targetKeys,
              const std::vector<rzOCArrangeDefs::CharStatus>& statuses,
              const rzXform<2>& clientFromLine, rzGraphicList& list)
      : line_(line),
        targetKeys_(targetKeys),
        statuses_(statuses),
        clientFromLine_(clientFromLine),
        list_(list) {}

  std::string addPosition(rzLong position) {
    const auto models = line_.characters(position);
    std::string text =
        rf_Joined({"Position #", rfStr(position),
                   "\n  Number of characters: ", rfStr(rf_Count(models.size())), "\n"});
    rzLong index = 0;
    for (const auto& model : models) {
      text += rf_Joined({"    Character #", rfStr(index++), "\n"});
      if (!model.isNull()) text += addCharacter_(model, rf_At(position));
    }
    return text + "\n";
  }

  // The rectangle round the whole line, when it is known where that lies.
  void drawOutline() {
    if (!hasKnownPlace_) return;
    const rzXform<2> identity;
    const rzRect rect =
        line_.encloseRect(identity, identity, identity, 0.0, rzRadian(0.0), 0.0, false);
    list_.append(new rzGraphicWithFill<rzGenRect, rzGenRect>(rect.map(clientFromLine_),
                                                             rzColor::yellowColor(), false),
                 true);
  }

 private:
  std::string addCharacter_(const rzPtrHandle_const<rzOCModel>& model, std::size_t position) {
    const rzLong place = rf_FindKeyIndex(targetKeys_, model->key());
    rstd_assert_(place >= 0, __LINE__);
    const rzOCArrangeDefs::CharStatus status = statuses_[rf_At(place)];
    const rz2Rigid& pose = line_.charPoses()[position];
    const double scale = line_.charScales()[position];
    const rzXform<2> resized(rzVector<2>(), scale, 1.0, rzRadian(0.0), rzRadian(0.0));
    rf_DrawCharBox(list_, rf_ModelRectangle(model), clientFromLine_ * pose.linear() * resized,
                   status);
    if (status != rzOCArrangeDefs::eUnknown) hasKnownPlace_ = true;
    return rf_Joined(
        {"      Name: '", model->name(), "'   Type: ", rf_CharTypeText(model->charType()),
         "  Key: ", rf_KeyText(model->key()), "\n      Status: ", rf_CharStatusText(status),
         "\n      Pose: ", rf_RigidText(pose), "\n      Scale: ", rfStr(scale), "\n"});
  }

  const rzOCLine& line_;
  const std::vector<rzLong>& targetKeys_;
  const std::vector<rzOCArrangeDefs::CharStatus>& statuses_;
  rzXform<2> clientFromLine_;
  rzGraphicList& list_;
  bool hasKnownPlace_ = false;
};

void recordLines(const rzPelBuffer_const<unsigned char>& image,
                 const std::vector<rzLong>& targetKeys, const rzOCArrangeResults& results,
                 rzDiagObject* diag, rzGraphicList& list) {
  const rzOCLineArrangement& arrangement = *results.arrangement();
  const rzDiagLevelScope level(diag);
  for (rzLong k = 0; k < arrangement.numLines(); ++k) {
    rf_AddImage(diag, image, "Details for line #" + rfStr(k), false);
    rf_RecordLineDetails(arrangement.lines()[rf_At(k)], arrangement.linePoses()[rf_At(k)],
                         targetKeys, results.statusFlags(), results.clientFromArrangementXform(),
                         diag, list);
  }
}

}  // namespace

void rf_RecordArrangeOutputs(const rzPelBuffer_const<unsigned char>& image,
                             const std::vector<rzLong>& targetKeys, const rzOCAlphabet& alphabet,
                             const rzOCArrangeResults& results, rzDiagObject* diag, rzULong flags) {
  if (!diag || !rzDiagObject::shouldRecord(flags, rzDiagDefs::eResults)) return;
  rzDiagRecord* record = rf_AddImage(diag, image, "OC Arranger: Output", false);
  record->text(overallText(results, alphabet, targetKeys), "Overall info");
  rzGraphicList list;
  if (!results.arrangement().isNull()) recordLines(image, targetKeys, results, diag, list);
  record->graphics(list, rzDiagDefs::eClientCoordinates, "Arrangement graphics");
}

void rf_RecordLineDetails(const rzPtrHandle_const<rzOCLine>& line, const rz2Rigid& linePose,
                          const std::vector<rzLong>& targetKeys,
                          const std::vector<rzOCArrangeDefs::CharStatus>& statuses,
                          const rzXform<2>& clientFromArrangement, rzDiagObject* diag,
                          rzGraphicList& list) {
  if (line.isNull() || !diag) return;
  LineDetails details(*line, targetKeys, statuses, clientFromArrangement * linePose.linear(), list);
  std::string text = rf_Joined({"Line pose: ", rf_RigidText(linePose),
                                "\n\nNumber of positions: ", rfStr(line->numPositions()), "\n"});
  for (rzLong p = 0; p < line->numPositions(); ++p) text += details.addPosition(p);
  details.drawOutline();
  rzDiagRecord* record = diag->diagRecord(diag->numRecords() - 1);
  record->graphics(list, rzDiagDefs::eClientCoordinates, "Graphics");
  record->text(text, "Details");
}

rzLong rf_FindKeyIndex(const std::vector<rzLong>& keys, rzLong key) {
  const auto place = std::find(keys.begin(), keys.end(), key);
  return place == keys.end() ? -1 : static_cast<rzLong>(place - keys.begin());
}
