// SPDX-License-Identifier: Apache-2.0
//
// Where does the time of an arrange call go? Texts of 8, 24, 60 and 120 positions on pictures from
// clean to hopeless. The stages are called one after the other as the arranger calls them, and what
// they find is compared with the answer of the whole call. Reported per call: milliseconds of CPU
// time of the character search, the path search, the refinement and the rest; characters matched;
// paths tried.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <random>
#include <string>

#include "oc/arrange/assign_positions.h"
#include "oc/arrange/build_arrangement.h"
#include "oc/arrange/character_data.h"
#include "oc/arrange/evaluate_path.h"
#include "oc/arrange/handedness.h"
#include "oc/arrange/path_search.h"
#include "oc/arrange/search_characters.h"
#include "oc/arrange/search_paths.h"
#include "oc/oc.h"
#include "tests/support/print/scene.h"

namespace {

constexpr const char* kFontFile = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
constexpr double kCapHeight = 26.0;  // pels
constexpr double kPitch = 30.0;      // pels between characters
constexpr double kDegrees = 7.0;
const std::string kLetters = "ABCDEFGHKMNPQRSTUVWXYZ2345678";

struct PictureKind {
  const char* name;
  std::size_t numLetters;    // of the alphabet, that the text uses
  std::size_t numLines;      // 0: lines of 20 characters
  std::size_t missingEvery;  // 0: all are printed; 1: none
};
constexpr PictureKind kKinds[] = {
    {"clean", 29, 0, 0},    {"three_lines", 29, 3, 0},           {"10%_missing", 29, 0, 10},
    {"4_letters", 4, 0, 0}, {"4_letters_10%_missing", 4, 0, 10}, {"nothing_there", 29, 0, 1},
};

const scene::Font& font() {
  static const scene::Font font(kFontFile, scene::Font::sizeForCapHeight(kFontFile, kCapHeight));
  return font;
}

rzPtrHandle_const<rzOCModel> modelOf(char letter) {
  rzVector<2> origin;
  rzPelBuffer<unsigned char> image =
      scene::trainingImage(font(), static_cast<char32_t>(letter), 0.7, origin);
  image.clientFromImageXform(rzXform<2>(rzMatrix<2>(), -origin));
  return new rzOCModel(letter, image, image.window(), rzOCModel::eNormal, std::string(1, letter));
}

rzPtrHandle_const<rzOCAlphabet> alphabet() {
  std::vector<rzPtrHandle_const<rzOCModel>> models;
  for (const char letter : kLetters) models.push_back(modelOf(letter));
  return new rzOCAlphabet(models);
}

std::string textOf(const PictureKind& kind, std::size_t length) {
  std::string text;
  for (std::size_t i = 0; i < length; ++i) text += kLetters[i * 7 % kind.numLetters];
  return text;
}

// The text in lines, turned by seven degrees. Other characters stand where nothing of it does.
rzPelBuffer<unsigned char> printed(const PictureKind& kind, const std::string& text) {
  constexpr std::size_t kLineLength = 20;
  const std::size_t columns = kind.numLines > 0 ? (text.size() + kind.numLines - 1) / kind.numLines
                                                : std::min(kLineLength, text.size());
  const std::size_t lines = (text.size() + columns - 1) / columns;
  const rzXform<2> turn(rzVector<2>(60.0 + 7.0 * static_cast<double>(lines), 60.0), 1.0, 1.0,
                        rzRadian(0.0), rzDegree(kDegrees));
  const rzVector<2> end = turn * rzVector<2>(kPitch * static_cast<double>(columns),
                                             2.0 * kCapHeight * static_cast<double>(lines));
  scene::Canvas canvas{static_cast<int>(end.x()) + 80, static_cast<int>(end.y()) + 40, {}};
  canvas.ink.assign(static_cast<std::size_t>(canvas.width * canvas.height), 0.0F);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isMissing = kind.missingEvery > 0 && i % kind.missingEvery == kind.missingEvery / 2;
    if (isMissing && kind.missingEvery > 1) continue;
    const auto code = static_cast<char32_t>(isMissing ? static_cast<char>('a' + i % 26) : text[i]);
    const rzVector<2> at = turn * rzVector<2>(kPitch * static_cast<double>(i % columns),
                                              2.0 * kCapHeight * static_cast<double>(i / columns));
    font().draw(code, {at.x(), at.y(), kDegrees, 1.0}, canvas);
  }
  std::mt19937 random(11);
  return scene::photograph(canvas, scene::Look(), random);
}

