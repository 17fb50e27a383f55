// SPDX-License-Identifier: Apache-2.0
//
// How much time do the tasks of a user take? Training one character, its symmetry probes included;
// finding one character over the full turn and scales 0.9 to 1.1, picture features computed afresh
// or already there; and the whole arrange call for texts of 8, 24 and 60 positions. Pictures are
// rendered with noise and a ramp of light; each run checks that what it timed found its text.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>

#include "oc/oc.h"
#include "rz/cx_align.h"
#include "tests/support/print/scene.h"

namespace {

constexpr const char* kFontFile = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";
constexpr double kCapHeight = 26.0;  // pels
constexpr double kPitch = 30.0;      // pels between characters
constexpr int kLineLength = 20;      // characters
const std::string kLetters = "ABCDEFGHKMNPQRSTUVWXYZ2345678";

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

rzOCAlphabet alphabet() {
  std::vector<rzPtrHandle_const<rzOCModel>> models;
  for (const char letter : kLetters) models.push_back(modelOf(letter));
  return rzOCAlphabet(models);
}

std::string textOf(std::size_t length) {
  std::string text;
  for (std::size_t i = 0; i < length; ++i) text += kLetters[i * 7 % kLetters.size()];
  return text;
}

// The text in lines, turned by seven degrees.
rzPelBuffer<unsigned char> printed(const std::string& text, int width, int height) {
  scene::Canvas canvas{width, height,
                       std::vector<float>(static_cast<std::size_t>(width * height), 0.0F)};
  const rzXform<2> turn(rzVector<2>(30.0, 60.0), 1.0, 1.0, rzRadian(0.0), rzDegree(7.0));
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto column = static_cast<double>(i % kLineLength);
    const auto line = static_cast<double>(i / kLineLength);
    const rzVector<2> at = turn * rzVector<2>(kPitch * column, 2.0 * kCapHeight * line);
    font().draw(static_cast<char32_t>(text[i]), {at.x(), at.y(), 7.0, 1.0}, canvas);
  }
  std::mt19937 random(11);
  return scene::photograph(canvas, scene::Look(), random);
}

void Train(benchmark::State& state) {
  const auto model = modelOf('R');
  const rzPtrHandle_const<rzOCAlphabet> one(
      new rzOCAlphabet(std::vector<rzPtrHandle_const<rzOCModel>>{model}));
  const auto dot = printed("", 16, 16);  // a picture with nothing in it
  rz_OCExtractModel extract;
  rz_OCExtractStringResult result;
  double milliseconds = 0.0;
  for (auto _ : state) {
    extract.search(one, {'R'}, dot, {}, {}, {}, result, nullptr, 0);
    milliseconds += result.trainTime();
  }
  state.counters["train_ms"] =
      benchmark::Counter(milliseconds / static_cast<double>(state.iterations()));
}
BENCHMARK(Train)->Unit(benchmark::kMillisecond);

void FindOne(benchmark::State& state) {
  const bool isFresh = state.range(2) != 0;
  const auto image =
      printed(textOf(20), static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  rzCXAlignPattern pattern;
  pattern.train(modelOf('R')->image(), 3);
  rzCXAlignRunParams kept;
  kept.acceptThreshold(0.4);
  kept.zoneEnable(3);
  kept.numToFind(3);
  kept.xyOverlap(0.2);
  const rzCXAlignRunParams untouched = kept;
  rzCXAlignResultSet set;
  pattern.run(image, kept, set);
  for (auto _ : state) {
    const rzCXAlignRunParams fresh = untouched;
    pattern.run(image, isFresh ? fresh : kept, set);
  }
  const bool found = !set.results().empty() && set.results().front().score() > 0.8;
  if (textOf(20).find('R') != std::string::npos && !found) state.SkipWithError("not found");
}
BENCHMARK(FindOne)
    ->ArgNames({"width", "height", "fresh"})
    ->Args({640, 480, 1})
    ->Args({640, 480, 0})
    ->Args({1280, 960, 1})
    ->Args({1280, 960, 0})
    ->Unit(benchmark::kMillisecond);

void Arrange(benchmark::State& state) {
  const std::string text = textOf(static_cast<std::size_t>(state.range(0)));
  const auto image = printed(text, 720, 400);
  const rzOCAlphabet letters = alphabet();
  const std::vector<rzLong> keys(text.begin(), text.end());
  rzOCArrangeResults results;
  for (auto _ : state) rfOCArrange(image, letters, keys, rzOCArrangeParams(), results);
  const auto matched = std::count(results.statusFlags().begin(), results.statusFlags().end(),
                                  rzOCArrangeDefs::eMatched);
  state.counters["matched"] = static_cast<double>(matched);
}
BENCHMARK(Arrange)->ArgName("positions")->Arg(8)->Arg(24)->Arg(60)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
