// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/search_characters.h"

#include "oc/extract_model.h"

namespace {

// A spare candidate is worth trying if it is nearly as good as the last one that is needed.
constexpr double kScoreMargin = 0.15;
// A position whose last needed candidate is this good must be matched.
constexpr double kSureScore = 0.7;

rz_OCExtractModelParams modelParams(const rzOCArrangeParams& params) {
  rz_OCExtractModelParams result;
  result.angleRange = rzRange(-179.0, 180.0);
  result.scaleRange = params.scaleRange();
  result.nominalScale = 1.0;
  result.grainLimits = {-1.0, -1.0};
  return result;
}

rz_OCExtractRunParams runParams(const rzOCArrangeParams& params) {
  rz_OCExtractRunParams result;
  result.timeout = params.timeout();
  result.acceptThresh = params.minMatchScore();
  result.confusionThresh = 0.7;
  result.overlap = 0.5;
  return result;
}

// All that are needed, and the spare ones that come close to the last of them.
rzLong usefulCandidates(const rz_OCExtractCharResult& found) {
  const rzLong count = found.numInstances();
  const rzLong needed = found.numOccurrences();
  if (count <= needed) return count;
  const double floor = found.score(needed - 1) - kScoreMargin;
  rzLong useful = needed;
  while (useful < count && found.score(useful) >= floor) ++useful;
  return useful;
}

bool isSureToBeThere(const rz_OCExtractCharResult& found) {
  const rzLong needed = found.numOccurrences();
  return found.numInstances() >= needed && found.score(needed - 1) >= kSureScore;
}

}  // namespace

bool rf_SearchCharacters(const rzPelBuffer_const<unsigned char>& image,
                         const rzPelBuffer_const<unsigned char>& mask,
                         const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                         const std::vector<rzLong>& keys, const rzOCArrangeParams& params,
                         rz_PoseTable& poses, rz_ScoreTable& scores,
                         std::vector<rz_CharData>& charData, double& searchMilliseconds,
                         rzDiagObject* diag, rzULong flags) {
  poses.assign(keys.size(), {});
  scores.assign(keys.size(), {});
  rz_OCExtractModel model;
  rz_OCExtractStringResult result;
  const rzDiagLevelScope imageLevel(diag);
  if (diag) rf_AddImage(diag, image, "Search for characters", false);
  const rzDiagLevelScope searchLevel(diag);
  const bool isComplete = model.search(alphabet, keys, image, mask, modelParams(params),
                                       runParams(params), result, diag, flags);
  searchMilliseconds += result.trainTime() + result.searchTime();
  for (std::size_t p = 0; p < keys.size(); ++p) {
    rf_TakeCandidates(*result.results()[p], poses[p], scores[p], charData[p]);
  }
  return isComplete;
}

void rf_TakeCandidates(const rz_OCExtractCharResult& found, std::vector<rz_Pose>& poses,
                       std::vector<double>& scores, rz_CharData& charData) {
  charData.symmetry = found.symmetry();
  charData.rot180Pose = found.rot180Pose();
  charData.numOccurrences = found.numOccurrences();
  charData.numCandidates = usefulCandidates(found);
  charData.mayStayUnmatched = !isSureToBeThere(found);
  for (rzLong i = 0; i < found.numInstances(); ++i) {
    poses.emplace_back(found.pose(i));
    scores.push_back(found.score(i));
  }
  if (found.numInstances() == 0) charData.costsWhenUnmatched = false;
}
