// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/picture_features.h"

#include <algorithm>
#include <cstring>

#include "rz/attention.h"

namespace finder {

namespace {

constexpr int kRowsPerLook = 256;

GreyImage copyOf(const std::uint8_t* pels, std::ptrdiff_t stride, int width, int height) {
  GreyImage copy{width, height, {}};
  copy.pels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y) {
    if (y % kRowsPerLook == 0) rzAttention::check();
    const std::uint8_t* row = pels + y * stride;
    copy.pels.insert(copy.pels.end(), row, row + width);
  }
  return copy;
}

bool equalPels(const GreyImage& image, const std::uint8_t* pels, std::ptrdiff_t stride) {
  for (int y = 0; y < image.height; ++y) {
    const auto rowSize = static_cast<std::size_t>(image.width);
    const std::uint8_t* row = image.pels.data() + static_cast<std::ptrdiff_t>(y) * image.width;
    if (std::memcmp(row, pels + y * stride, rowSize) != 0) return false;
  }
  return true;
}

}  // namespace

PictureFeatures::PictureFeatures(const PelView& picture, double contrast) : contrast_(contrast) {
  grey_.push_back(copyOf(picture.pels, picture.stride, picture.width, picture.height));
  if (picture.mask == nullptr) return;
  mask_.push_back(copyOf(picture.mask, picture.maskStride, picture.width, picture.height));
}

bool PictureFeatures::areOf(const PelView& picture, double contrast) const {
  if (contrast != contrast_ || picture.width != width() || picture.height != height()) return false;
  if ((picture.mask == nullptr) != mask_.empty()) return false;
  if (!equalPels(grey_.front(), picture.pels, picture.stride)) return false;
  return mask_.empty() || equalPels(mask_.front(), picture.mask, picture.maskStride);
}

PelView PictureFeatures::viewOf_(std::size_t index) const {
  const GreyImage& grey = grey_[index];
  PelView view{grey.pels.data(), grey.width, grey.height, grey.width, nullptr, 0};
  if (!mask_.empty()) {
    view.mask = mask_[index].pels.data();
    view.maskStride = grey.width;
  }
  return view;
}

const PictureLevel& PictureFeatures::level(int index) {
  while (levels_.size() <= static_cast<std::size_t>(index)) {
    const std::size_t next = levels_.size();
    if (grey_.size() <= next) {
      const PelView finer = viewOf_(next - 1);
      GreyImage grey = halved(finer);
      if (!mask_.empty()) {
        GreyImage mask = halvedMask(finer);
        mask_.push_back(std::move(mask));
      }
      grey_.push_back(std::move(grey));
    }
    auto made = std::make_unique<PictureLevel>();
    // A coarser pel that is masked out reaches half as far as it is wide already.
    made->gradients = gradientsOf(viewOf_(next), next == 0 ? kGradientReach : kGradientReach - 1);
    levels_.push_back(std::move(made));
  }
  return *levels_[static_cast<std::size_t>(index)];
}

const PictureLevel& PictureFeatures::levelWithResponses(int index) {
  level(index);
  PictureLevel& wanted = *levels_[static_cast<std::size_t>(index)];
  if (!wanted.hasResponses) {
    wanted.responses = responsesOf(wanted.gradients, contrast_);
    wanted.hasResponses = true;
  }
  return wanted;
}

}  // namespace finder
