// SPDX-License-Identifier: Apache-2.0
#include "candidate_table.h"

#include <algorithm>
#include <cstdint>
#include <random>

namespace {

constexpr rzLong kRowLength = 20;
constexpr double kPitch = 12.0;
constexpr double kRowPitch = 40.0;

struct Found {
  rz_Pose pose;
  double score;
};

// What the character search makes of a row of instances, best first.
void addPosition(CandidateTable& table, rzLong key, const std::vector<Found>& found,
                 rzLong occurrences) {
  rz_CharData data;
  data.imageArea(rzAffineRectangle(rzVector<2>(0, 0), rzVector<2>(10, 0), rzVector<2>(0, 20)));
  data.isBlank = key < 0;
  data.costsWhenUnmatched = !found.empty();
  data.numOccurrences = occurrences;
  const rzLong count = rf_Count(found.size());
  data.numCandidates = std::min(count, occurrences);
  const double last = data.numCandidates > 0 ? found[rf_At(data.numCandidates - 1)].score : 0.0;
  while (data.numCandidates < count && found[rf_At(data.numCandidates)].score >= last - 0.15) {
    ++data.numCandidates;
  }
  data.mayStayUnmatched = !(count >= occurrences && found[rf_At(occurrences - 1)].score >= 0.7);
  table.keys.push_back(key);
  table.charData.push_back(data);
  table.poses.emplace_back();
  table.scores.emplace_back();
  for (const Found& f : found) {
    table.poses.back().push_back(f.pose);
    table.scores.back().push_back(f.score);
  }
}

}  // namespace

CandidateTable makeTable(const TableKind& kind, rzLong length, unsigned seed) {
  std::mt19937 random(seed);
  const auto uniform = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  const auto pose = [&](double x, double y, double degrees) {
    return rz_Pose(rzVector<2>(x, y), rzDegree(degrees), uniform(0.98, 1.02));
  };
  std::vector<rzLong> keys;
  const bool allDiffer = kind.numKeys == kAllDiffer;
  const rzLong numKeys = allDiffer ? length : kind.numKeys;
  std::vector<std::vector<Found>> found(static_cast<std::size_t>(numKeys));
  std::vector<rzLong> occurrences(found.size(), 0);
  for (rzLong i = 0; i < length; ++i) {
    const bool isSpace = kind.hasSpaces && i % 7 == 6;
    const rzLong drawn = std::uniform_int_distribution<rzLong>(0, numKeys - 1)(random);
    const rzLong key = isSpace ? -1 : allDiffer ? i : drawn;
    keys.push_back(key);
    if (key < 0) continue;
    ++occurrences[rf_At(key)];
    if (uniform(0, 1) < kind.missing) continue;
    found[rf_At(key)].push_back(
        {pose(kPitch * (i % kRowLength) + uniform(-0.5, 0.5),
              kRowPitch * (i / kRowLength) + uniform(-0.5, 0.5), uniform(-2, 2)),
         uniform(kind.leastScore, 0.98)});
  }
  const double width = kPitch * std::min(length, kRowLength);
  const double height = kRowPitch * (1 + length / kRowLength);
  for (std::size_t key = 0; key < found.size(); ++key) {
    const std::uint64_t numFalse = kind.missing >= 1.0 ? 2 : random() % 3;
    for (std::uint64_t k = 0; k < numFalse; ++k) {
      found[key].push_back(
          {pose(uniform(0, width), uniform(0, height), uniform(-180, 180)), uniform(0.4, 0.65)});
    }
    std::ranges::sort(found[key], std::ranges::greater(), &Found::score);
  }
  CandidateTable table;
  for (const rzLong key : keys) {
    if (key < 0) {
      addPosition(table, key, {}, 1);
    } else {
      addPosition(table, key, found[rf_At(key)], occurrences[rf_At(key)]);
    }
  }
  return table;
}
