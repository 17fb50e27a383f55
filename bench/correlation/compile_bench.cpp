// SPDX-License-Identifier: Apache-2.0
//
// How long an alphabet takes to compile: capitals and digits, at several sizes of the print.
#include <benchmark/benchmark.h>

#include "oc/alphabet.h"
#include "support/font.h"

namespace {

void CompileAlphabet(benchmark::State& state) {
  const Font font("/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf",
                  static_cast<unsigned>(state.range(0)));
  std::vector<rzPtrHandle_const<rzOCModel>> models;
  for (const char c : std::string("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789")) {
    models.push_back(font.character(c));
  }
  for (auto _ : state) {
    rzOCAlphabet alphabet(models);
    alphabet.compile();
    benchmark::DoNotOptimize(alphabet.confusion('A', 'B'));
  }
}
BENCHMARK(CompileAlphabet)->Arg(24)->Arg(46)->Arg(64)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
