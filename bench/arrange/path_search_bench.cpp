// SPDX-License-Identifier: Apache-2.0
//
// How does the path search grow with the length of the text, and what makes it grow? Candidate
// tables of a label of rows of 20 characters with up to two false candidates a key; the rows of the
// report differ in how many keys there are and how sure the scores are. Reported per run: time, and
// a checksum of the path, so that a faster search that answers otherwise is seen.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <random>

#include "oc/arrange/search_paths.h"

namespace {

constexpr rzLong kRowLength = 20;
constexpr double kPitch = 12.0;
constexpr double kRowPitch = 40.0;

struct Kind {
  rzLong numKeys;
  bool hasSpaces;
  double missing;  // share of characters of which nothing is found
  double leastScore;
};

constexpr Kind kKinds[] = {
    {1000, false, 0.0, 0.75},  // all keys differ, all sure
    {36, true, 0.0, 0.75},     // letters and spaces, all sure
    {10, false, 0.0, 0.75},    // digits, all sure
    {36, false, 0.03, 0.75},   // letters, some missing
    {36, false, 0.0, 0.55},    // letters, some weak
    {36, false, 0.1, 0.55},    // letters, some missing, some weak
    {10, false, 0.1, 0.55},    // digits, some missing, some weak
    {36, false, 1.0, 0.55},    // nothing of the text is there
};

struct Table {
  std::vector<rzLong> keys;
  std::vector<rz_CharData> charData;
  rz_PoseTable poses;
  rz_ScoreTable scores;
};

struct Found {
  rz_Pose pose;
  double score;
};

// What the character search makes of a row of instances, best first.
void addPosition(Table& table, rzLong key, const std::vector<Found>& found, rzLong occurrences) {
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

Table makeTable(const Kind& kind, rzLong length, unsigned seed) {
  std::mt19937 random(seed);
  const auto uniform = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  const auto pose = [&](double x, double y, double degrees) {
    return rz_Pose(rzVector<2>(x, y), rzDegree(degrees), uniform(0.98, 1.02));
  };
  std::vector<rzLong> keys;
  std::vector<std::vector<Found>> found(static_cast<std::size_t>(kind.numKeys));
  std::vector<rzLong> occurrences(found.size(), 0);
  for (rzLong i = 0; i < length; ++i) {
    const bool isSpace = kind.hasSpaces && i % 7 == 6;
    const rzLong drawn = std::uniform_int_distribution<rzLong>(0, kind.numKeys - 1)(random);
    const rzLong key = isSpace ? -1 : kind.numKeys >= 1000 ? i : drawn;
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
  Table table;
  for (const rzLong key : keys) {
    if (key < 0) {
      addPosition(table, key, {}, 1);
    } else {
      addPosition(table, key, found[rf_At(key)], occurrences[rf_At(key)]);
    }
  }
  return table;
}

void PathSearch(benchmark::State& state) {
  const Kind& kind = kKinds[state.range(0)];
  constexpr unsigned kSeeds = 3;
  std::vector<Table> tables;
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    tables.push_back(makeTable(kind, static_cast<rzLong>(state.range(1)), seed));
  }
  const rzOCArrangeParams params;
  std::size_t next = 0;
  std::vector<std::uint64_t> checksums(kSeeds, 0);
  for (auto _ : state) {
    const Table& t = tables[next];
    rz_ArrangePath path;
    rf_SearchPaths({}, t.keys, t.charData, t.poses, t.scores, params, path);
    std::uint64_t checksum = 1;
    for (const rzLong v : path.choices) checksum = checksum * 31 + static_cast<std::uint64_t>(v);
    for (const rzLong v : path.lineStarts) checksum = checksum * 31 + static_cast<std::uint64_t>(v);
    checksums[next] = checksum;
    next = (next + 1) % kSeeds;
  }
  std::uint64_t all = 0;
  for (const std::uint64_t checksum : checksums) all = all * 31 + checksum;
  state.counters["checksum"] = static_cast<double>(all % 100000);
}

BENCHMARK(PathSearch)
    ->ArgNames({"kind", "length"})
    ->ArgsProduct({{0, 1, 2, 3, 4, 5, 6, 7}, {8, 24, 60, 120}})
    ->MinTime(0.05)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
