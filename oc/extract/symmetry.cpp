// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/symmetry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "oc/affine_transform.h"
#include "oc/alphabet.h"
#include "oc/extract/select_results.h"
#include "oc/extract/train_pattern.h"
#include "oc/extract_model.h"
#include "rz/angle.h"
#include "rz/cx_align.h"
#include "rz/cx_defs.h"
#include "rz/sampling.h"

namespace {

constexpr double kHalfTurn = 180.0;
// Beside the half turn. None is a whole fraction of a turn of a regular figure of few corners, but
// for the 45 degrees of squares and octagons, which the others then refute.
constexpr std::array<double, 5> kProbeAngles = {-65.0, -29.0, 32.0, 45.0, 96.0};
constexpr double kSelfMatchAccept = 0.3;
constexpr double kSelfMatchScore = 0.7;

rzCXAlignRunParams probeParams(double angleDegrees) {
  constexpr double kContrast = 10.0;
  constexpr double kOverlap = 0.3;
  rzCXAlignRunParams params;
  params.acceptThreshold(kSelfMatchAccept);
  params.algorithm(rz_CXDefs::eFine);
  params.scoreUsingClutter(false);
  params.contrastThreshold(kContrast);
  params.xyOverlap(kOverlap);
  params.numToFind(1);
  params.nominal(rz_CXDefs::eAngle, -angleDegrees);
  return params;
}

rz_OCExtractDefs::Symmetry symmetryOf(const rzPelBuffer_const<unsigned char>& window,
                                      const rzCXAlignPattern& pattern, rzXform<2>& rot180Pose) {
  if (!rf_FindsItselfRotated(window, pattern, kHalfTurn, rot180Pose, nullptr, 0)) {
    return rz_OCExtractDefs::eNoSymmetry;
  }
  const bool isRound = std::all_of(kProbeAngles.begin(), kProbeAngles.end(), [&](double angle) {
    rzXform<2> scratch;
    return rf_FindsItselfRotated(window, pattern, angle, scratch, nullptr, 0);
  });
  return isRound ? rz_OCExtractDefs::eAnyAngleSymmetry : rz_OCExtractDefs::eRot180Symmetry;
}

}  // namespace

bool rf_FindsItselfRotated(const rzPelBuffer_const<unsigned char>& image,
                           const rzCXAlignPattern& pattern, double angleDegrees, rzXform<2>& pose,
                           rzDiagObject* /*diag*/, rzULong /*flags*/) {
  rzPelBuffer<unsigned char> turned;
  rf_AffineTransform(image, rzDegree(angleDegrees), workingScale(image), turned,
                     rzAffineSamplingParams::eBilinear);
  rzCXAlignResultSet resultSet;
  pattern.run(turned, probeParams(angleDegrees), resultSet, nullptr, 0);
  std::vector<rzCXAlignResult> list;
  rf_SelectResults(resultSet, list);
  if (list.empty() || !list.front().accepted()) return false;
  pose = list.front().pose();
  return list.front().score() > kSelfMatchScore;
}

void rz_OCExtractModel::computeModelSymmetries_(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                                                rzDiagObject* /*diag*/, rzULong /*flags*/) {
  symmetries_.assign(patterns_.size(), rz_OCExtractDefs::eNoSymmetry);
  rot180Poses_.assign(patterns_.size(), rzXform<2>());
  for (std::size_t i = 0; i < patterns_.size(); ++i) {
    if (!patterns_[i]) continue;
    const auto window = characterWindow(*alphabet->character(keys_[i]));
    symmetries_[i] = symmetryOf(window, *patterns_[i], rot180Poses_[i]);
  }
}
