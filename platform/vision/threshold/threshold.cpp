// SPDX-License-Identifier: Apache-2.0
#include "rz/threshold.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "rz/pel_functions.h"

namespace {

constexpr rzLong kGreys = 256;
constexpr unsigned char kCare = 128;

// Count times sum of squares reaches 2^78 for the largest pictures.
__extension__ using Wide = __int128;

// Count, sum and sum of squares of a group of grey values.
struct Group {
  std::int64_t count = 0;
  std::int64_t sum = 0;
  std::int64_t squares = 0;

  Group& operator+=(const Group& other) {
    count += other.count;
    sum += other.sum;
    squares += other.squares;
    return *this;
  }
  Group operator-(const Group& other) const {
    return {count - other.count, sum - other.sum, squares - other.squares};
  }
  // Sum of the squared distances to the mean, exact up to the last step.
  double scatter() const {
    const Wide scaled = Wide{count} * squares - Wide{sum} * sum;
    return static_cast<double>(scaled) / static_cast<double>(count);
  }
};

Group groupOf(rzLong grey, std::int64_t count) {
  return {count, count * grey, count * grey * grey};
}

std::vector<rzLong> maskedHistogram(const rzPelBuffer_const<unsigned char>& image,
                                    const rzPelBuffer_const<unsigned char>& mask) {
  std::vector<rzLong> histogram(kGreys, 0);
  const rzPelRect common = image.window().intersect(mask.window());
  for (rzLong y = common.ul().y(); y < common.ll().y(); ++y) {
    const unsigned char* pels = image.pointToPel(common.x(), y);
    const unsigned char* care = mask.pointToPel(common.x(), y);
    for (rzLong i = 0; i < common.width(); ++i) histogram[pels[i]] += care[i] >= kCare ? 1 : 0;
  }
  return histogram;
}

rzLong lowestGrey(const std::vector<rzLong>& histogram) {
  const auto first = std::ranges::find_if(histogram, [](rzLong count) { return count > 0; });
  return static_cast<rzLong>(first - histogram.begin());
}

rzThresholdResult bestThreshold(const std::vector<rzLong>& histogram) {
  Group all;
  for (rzLong grey = 0; grey < kGreys; ++grey) all += groupOf(grey, histogram[std::size_t(grey)]);
  if (all.count == 0) return {};
  double least = std::numeric_limits<double>::infinity();
  std::vector<rzLong> optima;
  Group dark;
  for (rzLong threshold = 1; threshold < kGreys; ++threshold) {
    dark += groupOf(threshold - 1, histogram[std::size_t(threshold - 1)]);
    const Group light = all - dark;
    if (dark.count == 0 || light.count == 0) continue;
    const double within = dark.scatter() + light.scatter();
    if (within > least) continue;
    if (within < least) optima.clear();
    least = within;
    optima.push_back(threshold);
  }
  if (optima.empty()) return {lowestGrey(histogram), 0.0};
  return {optima[(optima.size() - 1) / 2], std::max(0.0, 1.0 - least / all.scatter())};
}

}  // namespace

void rfThresholdWGV(const rzPelBuffer_const<unsigned char>& image, rzThresholdResult& result) {
  result = bestThreshold(rfPelHistogram(image));
}

void rfThresholdWGV(const rzPelBuffer_const<unsigned char>& image,
                    const rzPelBuffer_const<unsigned char>& mask, rzThresholdResult& result) {
  image.requireBound();
  result = bestThreshold(mask.isBound() ? maskedHistogram(image, mask) : rfPelHistogram(image));
}
