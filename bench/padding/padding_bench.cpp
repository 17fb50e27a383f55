// SPDX-License-Identifier: Apache-2.0
//
// How long padding takes, against its limit: two plain copies of the picture and the filtering of
// one row above and below the area and of one column on either side. Padding in place is held
// against copies into a buffer that is there already, padding that replaces the buffer against
// copies into new ones. "ofLimit" is the share of the limit that was used; above 1 is an
// error. The arguments are the area: column, row, width, height of 1000 by 1000.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <vector>

#include "oc/occhar/row_median.h"
#include "oc/padding.h"
#include "rz/pel_functions.h"

namespace {

using Buffer = rzPelBuffer<unsigned char>;
using Image = rzPelBuffer_const<unsigned char>;

constexpr rzLong kSide = 1000;
constexpr std::int64_t kIterations = 2000;  // enough for medians; a few runs would mean nothing

// A slow slope with texture, so that medians have something to find.
Buffer picture() {
  Buffer image(rzPelRect(0, 0, kSide, kSide), 32);
  for (rzLong y = 0; y < kSide; ++y) {
    for (rzLong x = 0; x < kSide; ++x) {
      *image.pointToPel(x, y) = static_cast<unsigned char>((x + 2 * y) / 16 + (7 * x * y) % 41);
    }
  }
  return image;
}

template <class Action>
double microseconds(Action action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
      .count();
}

double median(std::vector<double>& times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

// The two rows and two columns that are filtered where the area has margins on all sides.
void filterEdges(const Image& image, const rzPelRect& area) {
  for (rzLong side = 0; side < 2; ++side) {
    std::vector<unsigned char> row(image.pointToPel(0, area.y()),
                                   image.pointToPel(0, area.y()) + kSide);
    rf_medianFilterRow_(row);
    benchmark::DoNotOptimize(row.data());
    std::vector<unsigned char> column(static_cast<std::size_t>(area.height()));
    for (rzLong i = 0; i < area.height(); ++i) {
      column[static_cast<std::size_t>(i)] = *image.pointToPel(area.x(), area.y() + i);
    }
    rf_medianFilterRow_(column);
    benchmark::DoNotOptimize(column.data());
  }
}

rzPelRect areaOf(const benchmark::State& state) {
  return {static_cast<rzLong>(state.range(0)), static_cast<rzLong>(state.range(1)),
          static_cast<rzLong>(state.range(2)), static_cast<rzLong>(state.range(3))};
}

// The three times are taken in turn, so that what slows the machine down slows all of them.
template <class Pad, class Copy>
void againstLimit(benchmark::State& state, const Image& source, Pad pad, Copy copy) {
  const rzPelRect area = areaOf(state);
  std::vector<double> padded, copied, filtered;
  for (auto _ : state) {
    copied.push_back(microseconds(copy));
    filtered.push_back(microseconds([&] { filterEdges(source, area); }));
    padded.push_back(microseconds(pad));
    state.SetIterationTime(padded.back() * 1e-6);
  }
  const double limit = 2.0 * median(copied) + median(filtered);
  state.counters["copy_us"] = median(copied);
  state.counters["filter_us"] = median(filtered);
  state.counters["pad_us"] = median(padded);
  state.counters["ofLimit"] = median(padded) / limit;
  if (median(padded) > limit) state.SkipWithError("padding is slower than its limit");
}

void PadInPlace(benchmark::State& state) {
  const Image source = picture();
  const Buffer target = picture();
  Buffer copy = picture();
  againstLimit(
      state, source, [&] { rf_OCBackgroundPadImage(target, areaOf(state)); },
      [&] { rfPelCopy(source, copy); });
}

void PadACopy(benchmark::State& state) {
  const Image source = picture();
  againstLimit(
      state, source,
      [&] {
        Image padded = source;
        rf_OCBackgroundPadImage(padded, areaOf(state));
        benchmark::DoNotOptimize(padded);
      },
      [&] {
        const Image copy = rfPelCopy(source);
        benchmark::DoNotOptimize(copy);
      });
}

void areas(benchmark::internal::Benchmark* bench) {
  for (const std::array<std::int64_t, 4>& area : {std::array<std::int64_t, 4>{1, 1, 998, 998},
                                                  {250, 250, 500, 500},
                                                  {499, 499, 2, 2},
                                                  {499, 1, 2, 998},
                                                  {1, 499, 998, 2},
                                                  {1, 1, 2, 998}}) {
    bench->Args({area.begin(), area.end()});
  }
  bench->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(kIterations);
}

BENCHMARK(PadInPlace)->Apply(areas);
BENCHMARK(PadACopy)->Apply(areas);

}  // namespace
