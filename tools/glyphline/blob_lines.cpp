// SPDX-License-Identifier: Apache-2.0
#include "blob_lines.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "base_line.h"

namespace glyphline {
namespace {

constexpr double kTall = 0.45;    // of the print's height: makes a line of its own
constexpr double kFar = 0.8;      // of the print's height: the dots of an i are nearer
constexpr std::size_t kBack = 3;  // the last ones of a line, one of which may be a mere dash

double middleY(const rzRect& rect) { return rect.y() + 0.5 * rect.height(); }
double middleX(const rzRect& rect) { return rect.x() + 0.5 * rect.width(); }

rzLong gapOf(const rzPelRect& a, const rzPelRect& b) {
  const rzLong across = std::max(a.x(), b.x()) - std::min(a.ur().x(), b.ur().x());
  const rzLong down = std::max(a.y(), b.y()) - std::min(a.ll().y(), b.ll().y());
  return std::max(across, down);
}

Blob& operator+=(Blob& blob, const Blob& other) {
  blob.box = blob.box.enclose(other.box);
  blob.pieces.insert(blob.pieces.end(), other.pieces.begin(), other.pieces.end());
  return blob;
}

// The slope of the longest line: the others are parallel to it.
double slopeOf(const std::vector<rzRect>& boxes) {
  constexpr std::size_t kFewest = 4;
  std::vector<rzRect> longest;
  for (const std::vector<std::size_t>& line : printedLines(boxes)) {
    if (line.size() <= longest.size()) continue;
    longest.clear();
    for (const std::size_t i : line) longest.push_back(boxes[i]);
  }
  return longest.size() < kFewest ? 0.0 : fitBaseLine(longest).slope;
}

// Turns the boxes' middles so that lines of this slope run level; the sizes stay.
void makeLevel(std::vector<Blob>& blobs, double slope) {
  const double length = std::hypot(1.0, slope);
  for (Blob& blob : blobs) {
    const rzRect box(blob.box);
    const rzVector<2> middle((middleX(box) + slope * middleY(box)) / length,
                             (middleY(box) - slope * middleX(box)) / length);
    const rzVector<2> size(box.width(), box.height());
    blob.level = rzRect(middle - 0.5 * size, size);
  }
}

double sharedRows(const rzRect& a, const rzRect& b) {
  return std::min(a.ll().y(), b.ll().y()) - std::max(a.y(), b.y());
}

// How well the blob continues the line: rows shared with one of the last, of the lower one's.
double continuation(const BlobLine& line, const Blob& blob) {
  double best = 0.0;
  for (std::size_t k = line.size() - std::min(kBack, line.size()); k < line.size(); ++k) {
    const rzRect& last = line[k].level;
    const double lower = std::min(last.height(), blob.level.height());
    best = std::max(best, sharedRows(last, blob.level) / lower);
  }
  return best;
}

std::vector<BlobLine> linesOfTall(const std::vector<Blob>& tall) {
  constexpr double kLeastShared = 1.0 / 3.0;
  std::vector<BlobLine> lines;
  for (const Blob& blob : tall) {
    double best = kLeastShared;
    BlobLine* chosen = nullptr;
    for (BlobLine& line : lines) {
      const double share = continuation(line, blob);
      if (share < best) continue;
      best = share;
      chosen = &line;
    }
    if (chosen != nullptr) {
      chosen->push_back(blob);
    } else {
      lines.push_back({blob});
    }
  }
  return lines;
}

// How far the blob lies above or below the line where it is nearest; within it 0 and below, the
// less the nearer to its middle.
double distanceTo(const BlobLine& line, const Blob& blob) {
  const auto nearest = std::min_element(
      line.begin(), line.end(), [x = middleX(blob.level)](const Blob& a, const Blob& b) {
        return std::abs(middleX(a.level) - x) < std::abs(middleX(b.level) - x);
      });
  const double off = std::abs(middleY(blob.level) - middleY(nearest->level));
  return off - 0.5 * nearest->level.height();
}

}  // namespace

std::vector<Blob> joinedPieces(const std::vector<InkPiece>& pieces, rzLong reach) {
  std::vector<Blob> blobs;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    Blob blob{pieces[i].box, {}, {static_cast<int>(i)}};
    if (reach > 0) {
      const auto apart = std::stable_partition(blobs.begin(), blobs.end(), [&](const Blob& other) {
        return std::none_of(other.pieces.begin(), other.pieces.end(), [&](int k) {
          return gapOf(pieces[static_cast<std::size_t>(k)].box, pieces[i].box) <= reach;
        });
      });
      for (auto other = apart; other != blobs.end(); ++other) blob += *other;
      blobs.erase(apart, blobs.end());
    }
    blobs.push_back(std::move(blob));
  }
  return blobs;
}

double printHeight(const std::vector<Blob>& blobs, std::size_t numChars) {
  if (blobs.empty() || numChars == 0) return 0.0;
  std::vector<rzLong> heights;
  for (const Blob& blob : blobs) heights.push_back(blob.box.height());
  std::sort(heights.rbegin(), heights.rend());
  return heights[std::min(numChars, heights.size()) / 2];
}

std::vector<BlobLine> linesOf(std::vector<Blob> blobs, double height) {
  const auto firstSmall = std::stable_partition(
      blobs.begin(), blobs.end(),
      [height](const Blob& blob) { return blob.box.height() >= kTall * height; });
  std::vector<rzRect> tallBoxes;
  for (auto blob = blobs.begin(); blob != firstSmall; ++blob) tallBoxes.emplace_back(blob->box);
  makeLevel(blobs, slopeOf(tallBoxes));
  const auto byX = [](const Blob& a, const Blob& b) { return middleX(a.level) < middleX(b.level); };
  std::sort(blobs.begin(), firstSmall, byX);
  const std::vector<BlobLine> tallLines = linesOfTall({blobs.begin(), firstSmall});
  std::vector<BlobLine> lines = tallLines;
  for (auto blob = firstSmall; blob != blobs.end(); ++blob) {
    double best = kFar * height;
    BlobLine* chosen = nullptr;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const double distance = distanceTo(tallLines[i], *blob);
      if (distance >= best) continue;
      best = distance;
      chosen = &lines[i];
    }
    if (chosen != nullptr) chosen->push_back(*blob);
  }
  for (BlobLine& line : lines) std::sort(line.begin(), line.end(), byX);
  const auto height0 = [](const BlobLine& line) {
    double sum = 0.0;
    for (const Blob& blob : line) sum += middleY(blob.level);
    return sum / static_cast<double>(line.size());
  };
  std::sort(lines.begin(), lines.end(),
            [&](const BlobLine& a, const BlobLine& b) { return height0(a) < height0(b); });
  return lines;
}

}  // namespace glyphline
