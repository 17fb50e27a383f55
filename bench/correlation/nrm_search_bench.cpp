// SPDX-License-Identifier: Apache-2.0
//
// How long one run of a correlation model over the patch of a character takes, and, where OpenCV is
// installed, its matchTemplate on the same pels on one thread, both with the search for the peak.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "platform/vision/correlation/nrm_search.h"
#include "support/draw.h"
#include "support/noise.h"

#ifdef OC_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

constexpr int kNumPatches = 8;  // different ones, so that no branch is learnt by heart

struct Scene {
  rzPelBuffer_const<unsigned char> pattern;
  std::vector<rzPelBuffer_const<unsigned char>> patches;

  // A letter in a template of that size, and noisy patches twice as wide and 1.875 times as high.
  Scene(rzLong width, rzLong height) {
    const auto letterAt = [&](rzPelBuffer<unsigned char>& image, double x, double y) {
      const double scale = static_cast<double>(height) / 40.0;
      draw::fill(image, draw::letterR(),
                 rzXform<2>(rzMatrix<2>(scale, 0.0, 0.0, scale), rzVector<2>(x, y)));
    };
    rzPelBuffer<unsigned char> model = draw::paper(width, height);
    letterAt(model, 0.5 * width, 0.5 * height);
    pattern = model;
    for (int k = 0; k < kNumPatches; ++k) {
      auto patch = noise(rzPelRect(0, 0, 2 * width, height * 15 / 8), static_cast<std::uint32_t>(k),
                         190, 220);
      letterAt(patch, width + 0.3 * k, 0.9 * height + 0.7 * k);
      patches.push_back(patch);
    }
  }
};

void NrmSearch(benchmark::State& state) {
  const Scene scene(static_cast<rzLong>(state.range(0)), static_cast<rzLong>(state.range(1)));
  rzNrmSearchModel model;
  model.train(scene.pattern, rzNrmSearchTrainParams(), nullptr, 0);
  rzNrmSearchRunParams params(rzNrmSearchDefs::eCorrelation);
  params.accept(0.3);
  params.maxNumResults(1);
  rzNrmSearchResultSet set;
  double sum = 0.0;
  std::size_t k = 0;
  for (auto _ : state) {
    model.run(scene.patches[k++ % kNumPatches], params, rzPelRect(0, 0, 1, 1), set, nullptr, 0);
    sum += set.results().empty() ? 0.0 : set.results().front().location().x();
  }
  benchmark::DoNotOptimize(sum);
}

#ifdef OC_HAVE_OPENCV
cv::Mat matOf(const rzPelBuffer_const<unsigned char>& image) {
  const cv::Mat view(image.height(), image.width(), CV_8UC1,
                     const_cast<unsigned char*>(image.pointToPel(0, 0)),
                     static_cast<std::size_t>(image.rowUpdate()));
  return view.clone();
}

void MatchTemplate(benchmark::State& state) {
  cv::setNumThreads(1);
  const Scene scene(static_cast<rzLong>(state.range(0)), static_cast<rzLong>(state.range(1)));
  const cv::Mat pattern = matOf(scene.pattern);
  std::vector<cv::Mat> patches;
  for (const auto& patch : scene.patches) patches.push_back(matOf(patch));
  cv::Mat surface;
  double largestGap = 0.0;
  std::size_t k = 0;
  for (auto _ : state) {
    cv::matchTemplate(patches[k++ % kNumPatches], pattern, surface, cv::TM_CCOEFF_NORMED);
    cv::Point peak;
    cv::minMaxLoc(surface, nullptr, nullptr, nullptr, &peak);
    benchmark::DoNotOptimize(peak);
  }
  // How far apart the peaks of both lie, each refined by the same parabola.
  rzNrmSearchModel model;
  model.train(scene.pattern, rzNrmSearchTrainParams(), nullptr, 0);
  for (std::size_t i = 0; i < patches.size(); ++i) {
    rzNrmSearchResultSet set;
    model.run(scene.patches[i], rzNrmSearchRunParams(rzNrmSearchDefs::eCorrelation),
              rzPelRect(0, 0, 1, 1), set, nullptr, 0);
    cv::matchTemplate(patches[i], pattern, surface, cv::TM_CCOEFF_NORMED);
    cv::Point peak;
    cv::minMaxLoc(surface, nullptr, nullptr, nullptr, &peak);
    const auto vertex = [](float a, float b, float c) { return 0.5 * (a - c) / (a - 2 * b + c); };
    const auto r = [&](int dx, int dy) { return surface.at<float>(peak.y + dy, peak.x + dx); };
    const rzVector<2> place(peak.x + vertex(r(-1, 0), r(0, 0), r(1, 0)),
                            peak.y + vertex(r(0, -1), r(0, 0), r(0, 1)));
    largestGap = std::max(largestGap, place.distance(set.results().front().location()));
  }
  state.counters["pels_from_ours"] = largestGap;
}
BENCHMARK(MatchTemplate)->Args({30, 40})->Args({60, 80})->Unit(benchmark::kMicrosecond);
#endif

BENCHMARK(NrmSearch)->Args({30, 40})->Args({60, 80})->Unit(benchmark::kMicrosecond);

}  // namespace
