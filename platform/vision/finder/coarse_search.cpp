// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/coarse_search.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "platform/vision/finder/sum_block.h"
#include "rz/attention.h"

namespace finder {

namespace {

constexpr std::size_t kMostPeaks = 16384;  // before neighbours are merged

bool isBetter(const Peak& a, const Peak& b) {
  if (a.sum != b.sum) return a.sum > b.sum;
  if (a.turn != b.turn) return a.turn < b.turn;
  return a.y != b.y ? a.y < b.y : a.x < b.x;
}

// Addresses of the responses of all points for the pattern at place (0, 0).
std::vector<const std::uint8_t*> startsOf(const ResponseMaps& maps,
                                          const std::vector<ModelPoint>& points, const Mat2& map) {
  std::vector<const std::uint8_t*> starts;
  starts.reserve(points.size());
  const Mat2 normals = normalMap(map);
  for (const ModelPoint& p : points) {
    const Vec2 place = map * p.place;
    const int x = static_cast<int>(std::lround(place.x));
    const int y = static_cast<int>(std::lround(place.y));
    if (std::max(std::abs(x), std::abs(y)) > kGreatestRadius) continue;
    starts.push_back(maps.at(directionOf(normals * p.normal), x, y));
  }
  return starts;
}

// The greatest distance of the points from the centre at any of the turns, in pels of the level.
double greatestRadius(const std::vector<ModelPoint>& points, const Mat2& levelFromClient,
                      const std::vector<GridTurn>& turns) {
  double radius = 0.0;
  for (const ModelPoint& p : points) radius = std::max(radius, length(p.place));
  double scale = 0.0;
  for (const GridTurn& turn : turns) scale = std::max(scale, turn.scale);
  return radius * scale * greatestScale(levelFromClient);
}

// Of peaks that are neighbours in place, angle and scale keeps the best.
class PeakMerger {
 public:
  PeakMerger(const ResponseMaps& maps, const std::vector<GridTurn>& turns, int angleCount)
      : turns_(turns),
        angleCount_(angleCount),
        columns_(maps.pictureColumns / kCell + 3),
        cells_(static_cast<std::size_t>(columns_) *
               static_cast<std::size_t>(maps.pictureRows / kCell + 3)) {}

  std::vector<Peak> merge(const std::vector<Peak>& sorted, std::size_t most) {
    std::vector<Peak> kept;
    for (const Peak& peak : sorted) {
      if (kept.size() == most) break;
      if (hasBetterNeighbour_(peak)) continue;
      kept.push_back(peak);
      cell_(peak.x / kCell, peak.y / kCell).push_back(peak);
    }
    return kept;
  }

 private:
  static constexpr int kCell = 4;      // strides
  static constexpr int kNear = 2;      // strides
  static constexpr int kNearTurn = 2;  // steps of the angle

  std::vector<Peak>& cell_(int x, int y) {
    return cells_[static_cast<std::size_t>(y + 1) * static_cast<std::size_t>(columns_) +
                  static_cast<std::size_t>(x + 1)];
  }

  bool isNeighbour_(const Peak& a, const Peak& b) const {
    if (std::abs(a.x - b.x) > kNear || std::abs(a.y - b.y) > kNear) return false;
    const GridTurn& s = turns_[static_cast<std::size_t>(a.turn)];
    const GridTurn& t = turns_[static_cast<std::size_t>(b.turn)];
    if (std::abs(s.scaleIndex - t.scaleIndex) > 1) return false;
    int steps = std::abs(s.angleIndex - t.angleIndex);
    if (angleCount_ > 0) steps = std::min(steps, angleCount_ - steps);
    return steps <= kNearTurn;
  }

  bool hasBetterNeighbour_(const Peak& peak) {
    for (int y = peak.y / kCell - 1; y <= peak.y / kCell + 1; ++y) {
      for (int x = peak.x / kCell - 1; x <= peak.x / kCell + 1; ++x) {
        for (const Peak& other : cell_(x, y)) {
          if (isNeighbour_(peak, other)) return true;
        }
      }
    }
    return false;
  }

  const std::vector<GridTurn>& turns_;
  int angleCount_;
  int columns_;
  std::vector<std::vector<Peak>> cells_;
};

}  // namespace

std::vector<Candidate> searchGrid(const ResponseMaps& maps, const std::vector<ModelPoint>& points,
                                  const Mat2& levelFromClient, const std::vector<GridTurn>& turns,
                                  int angleCount, double threshold, std::size_t most) {
  std::vector<Peak> peaks;
  if (maps.isEmpty() || points.empty()) return {};
  const auto best = static_cast<double>(kBestResponse * points.size());
  int least = std::max(1, static_cast<int>(std::ceil(threshold * best)));
  const double radius = greatestRadius(points, levelFromClient, turns);
  std::vector<std::vector<const std::uint8_t*>> starts;
  starts.reserve(turns.size());
  for (const GridTurn& turn : turns) {
    starts.push_back(startsOf(maps, points, levelFromClient * similarity(turn.angle, turn.scale)));
  }
  for (int y = 0; y < maps.foldedRows; y += kBlockRows) {
    for (int x = 0; x < maps.pictureColumns; x += kBlockColumns) {
      SumBlock block(maps, x, y, radius);
      if (block.isEmpty()) continue;
      rzAttention::check();
      for (std::size_t t = 0; t < turns.size(); ++t) {
        block.collect(starts[t], static_cast<int>(t), least, peaks);
      }
      if (peaks.size() <= kMostPeaks) continue;
      // Too many: the better half goes on, and sets the mark for what follows.
      const auto half = peaks.begin() + static_cast<std::ptrdiff_t>(kMostPeaks / 2);
      std::nth_element(peaks.begin(), half, peaks.end(), isBetter);
      least = std::max(least, half->sum);
      peaks.erase(half, peaks.end());
    }
  }
  std::sort(peaks.begin(), peaks.end(), isBetter);
  std::vector<Candidate> candidates;
  for (const Peak& peak : PeakMerger(maps, turns, angleCount).merge(peaks, most)) {
    const GridTurn& turn = turns[static_cast<std::size_t>(peak.turn)];
    const Vec2 centre{kStride * peak.x + 0.5, kStride * peak.y + 0.5};
    candidates.push_back(
        {{centre, turn.angle, turn.scale}, peak.sum / best, turn.angleIndex, turn.scaleIndex});
  }
  return candidates;
}

}  // namespace finder
