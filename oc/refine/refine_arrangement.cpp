// SPDX-License-Identifier: Apache-2.0
#include "oc/refine_arrangement.h"

#include "oc/refine/char_region.h"
#include "oc/refine/correlation_grid.h"
#include "rz/assert.h"
#include "rz/timeout.h"

namespace {

constexpr double kRotationUncertainty = 3.0;  // degrees either way
constexpr double kScaleUncertainty = 0.05;
constexpr double kScaleStep = 0.03;

rz_RSISearchModelParams gridParams() {
  rz_RSISearchModelParams params;
  params.angleRange = rzRange(-kRotationUncertainty, kRotationUncertainty);
  params.angleStep = 0.5;
  params.scaleRange = rzRange(1.0 - kScaleUncertainty, 1.0 + kScaleUncertainty + kScaleStep * 0.5);
  params.scaleStep = kScaleStep;
  params.baseScale = 1.0;
  return params;
}

rz_RSISearchRunParams runParams() {
  rz_RSISearchRunParams params;
  params.accept = 0.3;
  params.confusion = 0.4;
  params.overlap = 0.1;
  params.maxNumResults = 1;
  return params;
}

/// The three rows of results that one run of the arranger refines.
struct Positions {
  std::vector<rz_Pose>& poses;
  std::vector<rzOCArrangeDefs::CharStatus>& statuses;
  std::vector<double>& scores;
};

// Tries to confirm the inferred position j as the character of the grid.
void refinePosition(const rzPelBuffer_const<unsigned char>& image,
                    const rzPelBuffer_const<unsigned char>& charImage,
                    const rzRSINrmSearchModel& grid, Positions& positions, std::size_t j) {
  rzPelBuffer<unsigned char> region;
  const rzXform<2> pose(positions.poses[j]);
  if (!rf_SampleCharRegion(region, image, charImage.window(), charImage.clientFromImageXform(),
                           pose, kRotationUncertainty, kScaleUncertainty)) {
    return;
  }
  rzPtrHandle<rz_SearchResult2> result;
  try {
    grid.run(region, runParams(), result, nullptr, 0);
  } catch (const rzTimeout::Expired&) {
    throw;
  } catch (const rzException&) {
    return;
  }
  if (!result->found()) return;
  positions.statuses[j] = rzOCArrangeDefs::eMatched;
  positions.poses[j] = rz_Pose(result->pose(0));
  positions.scores[j] = result->score(0);
}

/// Positions from `first` on that bear the key and are inferred.
std::vector<std::size_t> inferredPositions(const std::vector<rzLong>& keys,
                                           const std::vector<rzOCArrangeDefs::CharStatus>& statuses,
                                           std::size_t first) {
  std::vector<std::size_t> found;
  for (std::size_t j = first; j < keys.size(); ++j) {
    if (keys[j] == keys[first] && statuses[j] == rzOCArrangeDefs::eInferred) found.push_back(j);
  }
  return found;
}

}  // namespace

void rf_RefineArrangement(const rzPelBuffer_const<unsigned char>& image,
                          const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                          const std::vector<rzLong>& keys, std::vector<rz_Pose>& poses,
                          std::vector<rzOCArrangeDefs::CharStatus>& statuses,
                          std::vector<double>& scores, rzDiagObject*, rzULong) {
  rstd_assert_(alphabet.isBound() && poses.size() == keys.size() &&
                   statuses.size() == keys.size() && scores.size() == keys.size(),
               __LINE__);
  Positions positions{poses, statuses, scores};
  std::vector<bool> done(keys.size(), false);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const rzOCModel& model = *alphabet->character(keys[i]);
    if (model.charType() == rzOCModel::eBlank) done[i] = true;
    if (done[i]) continue;
    // A grid is only worth its training where a position is to be looked at.
    const std::vector<std::size_t> inferred = inferredPositions(keys, statuses, i);
    if (inferred.empty()) continue;

    rzPelBuffer_const<unsigned char> charImage = model.image();
    charImage.window(model.imageArea(), false);
    rzPelBuffer_const<unsigned char> charMask = model.mask();
    if (charMask.isBound()) charMask.window(model.imageArea(), false);
    rzPtrHandle<rzRSINrmSearchModel> grid;
    try {
      grid = rzPtrHandle<rzRSINrmSearchModel>(
          new rzRSINrmSearchModel(charImage, charMask, gridParams(), model.name(), nullptr, 0));
    } catch (const rzTimeout::Expired&) {
      throw;
    } catch (const rzException&) {
      continue;  // a later position of this key tries again
    }
    for (std::size_t j = i; j < keys.size(); ++j) {
      if (keys[j] == keys[i]) done[j] = true;
    }
    for (const std::size_t j : inferred) refinePosition(image, charImage, *grid, positions, j);
  }
}
