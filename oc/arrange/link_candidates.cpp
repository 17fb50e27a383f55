// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/link_candidates.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

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

bool areAlike(const rz_Pose& a, const rz_Pose& b) {
  return a.translation == b.translation && a.rotation == b.rotation && a.scale == b.scale;
}

bool areAlike(const rz_CharData& a, const rz_CharData& b) {
  return a.symmetry == b.symmetry && a.diagonalA() == b.diagonalA() &&
         a.diagonalB() == b.diagonalB();
}

// For each position the first one whose links must be the same.
std::vector<std::size_t> firstAlike(const std::vector<rz_CharData>& charData,
                                    const rz_PoseTable& poses) {
  std::vector<std::size_t> distinct;
  std::vector<std::size_t> first(poses.size());
  for (std::size_t i = 0; i < poses.size(); ++i) {
    const auto found = std::ranges::find_if(distinct, [&](std::size_t k) {
      return areAlike(charData[k], charData[i]) &&
             std::ranges::equal(poses[k], poses[i],
                                [](const rz_Pose& a, const rz_Pose& b) { return areAlike(a, b); });
    });
    first[i] = found != distinct.end() ? *found : i;
    if (first[i] == i) distinct.push_back(i);
  }
  return first;
}

rz_LinkTable::Pair linksBetween(const rz_CharData& left, const std::vector<rz_Pose>& leftPoses,
                                const rz_CharData& right, const std::vector<rz_Pose>& rightPoses) {
  rz_LinkTable::Pair links(leftPoses.size(), std::vector<bool>(rightPoses.size(), false));
  if (rightPoses.empty()) return links;
  const double farthest = kFarthest * longestDiagonal(left, right);
  for (std::size_t a = 0; a < leftPoses.size(); ++a) {
    const rzXform<2> modelFromClient = static_cast<rzXform<2>>(leftPoses[a]).inverse();
    for (std::size_t b = 0; b < rightPoses.size(); ++b) {
      if (modelFromClient.mapPoint(rightPoses[b].translation).len() > farthest) continue;
      const rzRadian turn = rightPoses[b].rotation - leftPoses[a].rotation;
      links[a][b] = !(visibleTurn(turn, left.symmetry, right.symmetry) > kLargestTurn);
    }
  }
  return links;
}

}  // namespace

void rf_LinkCandidates(const std::vector<rz_CharData>& charData, const rz_PoseTable& poses,
                       rz_LinkTable& links) {
  links = {};
  const std::vector<std::size_t> first = firstAlike(charData, poses);
  std::map<std::pair<std::size_t, std::size_t>, std::size_t> known;
  for (std::size_t i = 0; i + 1 < poses.size(); ++i) {
    const auto [pair, isNew] = known.try_emplace({first[i], first[i + 1]}, links.pairs_.size());
    if (isNew) {
      links.pairs_.push_back(linksBetween(charData[i], poses[i], charData[i + 1], poses[i + 1]));
    }
    links.pairOf_.push_back(pair->second);
  }
}
