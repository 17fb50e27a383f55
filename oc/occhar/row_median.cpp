// SPDX-License-Identifier: Apache-2.0
//
// A running histogram makes the filter linear in the row's length: moving the window by a pel
// changes two counts, and the median moves with them (T. S. Huang, G. J. Yang and G. Y. Tang, "A
// fast two-dimensional median filtering algorithm", IEEE Transactions on Acoustics, Speech, and
// Signal Processing 27 (1), 1979, 13-18).
#include "oc/occhar/row_median.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace {

// The values of a window, counted, with the element of a given rank.
class RunningRank {
 public:
  void add(unsigned char value) {
    ++counts_[value];
    ++size_;
    if (value < candidate_) ++below_;
  }
  void remove(unsigned char value) {
    --counts_[value];
    --size_;
    if (value < candidate_) --below_;
  }
  /// The element with index size / 2 in ascending order.
  unsigned char median() {
    const std::size_t rank = size_ / 2;
    while (below_ > rank) below_ -= counts_[--candidate_];
    while (below_ + counts_[candidate_] <= rank) below_ += counts_[candidate_++];
    return static_cast<unsigned char>(candidate_);
  }

 private:
  std::array<std::size_t, 256> counts_{};
  std::size_t size_ = 0;
  std::size_t candidate_ = 0;
  std::size_t below_ = 0;  // how many values lie below the candidate
};

}  // namespace

void rf_medianFilterRow_(std::span<unsigned char> pels) {
  const std::size_t radius = pels.size() / 4;
  if (radius == 0) return;
  const std::vector<unsigned char> input(pels.begin(), pels.end());
  RunningRank window;
  for (std::size_t i = 0; i < radius; ++i) window.add(input[i]);
  for (std::size_t i = 0; i < input.size(); ++i) {
    if (i + radius < input.size()) window.add(input[i + radius]);
    if (i > radius) window.remove(input[i - radius - 1]);
    pels[i] = window.median();
  }
}
