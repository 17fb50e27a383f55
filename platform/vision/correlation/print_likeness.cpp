// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/print_likeness.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace {

// What missing ink counts against ink too many. Measured on the capitals and digits of four faces,
// at the level where one pair of different characters in a hundred passes: of the characters
// without their lower quarter 32 % pass when both count alike, 58 % with a half, 85 % with three
// tenths and 92 % with a quarter; but the less it is, the more does blur, which is ink beside the
// strokes, tell against the character itself.
constexpr double kMissingCounts = 0.3;
constexpr double kInkShare = 0.3;  // so much of the ink must be left for its grey to be known
constexpr double kPaperShare = 0.5;
constexpr std::int32_t kUnit = 1000;         // blackness of ink; paper has 0
constexpr std::int32_t kBeyond = kUnit / 5;  // further than so much beyond them is no difference

using Histogram = std::array<std::size_t, 256>;

// The grey below which `share` of the pels lie, counted from the dark or from the light end.
int quantile(const Histogram& histogram, std::size_t count, double share, bool fromDark) {
  const auto rank = static_cast<std::size_t>(share * static_cast<double>(count - 1));
  std::size_t passed = 0;
  for (int k = 0; k < 256; ++k) {
    const int grey = fromDark ? k : 255 - k;
    passed += histogram[static_cast<std::size_t>(grey)];
    if (passed > rank) return grey;
  }
  return fromDark ? 255 : 0;
}

int medianOfRim(const rzPelBuffer_const<unsigned char>& pattern) {
  const rzPelRect window = pattern.window();
  Histogram histogram{};
  std::size_t count = 0;
  for (rzLong y = window.y(); y < window.lr().y(); ++y) {
    const bool isWholeRow = y == window.y() || y + 1 == window.lr().y();
    const rzLong step = isWholeRow ? 1 : std::max<rzLong>(window.width() - 1, 1);
    for (rzLong x = window.x(); x < window.lr().x(); x += step) {
      ++histogram[*pattern.pointToPel(x, y)];
      ++count;
    }
  }
  return quantile(histogram, count, 0.5, true);
}

// The pels of the window of that size with its corner at (x, y), row by row.
std::vector<unsigned char> pelsAt(const rzPelBuffer_const<unsigned char>& picture, rzLong x,
                                  rzLong y, rzPair<rzLong> size) {
  std::vector<unsigned char> pels;
  pels.reserve(static_cast<std::size_t>(size.x()) * static_cast<std::size_t>(size.y()));
  for (rzLong v = 0; v < size.y(); ++v) {
    const unsigned char* row = picture.pointToPel(x, y + v);
    pels.insert(pels.end(), row, row + size.x());
  }
  return pels;
}

// Greys of the ink and of the paper, known where each of them should be.
struct Levels {
  int ink;
  int paper;
};

Levels levelsOf(const std::vector<unsigned char>& pels, const std::vector<std::uint8_t>& isInk,
                std::size_t numInk, bool isDark) {
  std::array<Histogram, 2> histograms{};
  for (std::size_t k = 0; k < pels.size(); ++k) ++histograms[isInk[k]][pels[k]];
  return {quantile(histograms[1], numInk, kInkShare, isDark),
          quantile(histograms[0], pels.size() - numInk, kPaperShare, isDark)};
}

// Blackness of each grey in thousandths.
std::array<std::int32_t, 256> blackness(const Levels& levels) {
  std::array<std::int32_t, 256> result{};
  for (int grey = 0; grey < 256; ++grey) {
    const double share = static_cast<double>(grey - levels.paper) / (levels.ink - levels.paper);
    const double limited = std::clamp(kUnit * share, -1.0 * kBeyond, 1.0 * (kUnit + kBeyond));
    result[static_cast<std::size_t>(grey)] = static_cast<std::int32_t>(std::lround(limited));
  }
  return result;
}

}  // namespace

rz_PrintLikeness::rz_PrintLikeness(const rzPelBuffer_const<unsigned char>& pattern)
    : size_(pattern.window().size()) {
  const rzPelRect window = pattern.window();
  const std::vector<unsigned char> pels = pelsAt(pattern, window.x(), window.y(), size_);
  const int paper = medianOfRim(pattern);
  const auto [least, most] = std::minmax_element(pels.begin(), pels.end());
  isDark_ = paper - *least >= *most - paper;
  const int furthest = isDark_ ? *least : *most;
  for (const int pel : pels) {
    isInk_.push_back(std::abs(pel - furthest) < std::abs(pel - paper) ? 1 : 0);
    numInk_ += isInk_.back();
  }
  const auto black = blackness(levelsOf(pels, isInk_, numInk_, isDark_));
  std::int64_t sum = 0;
  std::int64_t squares = 0;
  for (const unsigned char pel : pels) {
    const std::int32_t value = black[pel];
    ink_.push_back(value);
    sum += value;
    squares += std::int64_t{value} * value;
  }
  const auto total = static_cast<double>(sum);
  energy_ = static_cast<double>(squares) - total * total / static_cast<double>(pels.size());
}

double rz_PrintLikeness::of(const rzPelBuffer_const<unsigned char>& picture, rzLong x,
                            rzLong y) const {
  const std::vector<unsigned char> pels = pelsAt(picture, x, y, size_);
  const Levels levels = levelsOf(pels, isInk_, numInk_, isDark_);
  const bool showsInk = isDark_ ? levels.ink < levels.paper : levels.ink > levels.paper;
  if (!showsInk) return 0.0;
  const auto black = blackness(levels);
  std::int64_t tooMuch = 0;
  std::int64_t missing = 0;
  for (std::size_t k = 0; k < pels.size(); ++k) {
    const std::int64_t difference = std::int64_t{black[pels[k]]} - ink_[k];
    (difference > 0 ? tooMuch : missing) += difference * difference;
  }
  const double counted =
      static_cast<double>(tooMuch) + kMissingCounts * static_cast<double>(missing);
  return std::max(0.0, 1.0 - counted / energy_);
}
