// SPDX-License-Identifier: Apache-2.0
//
// The arranger, stage by stage.
#include <array>

#include "oc/arrange.h"
#include "oc/arrange/arrange_diagnostics.h"
#include "oc/arrange/arrange_records.h"
#include "oc/arrange/assign_positions.h"
#include "oc/arrange/build_arrangement.h"
#include "oc/arrange/character_data.h"
#include "oc/arrange/evaluate_path.h"
#include "oc/arrange/handedness.h"
#include "oc/arrange/search_characters.h"
#include "oc/arrange/search_paths.h"
#include "oc/oc_defs.h"
#include "oc/refine_arrangement.h"
#include "rz/diag.h"
#include "rz/pel_functions.h"
#include "rz/xform_base.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

constexpr std::size_t kMaskThreshold = 128;  // pels from here on are looked at

void requireFittingMask(const Image& image, const Image& mask) {
  if (mask.isBound() && mask.window() != image.window()) throw rzOCArrangeDefs::BadMask();
}

void requireKnownKeys(const rzOCAlphabet& alphabet, const std::vector<rzLong>& keys) {
  for (const rzLong key : keys) {
    if (!alphabet.hasCharacter(key)) throw rzOCDefs::BadKey();
  }
}

Image binarized(const Image& mask) {
  if (!mask.isBound()) return Image();
  std::array<unsigned char, 256> table{};
  for (std::size_t v = kMaskThreshold; v < table.size(); ++v) table[v] = 255;
  return rfPelMap(mask, table);
}

// The object that intermediate details go to, or null.
rzDiagObject* detailsDiag(rzDiagObject* diag, rzULong flags, const Image& image) {
  const bool isOn = diag && rzDiagObject::shouldRecord(flags, rzDiagDefs::eDetails) &&
                    image.clientFromImageXformBase()->isLinear();
  return isOn ? diag : nullptr;
}

}  // namespace

void rfOCArrange_(const Image& image, const Image& mask, const rzOCAlphabet& alphabet,
                  const std::vector<rzLong>& targetKeys, const rzOCArrangeParams& params,
                  rzOCArrangeResults& results, rzDiagObject* diag, rzULong flags) {
  image.requireBound();
  requireFittingMask(image, mask);
  requireKnownKeys(alphabet, targetKeys);
  if (diag && rzDiagObject::shouldRecord(flags, rzDiagDefs::eInputs)) {
    rf_RecordArrangeInputs(image, mask, alphabet, targetKeys, params, diag);
  }

  // The alphabet may be that of the last results and live by them alone.
  const rzPtrHandle_const<rzOCLineArrangement> lastArrangement = results.arrangement();
  results = rzOCArrangeResults();
  if (targetKeys.empty()) {
    results.arrangement_ = new rzOCLineArrangement;
    results.isFound_ = true;
    return;
  }
  const rzPtrHandle_const<rzOCAlphabet> ownAlphabet(new rzOCAlphabet(alphabet));
  std::vector<rz_CharData> charData = rf_CharDataOf(*ownAlphabet, targetKeys);
  rzDiagObject* const details = detailsDiag(diag, flags, image);
  if (details) rf_AddImage(details, image, "OC Arranger: Intermediate", false);

  rz_PoseTable poses;
  rz_ScoreTable scores;
  double searchMilliseconds = 0.0;
  const bool isSearchComplete =
      rf_SearchCharacters(image, binarized(mask), ownAlphabet, targetKeys, params, poses, scores,
                          charData, searchMilliseconds, details, flags);
  rz_ArrangePath path;
  const bool isPathComplete =
      rf_SearchPaths(image, targetKeys, charData, poses, scores, params, path);
  results.isSearchTruncated_ = !(isSearchComplete && isPathComplete);

  // Whether the path is valid to the end matters to the record of its cost alone.
  rz_ArrangeCost cost;
  const bool isValid = rf_EvaluatePath(path, targetKeys, charData, poses, scores, params,
                                       rf_IsLeftHanded(image), true, cost);
  std::vector<rz_Pose> positionPoses;
  rf_AssignPositions(poses, scores, path, cost, charData, params, positionPoses, results.scores_,
                     results.statusFlags_);
  rf_RefineArrangement(image, ownAlphabet, targetKeys, positionPoses, results.statusFlags_,
                       results.scores_, details, flags);
  rf_BuildArrangement(ownAlphabet, targetKeys, path, cost, positionPoses,
                      params.compPoseUncertainties(), results.arrangement_,
                      results.clientFromArrangementXform_);
  results.isFound_ = true;

  if (details && isValid) {
    rf_RecordArrangeCosts(image, *ownAlphabet, targetKeys, charData, positionPoses, results.scores_,
                          results.statusFlags_, params, path, cost, details);
  }
  rf_RecordArrangeOutputs(image, targetKeys, *ownAlphabet, results, diag, flags);
}

void rfOCArrange(const Image& image, const rzOCAlphabet& alphabet,
                 const std::vector<rzLong>& targetKeys, const rzOCArrangeParams& params,
                 rzOCArrangeResults& results, rzDiagObject* diag, rzULong flags) {
  rfOCArrange_(image, Image(), alphabet, targetKeys, params, results, diag, flags);
}

void rfOCArrange(const Image& image, const Image& mask, const rzOCAlphabet& alphabet,
                 const std::vector<rzLong>& targetKeys, const rzOCArrangeParams& params,
                 rzOCArrangeResults& results, rzDiagObject* diag, rzULong flags) {
  mask.requireBound();
  rfOCArrange_(image, mask, alphabet, targetKeys, params, results, diag, flags);
}
