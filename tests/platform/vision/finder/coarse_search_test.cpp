// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "platform/vision/finder/cpu_variants.h"
#include "platform/vision/finder/sum_block.h"
#include "tests/platform/vision/finder/letters.h"

namespace {

using finder::Peak;
using finder::ResponseMaps;

ResponseMaps mapsOf(const letters::Image& image) {
  const finder::PelView view{image.pointToPel(0, 0), image.width(), image.height(),
                             image.rowUpdate(),      nullptr,       0};
  return finder::responsesOf(finder::gradientsOf(view, finder::kGradientReach), 10.0);
}

int responseAt(const ResponseMaps& maps, int direction, int x, int y) {
  const bool isUpper = y / finder::kStride >= maps.foldedRows;
  const int element = *maps.at(direction, x, isUpper ? y - finder::kStride * maps.foldedRows : y);
  return isUpper ? element >> 4 : element & 15;
}

TEST(SumTile, EqualsThePlainSumsOrProvesThatNoneIsHighEnough) {
  constexpr std::ptrdiff_t kPitch = 50;
  constexpr std::size_t kSize = finder::kTileRows * finder::kTileColumns;
  std::mt19937 random(3);
  std::uniform_int_distribution<int> response(0, finder::kBestResponse);
  std::vector<std::uint8_t> bytes(5000);
  for (auto& byte : bytes) {
    byte = static_cast<std::uint8_t>(response(random) + 16 * response(random));
  }
  std::uniform_int_distribution<std::ptrdiff_t> place(0, 4000);
  for (int trial = 0; trial < 300; ++trial) {
    const int count = 1 + trial % (255 / finder::kBestResponse);
    std::vector<const std::uint8_t*> starts(static_cast<std::size_t>(count));
    for (auto& start : starts) start = bytes.data() + place(random);
    const int least = static_cast<int>(trial % 7 * count * 0.6);
    std::vector<std::uint8_t> sums(2 * kSize);
    std::vector<std::uint8_t> plain(2 * kSize);
    const finder::TileSums ours{sums.data(), sums.data() + kSize, finder::kTileColumns};
    const finder::TileSums theirs{plain.data(), plain.data() + kSize, finder::kTileColumns};
    const bool isHigh = finder::sumTileReference(starts.data(), count, 100, kPitch, least, theirs);
    for (const bool isWide : {true, false}) {
      finder::wideVectorsAllowed = isWide;
      const bool isReached = finder::sumTile(starts.data(), count, 100, kPitch, least, ours);
      finder::wideVectorsAllowed = true;
      ASSERT_EQ(isReached, isHigh);
      ASSERT_TRUE(!isReached || sums == plain);
    }
  }
}

TEST(ResponseMaps, AreTheSameOnBothSidesOfTheFold) {
  constexpr int kMoved = 60;
  const auto shown = [](double y) {
    return mapsOf(letters::scene(draw::letterR(), letters::pose(60, y, 30), 120, 200));
  };
  const ResponseMaps above = shown(70);
  const ResponseMaps below = shown(70 + kMoved);
  for (int d = 0; d < finder::kDirections; ++d) {
    for (int y = 2; y < 138; ++y) {
      for (int x = 0; x < 120; ++x) {
        ASSERT_EQ(responseAt(above, d, x, y), responseAt(below, d, x, y + kMoved))
            << d << ": " << x << ", " << y;
      }
    }
  }
}

// A small model of points here and there.
struct Probe {
  int direction, x, y;
};

int sumAt(const ResponseMaps& maps, const std::vector<Probe>& probes, int x, int y) {
  if (x < 0 || y < 0 || x >= maps.pictureColumns || y >= maps.pictureRows) return 0;
  int sum = 0;
  for (const Probe& p : probes) {
    const int u = finder::kStride * x + p.x;
    const int v = finder::kStride * y + p.y;
    const bool isInside = u >= 0 && v >= 0 && u < finder::kStride * maps.pictureColumns &&
                          v < finder::kStride * maps.pictureRows;
    if (isInside) sum += responseAt(maps, p.direction, u, v);
  }
  return sum;
}

bool isPeak(const ResponseMaps& maps, const std::vector<Probe>& probes, int x, int y, int sum) {
  for (int dy = -1; dy <= 1; ++dy) {
    for (int dx = -1; dx <= 1; ++dx) {
      const int other = sumAt(maps, probes, x + dx, y + dy);
      const bool isFirst = dy < 0 || (dy == 0 && dx < 0);
      if ((dx != 0 || dy != 0) && (isFirst ? other >= sum : other > sum)) return false;
    }
  }
  return true;
}

// Pictures larger than a block, of sizes that fit neither blocks nor tiles, empty in part.
class SumBlock : public testing::TestWithParam<unsigned> {};

TEST_P(SumBlock, GivesAllPeaksOfAPictureWhereverItsRimsLie) {
  constexpr int kLeast = 15;
  std::mt19937 random(GetParam());
  std::uniform_int_distribution<int> grey(0, 255), reach(-20, 20);
  std::uniform_int_distribution<int> direction(0, finder::kDirections - 1);
  letters::Image image = draw::paper(299, 283);
  for (rzLong y = 0; y < 283; ++y) {
    for (rzLong x = 0; x < 299; ++x) {
      if (x < 60 || x > 200 || y > 200)
        *image.pointToPel(x, y) = static_cast<unsigned char>(grey(random));
    }
  }
  const ResponseMaps maps = mapsOf(image);
  std::vector<Probe> probes;
  std::vector<const std::uint8_t*> starts;
  for (int i = 0; i < 5; ++i) {
    probes.push_back({direction(random), reach(random), reach(random)});
    starts.push_back(maps.at(probes.back().direction, probes.back().x, probes.back().y));
  }
  std::vector<std::tuple<int, int, int>> expected;
  for (int y = 0; y < maps.pictureRows; ++y) {
    for (int x = 0; x < maps.pictureColumns; ++x) {
      const int sum = sumAt(maps, probes, x, y);
      if (sum >= kLeast && isPeak(maps, probes, x, y, sum)) expected.emplace_back(x, y, sum);
    }
  }
  std::vector<Peak> peaks;
  for (int y = 0; y < maps.foldedRows; y += finder::kBlockRows) {
    for (int x = 0; x < maps.pictureColumns; x += finder::kBlockColumns) {
      finder::SumBlock(maps, x, y, 29.0).collect(starts, 0, kLeast, peaks);
    }
  }
  std::vector<std::tuple<int, int, int>> found;
  for (const Peak& peak : peaks) found.emplace_back(peak.x, peak.y, peak.sum);
  EXPECT_GT(expected.size(), 100U);
  EXPECT_THAT(found, testing::UnorderedElementsAreArray(expected));
}

INSTANTIATE_TEST_SUITE_P(Seeds, SumBlock, testing::Range(1U, 6U));

}  // namespace