class Stopwatch {
 public:
  /// Milliseconds of CPU time since the last lap.
  double lap() {
    const std::clock_t now = std::clock();
    const double ms = 1e3 * static_cast<double>(now - last_) / CLOCKS_PER_SEC;
    last_ = now;
    return ms;
  }

 private:
  std::clock_t last_ = std::clock();
};

struct Staged {
  double searchMs = 0.0, pathMs = 0.0, refineMs = 0.0, restMs = 0.0;
  rzLong tried = 0;
  std::vector<double> scores;
  std::vector<rzOCArrangeDefs::CharStatus> statuses;
};

Staged runStages(const rzPelBuffer_const<unsigned char>& image,
                 const rzPtrHandle_const<rzOCAlphabet>& letters, const std::vector<rzLong>& keys) {
  const rzOCArrangeParams params;
  Staged staged;
  Stopwatch watch;
  std::vector<rz_CharData> charData = rf_CharDataOf(*letters, keys);
  rz_PoseTable poses;
  rz_ScoreTable scores;
  double unused = 0.0;
  rf_SearchCharacters(image, {}, letters, keys, params, poses, scores, charData, unused, nullptr,
                      0);
  staged.searchMs += watch.lap();

  const bool isLeftHanded = rf_IsLeftHanded(image);
  rz_PathSearch search(keys, charData, poses, scores, params, isLeftHanded);
  while (search.runRound()) {
  }
  rz_ArrangePath path = search.best();
  staged.tried = search.counts().tried;
  staged.pathMs += watch.lap();

  rf_SplitTrailingUnmatched(path);
  while (path.choices.size() < keys.size()) path.append(kUnmatched, true);
  rz_ArrangeCost cost;
  rf_EvaluatePath(path, keys, charData, poses, scores, params, isLeftHanded, true, cost);
  std::vector<rz_Pose> positionPoses;
  rf_AssignPositions(poses, scores, path, cost, charData, params, positionPoses, staged.scores,
                     staged.statuses);
  staged.restMs += watch.lap();
  rf_RefineArrangement(image, letters, keys, positionPoses, staged.statuses, staged.scores, nullptr,
                       0);
  staged.refineMs += watch.lap();
  rzPtrHandle_const<rzOCLineArrangement> arrangement;
  rzXform<2> clientFromArrangement;
  rf_BuildArrangement(letters, keys, path, cost, positionPoses, params.compPoseUncertainties(),
                      arrangement, clientFromArrangement);
  staged.restMs += watch.lap();
  return staged;
}

void Arrange(benchmark::State& state) {
  const PictureKind& kind = kKinds[state.range(0)];
  const std::string text = textOf(kind, static_cast<std::size_t>(state.range(1)));
  const auto image = printed(kind, text);
  const auto letters = alphabet();
  const std::vector<rzLong> keys(text.begin(), text.end());
  rzOCArrangeResults whole;
  rfOCArrange(image, *letters, keys, rzOCArrangeParams(), whole);
  Staged sum, last;
  for (auto _ : state) {
    last = runStages(image, letters, keys);
    sum.searchMs += last.searchMs;
    sum.pathMs += last.pathMs;
    sum.refineMs += last.refineMs;
    sum.restMs += last.restMs;
  }
  if (last.scores != whole.scores()) state.SkipWithError("the stages answer otherwise");
  const auto perCall = [](double value) {
    return benchmark::Counter(value, benchmark::Counter::kAvgIterations);
  };
  state.SetLabel(kind.name);
  state.counters["search"] = perCall(sum.searchMs);
  state.counters["paths"] = perCall(sum.pathMs);
  state.counters["refine"] = perCall(sum.refineMs);
  state.counters["rest"] = perCall(sum.restMs);
  state.counters["tried"] = last.tried;
  state.counters["matched"] =
      static_cast<double>(std::ranges::count(last.statuses, rzOCArrangeDefs::eMatched));
}
BENCHMARK(Arrange)
    ->ArgNames({"picture", "positions"})
    ->ArgsProduct({{0, 1, 2, 3, 4, 5}, {8, 24, 60, 120}})
    ->MinTime(0.2)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
