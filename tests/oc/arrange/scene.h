// SPDX-License-Identifier: Apache-2.0
//
// Candidate tables made by hand: what the arranger sees once the characters have been searched for.
// A character's box is 10 wide and 20 high with its origin in the upper left corner.
#pragma once

#include <initializer_list>
#include <random>
#include <vector>

#include "oc/arrange/arrange_records.h"
#include "oc/arrange/evaluate_path.h"
#include "oc/arrange_params.h"

constexpr double kBoxWidth = 10.0;
constexpr double kBoxHeight = 20.0;
constexpr double kPitch = 12.0;  // from character to character, in comfort

inline rz_Pose poseAt(double x, double y, double degrees = 0.0, double scale = 1.0) {
  return {rzVector<2>(x, y), rzDegree(degrees), scale};
}

struct Candidate {
  rz_Pose pose;
  double score;
};

struct Scene {
  rz_CharData& add(rzLong key, const std::vector<Candidate>& candidates,
                   rz_OCExtractDefs::Symmetry symmetry = rz_OCExtractDefs::eNoSymmetry) {
    keys.push_back(key);
    poses.emplace_back();
    scores.emplace_back();
    for (const Candidate& candidate : candidates) {
      poses.back().push_back(candidate.pose);
      scores.back().push_back(candidate.score);
    }
    rz_CharData data;
    data.symmetry = symmetry;
    data.numCandidates = rf_Count(candidates.size());
    data.imageArea(rzAffineRectangle(rzVector<2>(0, 0), rzVector<2>(kBoxWidth, 0),
                                     rzVector<2>(0, kBoxHeight)));
    charData.push_back(data);
    return charData.back();
  }
  rz_CharData& addBlank(rzLong key) {
    rz_CharData& data = add(key, {});
    data.isBlank = true;
    data.costsWhenUnmatched = false;
    return data;
  }

  bool evaluate(const rz_ArrangePath& path, rz_ArrangeCost& cost, bool isFinal = false,
                bool isLeftHanded = false) const {
    return rf_EvaluatePath(path, keys, charData, poses, scores, params, isLeftHanded, isFinal,
                           cost);
  }

  std::vector<rzLong> keys;
  std::vector<rz_CharData> charData;
  rz_PoseTable poses;
  rz_ScoreTable scores;
  rzOCArrangeParams params;
};

/// A row of `count` characters of different keys with one perfect candidate each.
inline Scene rowScene(rzLong count, double score = 0.9) {
  Scene scene;
  for (rzLong i = 0; i < count; ++i) scene.add(100 + i, {{poseAt(kPitch * i, 0), score}});
  return scene;
}

inline rz_ArrangePath pathOf(std::initializer_list<rzLong> choices,
                             std::initializer_list<rzLong> lineStarts) {
  rz_ArrangePath path;
  path.choices = choices;
  path.lineStarts = lineStarts;
  return path;
}

/// A text of `count` positions printed in rows or on a ring, with repeated keys, symmetries,
/// spaces, missing characters and false candidates. Positions of a key share their candidates.
inline Scene randomScene(std::mt19937& random, rzLong count) {
  const auto uniform = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  const auto below = [&](rzLong end) {
    return std::uniform_int_distribution<rzLong>(0, end - 1)(random);
  };
  const rzLong numKeys = 1 + below(8);
  const rzLong rowLength = 2 + below(6);
  const bool isRing = below(3) == 0;
  const auto jitter = [&](double size) { return uniform(-size, size); };
  const auto truePose = [&](rzLong i) {
    const double scale = uniform(0.95, 1.05);
    if (!isRing) {
      return poseAt(kPitch * (i % rowLength) + jitter(1), 30.0 * (i / rowLength) + jitter(1),
                    jitter(5), scale);
    }
    const double degrees = 20.0 * i;
    const rzVector<2> place(36.0, rzDegree(degrees));
    return poseAt(place.x() + jitter(1), place.y() + jitter(1), degrees + 90 + jitter(5), scale);
  };

  std::vector<std::vector<Candidate>> candidates(static_cast<std::size_t>(numKeys));
  std::vector<rzLong> keys;
  for (rzLong i = 0; i < count; ++i) {
    keys.push_back(below(numKeys));
    if (below(10) > 0) candidates[rf_At(keys.back())].push_back({truePose(i), uniform(0.5, 1.0)});
    if (below(3) == 0) {
      candidates[rf_At(keys.back())].push_back(
          {poseAt(uniform(0, 80), uniform(0, 80), uniform(-180, 180)), uniform(0.4, 0.8)});
    }
  }
  std::vector<rz_OCExtractDefs::Symmetry> symmetries;
  for (rzLong k = 0; k < numKeys; ++k) {
    symmetries.push_back(static_cast<rz_OCExtractDefs::Symmetry>(below(5) % 3));
  }
  Scene scene;
  for (const rzLong key : keys) {
    if (below(8) == 0) {
      scene.addBlank(-1);
      continue;
    }
    rz_CharData& data = scene.add(key, candidates[rf_At(key)], symmetries[rf_At(key)]);
    data.mayStayUnmatched = data.numCandidates == 0 || below(3) > 0;
    data.costsWhenUnmatched = data.numCandidates > 0;
    if (data.numCandidates > 2 && below(3) == 0) --data.numCandidates;
  }
  rzOCArrangeParams& params = scene.params;
  params.lineType(static_cast<rzOCArrangeDefs::LineType>(below(3)));
  params.isTextDirectionSpecified(below(4) == 0);
  params.orientationMode(static_cast<rzOCArrangeDefs::OrientationMode>(below(2)));
  params.orientationReference(static_cast<rzOCArrangeDefs::OrientationReference>(below(2)));
  if (below(3) == 0) params.maxLines(1 + below(3));
  if (below(3) == 0) params.maxUnmatchedChars(below(4));
  if (below(4) == 0) params.orientationCost(0.0);
  return scene;
}
