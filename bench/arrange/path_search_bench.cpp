// SPDX-License-Identifier: Apache-2.0
//
// How does the path search grow with the length of the text, and what makes it grow? The scenes
// differ in how many keys there are and how sure the scores are. Reported: the time of one search,
// and over several tables (as many as `seeds`) of the scene
//
//   tried     paths that were judged, median
//   waiting   most paths that waited at a time, largest
//   ns/trial  time over judged paths
//   checksum  of the paths found and the counts: a faster search that answers otherwise is seen
//
// and what the table of links takes when one key stands in the text again and again.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <ctime>

#include "candidate_table.h"
#include "oc/arrange/link_candidates.h"
#include "oc/arrange/path_search.h"

namespace {

struct NamedKind {
  const char* name;
  TableKind kind;
};

constexpr TableKind kOneKey = {1, false, 0.0, 0.75};
constexpr NamedKind kKinds[] = {
    {"all_differ_sure", {kAllDiffer, false, 0.0, 0.75}},
    {"letters_spaces_sure", {36, true, 0.0, 0.75}},
    {"digits_sure", {10, false, 0.0, 0.75}},
    {"letters_3%_missing", {36, false, 0.03, 0.75}},
    {"letters_weak", {36, false, 0.0, 0.55}},
    {"letters_10%_missing_weak", {36, false, 0.1, 0.55}},
    {"digits_10%_missing_weak", {10, false, 0.1, 0.55}},
    {"nothing_there", {36, false, 1.0, 0.55}},
    {"one_key", kOneKey},
};

struct Outcome {
  rz_PathSearchCounts counts;
  double seconds = 0.0;
  std::uint64_t checksum = 0;
};

std::uint64_t checksumOf(const rz_ArrangePath& path, const rz_PathSearchCounts& counts) {
  std::uint64_t sum = static_cast<std::uint64_t>(counts.tried);
  const auto take = [&](rzLong v) { sum = sum * 31 + static_cast<std::uint64_t>(v); };
  std::ranges::for_each(path.choices, take);
  std::ranges::for_each(path.lineStarts, take);
  take(counts.mostWaiting);
  return sum;
}

Outcome runSearch(const CandidateTable& t) {
  const rzOCArrangeParams params;
  const std::clock_t start = std::clock();
  rz_PathSearch search(t.keys, t.charData, t.poses, t.scores, params, false);
  while (search.runRound()) {
  }
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  return {search.counts(), seconds, checksumOf(search.best(), search.counts())};
}

// A search that runs into the limit takes seconds and is run once.
void PathSearch(benchmark::State& state) {
  const NamedKind& scene = kKinds[state.range(0)];
  const auto length = static_cast<rzLong>(state.range(1));
  std::vector<CandidateTable> tables;
  for (unsigned seed = 1; seed <= static_cast<unsigned>(state.range(2)); ++seed) {
    tables.push_back(makeTable(scene.kind, length, seed));
  }
  std::vector<Outcome> outcomes(tables.size());
  double seconds = 0.0;
  for (auto _ : state) {
    std::ranges::transform(tables, outcomes.begin(), runSearch);
    double sum = 0.0;
    for (const Outcome& outcome : outcomes) sum += outcome.seconds;
    state.SetIterationTime(sum / static_cast<double>(tables.size()));
    seconds += sum;
  }
  std::vector<rzLong> tried;
  rzLong waiting = 0;
  double allTried = 0.0;
  std::uint64_t checksum = 0;
  for (const Outcome& outcome : outcomes) {
    tried.push_back(outcome.counts.tried);
    waiting = std::max(waiting, outcome.counts.mostWaiting);
    allTried += outcome.counts.tried;
    checksum = checksum * 31 + outcome.checksum;
  }
  std::ranges::sort(tried);
  state.SetLabel(scene.name);
  state.counters["tried"] = tried[tried.size() / 2];
  state.counters["waiting"] = waiting;
  state.counters["ns/trial"] = 1e9 * seconds / static_cast<double>(state.iterations()) / allTried;
  state.counters["checksum"] = static_cast<double>(checksum % 100000);
}

void addScenes(benchmark::internal::Benchmark* b) {
  constexpr int kDigitsWeak = 6, kNothingThere = 7, kOneKeyScene = 8;
  for (const int length : {8, 24, 60, 120}) {
    for (int kind = 0; kind < static_cast<int>(std::size(kKinds)); ++kind) {
      if (kind == kOneKeyScene && length > 24) continue;
      const bool meetsLimit =
          (kind == kDigitsWeak && length > 24) || (kind == kNothingThere && length > 8);
      b->Args({kind, length, meetsLimit ? 1 : 7});
    }
  }
}
BENCHMARK(PathSearch)
    ->ArgNames({"scene", "length", "seeds"})
    ->Apply(addScenes)
    ->UseManualTime()
    ->MinTime(0.02)
    ->Unit(benchmark::kMillisecond);

void LinksOfOneKey(benchmark::State& state) {
  const CandidateTable t = makeTable(kOneKey, static_cast<rzLong>(state.range(0)), 1);
  rz_LinkTable links;
  for (auto _ : state) rf_LinkCandidates(t.charData, t.poses, links);
  state.counters["tables"] = static_cast<double>(links.numDistinctPairs());
}
BENCHMARK(LinksOfOneKey)
    ->ArgName("length")
    ->Arg(24)
    ->Arg(120)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
