// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/search_paths.h"

#include "oc/arrange/handedness.h"
#include "oc/arrange/path_search.h"

bool rf_SearchPaths(const rzPelBuffer_const<unsigned char>& image,
                    const std::vector<rzLong>& targetKeys, const std::vector<rz_CharData>& charData,
                    const rz_PoseTable& poses, const rz_ScoreTable& scores,
                    const rzOCArrangeParams& params, rz_ArrangePath& path) {
  rz_PathSearch search(targetKeys, charData, poses, scores, params, rf_IsLeftHanded(image));
  while (search.runRound()) {
  }
  path = search.best();
  if (path.choices.size() == targetKeys.size()) return true;
  rf_SplitTrailingUnmatched(path);
  while (path.choices.size() < targetKeys.size()) path.append(kUnmatched, true);
  return false;
}

void rf_SplitTrailingUnmatched(rz_ArrangePath& path) {
  if (path.lineStarts.empty() || path.size() - path.lineStarts.back() <= 1) return;
  rzLong first = path.size();
  while (first > 0 && path.choices[rf_At(first - 1)] == kUnmatched) --first;
  for (; first < path.size(); ++first) path.lineStarts.push_back(first);
}
