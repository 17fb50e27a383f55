// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/coarse_search.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "rz/attention.h"

namespace finder {

namespace {

constexpr std::size_t kMostPeaks = 16384;  // before neighbours are merged
constexpr int kTilesPerLook = 64;

struct Peak {
  int x;  // in strides
  int y;
  int turn;
  int sum;
};

bool isBetter(const Peak& a, const Peak& b) {
  if (a.sum != b.sum) return a.sum > b.sum;
  if (a.turn != b.turn) return a.turn < b.turn;
  return a.y != b.y ? a.y < b.y : a.x < b.x;
}

// Addresses of the responses of all points for the pattern at place (0, 0).
std::vector<const std::uint8_t*> rowsOf(const ResponseMaps& maps,
                                        const std::vector<ModelPoint>& points, const Mat2& map) {
  std::vector<const std::uint8_t*> rows;
  rows.reserve(points.size());
  for (const ModelPoint& p : points) {
    const Vec2 place = map * p.place;
    const int x = static_cast<int>(std::lround(place.x));
    const int y = static_cast<int>(std::lround(place.y));
    if (std::max(std::abs(x), std::abs(y)) > kGreatestRadius) continue;
    rows.push_back(maps.at(directionOf(mapNormal(map, p.normal)), x, y));
  }
  return rows;
}

// Sums of all places, 0 where `least` is not reached.
class SumPlane {
 public:
  explicit SumPlane(const ResponseMaps& maps)
      : columns_(maps.columns),
        length_(static_cast<std::ptrdiff_t>(maps.pictureRows - 1) * maps.columns +
                maps.pictureColumns),
        // A row and an element more on all sides, so that every place has neighbours.
        sums_(static_cast<std::size_t>(length_ + 2 * columns_ + 2 + kTile), 0) {}

  // Returns whether any place reaches `least`.
  bool fill(const std::vector<const std::uint8_t*>& rows, int least) {
    clear_();
    int tiles = 0;
    for (std::ptrdiff_t at = 0; at < length_; at += kTile) {
      if (++tiles % kTilesPerLook == 0) rzAttention::check();
      if (!sumTile(rows.data(), static_cast<int>(rows.size()), at, least, place_(at))) continue;
      used_.push_back(at);
    }
    return !used_.empty();
  }

  // Appends the places that are not less than their neighbours.
  void collect(const ResponseMaps& maps, int turn, int least, std::vector<Peak>& peaks) {
    for (const std::ptrdiff_t tile : used_) {
      const std::ptrdiff_t end = std::min(tile + kTile, length_);
      for (std::ptrdiff_t at = tile; at < end; ++at) {
        const std::uint8_t* s = place_(at);
        if (*s < least || !isPeak_(s)) continue;
        const auto x = static_cast<int>(at % columns_);
        if (x >= maps.pictureColumns) continue;
        peaks.push_back({x, static_cast<int>(at / columns_), turn, *s});
      }
    }
  }

 private:
  std::uint8_t* place_(std::ptrdiff_t at) { return sums_.data() + columns_ + 1 + at; }

  bool isPeak_(const std::uint8_t* s) const {
    // Among equals the first one counts.
    return *s > s[-1] && *s >= s[1] && *s > s[-columns_ - 1] && *s > s[-columns_] &&
           *s > s[-columns_ + 1] && *s >= s[columns_ - 1] && *s >= s[columns_] &&
           *s >= s[columns_ + 1];
  }

  void clear_() {
    for (const std::ptrdiff_t at : used_) std::fill_n(place_(at), kTile, std::uint8_t{0});
    used_.clear();
  }

  std::ptrdiff_t columns_;
  std::ptrdiff_t length_;
  std::vector<std::uint8_t> sums_;
  std::vector<std::ptrdiff_t> used_;  // tiles that are not empty
};

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
  SumPlane plane(maps);
  for (std::size_t t = 0; t < turns.size(); ++t) {
    rzAttention::check();
    const Mat2 map = levelFromClient * similarity(turns[t].angle, turns[t].scale);
    if (!plane.fill(rowsOf(maps, points, map), least)) continue;
    plane.collect(maps, static_cast<int>(t), least, peaks);
    if (peaks.size() <= kMostPeaks) continue;
    // Too many: the better half goes on, and sets the mark for what follows.
    const auto half = peaks.begin() + static_cast<std::ptrdiff_t>(kMostPeaks / 2);
    std::nth_element(peaks.begin(), half, peaks.end(), isBetter);
    least = std::max(least, half->sum);
    peaks.erase(half, peaks.end());
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
