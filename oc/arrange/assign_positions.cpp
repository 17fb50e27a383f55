// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/assign_positions.h"

#include <cmath>

namespace {

bool isUpsideDown(const rzRadian& rotation, const rzRadian& ideal) {
  return std::fabs((rotation - ideal).signedNorm().toDouble()) > kRzHalfPi;
}

// The found pose of a character, read the way its line wants it as far as its symmetry allows.
rz_Pose matchedPose(const rz_Pose& found, const rzRadian& idealRotation,
                    const rz_CharData& character) {
  rz_Pose pose = found;
  if (character.symmetry == rz_OCExtractDefs::eAnyAngleSymmetry) {
    pose.rotation = idealRotation;
  } else if (character.symmetry == rz_OCExtractDefs::eRot180Symmetry &&
             isUpsideDown(pose.rotation, idealRotation)) {
    pose = rz_Pose(static_cast<rzXform<2>>(pose) * character.rot180Pose.inverse());
  }
  return pose;
}

}  // namespace

void rf_AssignPositions(const rz_PoseTable& poses, const rz_ScoreTable& scores,
                        const rz_ArrangePath& path, const rz_ArrangeCost& cost,
                        const std::vector<rz_CharData>& charData, const rzOCArrangeParams& params,
                        std::vector<rz_Pose>& positionPoses, std::vector<double>& resultScores,
                        std::vector<rzOCArrangeDefs::CharStatus>& resultStatuses) {
  positionPoses.assign(charData.size(), rz_Pose());
  resultScores.assign(charData.size(), 0.0);
  resultStatuses.assign(charData.size(), rzOCArrangeDefs::eUnknown);
  const double nominalScale = std::sqrt(params.scaleRange().start() * params.scaleRange().end());
  const rz_Pose placeholder(rzVector<2>(), rzRadian(0.0), nominalScale);

  for (rzLong line = 0; line < path.numLines(); ++line) {
    const std::size_t start = rf_At(path.lineStarts[rf_At(line)]);
    const std::size_t end = rf_At(path.lineEnd(line));
    const bool isAlone = end - start == 1;
    rstd_assert_(
        isAlone || (path.choices[start] != kUnmatched && path.choices[end - 1] != kUnmatched),
        __LINE__);
    for (std::size_t i = start; i < end; ++i) {
      const rzLong choice = path.choices[i];
      if (choice != kUnmatched) {
        resultStatuses[i] = rzOCArrangeDefs::eMatched;
        resultScores[i] = scores[i][rf_At(choice)];
        positionPoses[i] =
            matchedPose(poses[i][rf_At(choice)], cost.idealRotations[i], charData[i]);
      } else if (isAlone) {
        positionPoses[i] = placeholder;
      } else {
        resultStatuses[i] = rzOCArrangeDefs::eInferred;
        positionPoses[i] =
            rz_Pose(cost.idealPositions[i], cost.idealRotations[i], cost.lineScales[rf_At(line)]);
      }
    }
  }
}
