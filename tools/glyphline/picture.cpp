// SPDX-License-Identifier: Apache-2.0
#include "picture.h"

#include <leptonica/allheaders.h>

#include <memory>

#include "failure.h"
#include "input_file.h"
#include "standard_error.h"

namespace glyphline {
namespace {

struct PixRelease {
  void operator()(PIX* pix) const { pixDestroy(&pix); }
};
using Pix = std::unique_ptr<PIX, PixRelease>;

constexpr std::int64_t kMostPels = 1 << 29;  // half a gigabyte, more than any sensor gives

// Weights of luminance (ITU-R BT.601).
constexpr float kRed = 0.299F;
constexpr float kGreen = 0.587F;
constexpr float kBlue = 0.114F;

Pix decoded(const std::string& bytes, const std::string& name) {
  const StandardErrorMute mute;  // our own one line says it
  setMsgSeverity(L_SEVERITY_NONE);
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  Pix pix(bytes.empty() ? nullptr : pixReadMem(data, bytes.size()));
  if (!pix) throw Failure(name + ": not a picture, or damaged");
  return pix;
}

Pix greyOf(Pix pix) {
  if (pixGetColormap(pix.get()) != nullptr) {
    pix = Pix(pixRemoveColormap(pix.get(), REMOVE_CMAP_BASED_ON_SRC));
  }
  if (pix && pixGetDepth(pix.get()) == 32 && pixGetSpp(pix.get()) == 4) {
    pix = Pix(pixAlphaBlendUniform(pix.get(), 0xffffff00));
  }
  if (!pix) return pix;
  const bool isColour = pixGetDepth(pix.get()) == 32;
  return Pix(isColour ? pixConvertRGBToGray(pix.get(), kRed, kGreen, kBlue)
                      : pixConvertTo8(pix.get(), 0));
}

std::string sizeOf(const rz_PelBuffer& picture) {
  return std::to_string(picture.width()) + "x" + std::to_string(picture.height()) + " pels";
}

}  // namespace

rzPelBuffer<unsigned char> readPicture(const std::string& path, const std::string& option) {
  const std::string name = inputName(path, option);
  const Pix grey = greyOf(decoded(readInput(path, option), name));
  if (!grey) throw Failure(name + ": cannot be turned to grey");
  const rzLong width = pixGetWidth(grey.get());
  const rzLong height = pixGetHeight(grey.get());
  if (width < 1 || height < 1 || std::int64_t{width} * height > kMostPels) {
    throw Failure(name + ": a picture of " + std::to_string(width) + "x" + std::to_string(height) +
                  " pels cannot be read");
  }
  rzPelBuffer<unsigned char> buffer(rzPelRect(0, 0, width, height), 32);
  for (rzLong y = 0; y < height; ++y) {
    const l_uint32* line = pixGetData(grey.get()) + std::ptrdiff_t{y} * pixGetWpl(grey.get());
    unsigned char* row = buffer.pointToPel(0, y);
    for (rzLong x = 0; x < width; ++x) {
      row[x] = static_cast<unsigned char>(GET_DATA_BYTE(line, x));
    }
  }
  return buffer;
}

rzPelBuffer_const<unsigned char> readMask(const std::string& path) {
  if (path.empty()) return {};
  return readPicture(path, "--mask");
}

void requireFit(const rzPelBuffer_const<unsigned char>& mask, const std::string& maskPath,
                const rzPelBuffer<unsigned char>& picture, const std::string& picturePath) {
  if (!mask.isBound() || mask.window() == picture.window()) return;
  throw Failure(maskPath + ": --mask: " + sizeOf(mask) + ", but " + picturePath + " has " +
                sizeOf(picture));
}

}  // namespace glyphline
