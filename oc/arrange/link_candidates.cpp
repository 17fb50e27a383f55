// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/link_candidates.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kFarthest = 2.0;  // longest diagonals of the two characters, included
const rzRadian kLargestTurn(0.5235987755982988);  // 30 degrees, included

double longestDiagonal(const rz_CharData& a, const rz_CharData& b) {
  return std::max(
      {a.diagonalA().len(), a.diagonalB().len(), b.diagonalA().len(), b.diagonalB().len()});
}

rzRadian magnitude(const rzRadian& angle) { return rzRadian(std::fabs(angle.toDouble())); }

// What two characters show of the turn between them.
rzRadian visibleTurn(const rzRadian& turn, rz_OCExtractDefs::Symmetry a,
                     rz_OCExtractDefs::Symmetry b) {
  if (a == rz_OCExtractDefs::eNoSymmetry && b == rz_OCExtractDefs::eNoSymmetry) {
    return magnitude(turn.signedNorm());
  }
  if (a == rz_OCExtractDefs::eAnyAngleSymmetry || b == rz_OCExtractDefs::eAnyAngleSymmetry) {
    return rzRadian(0.0);
  }
  return 0.5 * magnitude((2.0 * turn).signedNorm());
}

}  // namespace

void rf_LinkCandidates(const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                       rz_LinkTable& links) {
  links.assign(poses.empty() ? 0 : poses.size() - 1, {});
  for (std::size_t i = 0; i < links.size(); ++i) {
    const rz_CharData& left = charData[i];
    const rz_CharData& right = charData[i + 1];
    const double farthest = kFarthest * longestDiagonal(left, right);
    for (const rz_Pose& a : poses[i]) {
      std::vector<bool>& row = links[i].emplace_back(poses[i + 1].size(), false);
      if (row.empty()) continue;
      const rzXform<2> modelFromClient = static_cast<rzXform<2>>(a).inverse();
      for (std::size_t b = 0; b < row.size(); ++b) {
        const rz_Pose& pose = poses[i + 1][b];
        if (modelFromClient.mapPoint(pose.translation).len() > farthest) continue;
        const rzRadian turn = pose.rotation - a.rotation;
        row[b] = !(visibleTurn(turn, left.symmetry, right.symmetry) > kLargestTurn);
      }
    }
  }
}
