// SPDX-License-Identifier: Apache-2.0
// Small pictures of any size and content, as model and as run-time picture. The first bytes choose
// sizes and settings, the rest are pels.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "oc/oc.h"

namespace {

constexpr std::int32_t kLargestSide = 64;

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  std::uint8_t next() { return at_ < size_ ? data_[at_++] : std::uint8_t{0}; }
  std::int32_t side() { return 1 + next() % kLargestSide; }

  rzPelBuffer_const<unsigned char> picture() {
    const std::int32_t width = side();
    const std::int32_t height = side();
    rzPelBuffer<unsigned char> buffer(rzPelRect(0, 0, width, height), 32);
    for (std::int32_t y = 0; y < height; ++y) {
      for (std::int32_t x = 0; x < width; ++x) *buffer.pointToPel(x, y) = next();
    }
    return buffer;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  try {
    const auto image = input.picture();
    const rzPtrHandle<rzOCModel> model(
        new rzOCModel('A', image, image.window(), rzOCModel::eNormal, "A", "fuzzed"));
    const rzOCAlphabet alphabet(std::vector{model}, 0.5, false, "fuzzed");
    rzOCArrangeParams params;
    params.minMatchScore(input.next() / 255.0);
    params.timeout(0.2);
    params.maxCandidates(200);
    rzOCArrangeResults results;
    const std::vector<rzLong> text(1 + input.next() % 3, 'A');
    rfOCArrange(input.picture(), alphabet, text, params, results, nullptr, 0);
  } catch (const rzException&) {
    // A refused input is an answer.
  }
  return 0;
}
