// SPDX-License-Identifier: Apache-2.0
//
// How well a model at one angle and scale agrees with a picture, at all places of a small part of
// it. All angles and scales are tried on one part before the next: so its responses stay at hand,
// however large the picture is.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/vision/finder/picture_features.h"
#include "platform/vision/finder/sum_tile.h"

namespace finder {

/// A place, in strides, where the sum of responses is not less than around it.
struct Peak {
  int x;
  int y;
  int turn;  // index of the angle and scale
  int sum;
};

/// Size of a block, in elements of the response maps: with both halves of them, it has twice as
/// many places.
inline constexpr int kBlockRows = 8 * kTileRows;
inline constexpr int kBlockColumns = 4 * kTileColumns;

class SumBlock {
 public:
  /// The block with its first element at (x, y), for models no point of which is farther than
  /// `radius` pels from the centre.
  SumBlock(const ResponseMaps& maps, int x, int y, double radius);

  /// There are no edges near: all sums are 0.
  bool isEmpty() const { return tiles_.empty(); }

  /// Appends the peaks that reach `least`, over sums of the responses at the addresses `starts`:
  /// those of the model's points for place (0, 0).
  void collect(const std::vector<const std::uint8_t*>& starts, int turn, int least,
               std::vector<Peak>& peaks);

 private:
  /// Of a tile, against the block's first element.
  struct Place {
    int x;
    int y;
  };
  /// The places in one half of the folded maps.
  struct Half {
    int firstRow;  // of the block, in the picture
    int endRow;    // of the half, in the picture
    // 0 where too little is reached.
    std::array<std::array<std::uint8_t, kBlockColumns>, kBlockRows> sums;

    std::uint8_t& at(int x, int y) {
      return sums[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
    }
  };

  bool isNearEdges_(Place tile, const Half& half, int reach) const;
  void collect_(Half& half, const std::vector<const std::uint8_t*>& starts, int turn, int least,
                std::vector<Peak>& peaks);
  bool isPeak_(Half& half, const std::vector<const std::uint8_t*>& starts, int x, int y) const;
  int sumAt_(const std::vector<const std::uint8_t*>& starts, int x, int y) const;

  const ResponseMaps& maps_;
  int firstColumn_;
  int firstRow_;
  std::array<Half, 2> halves_{};
  std::vector<Place> tiles_;  // near edges
  std::vector<Place> used_;   // those that are not empty
};

}  // namespace finder
