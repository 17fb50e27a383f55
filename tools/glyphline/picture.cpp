// SPDX-License-Identifier: Apache-2.0
#include "picture.h"

#include <leptonica/allheaders.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <vector>

#include "failure.h"

namespace glyphline {
namespace {

struct PixRelease {
  void operator()(PIX* pix) const { pixDestroy(&pix); }
};
using Pix = std::unique_ptr<PIX, PixRelease>;

constexpr std::int64_t kMostPels = 1 << 29;  // half a gigabyte, more than any sensor gives

using Bytes = std::vector<unsigned char>;

Bytes contentOf(std::istream& in) {
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

Bytes contentOf(const std::string& path) {
  if (path == "-") return contentOf(std::cin);
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Failure(path + ": cannot be opened");
  return contentOf(file);
}

Pix decoded(const Bytes& bytes, const std::string& path) {
  setMsgSeverity(L_SEVERITY_NONE);  // our own one line says it
  Pix pix(bytes.empty() ? nullptr : pixReadMem(bytes.data(), bytes.size()));
  if (!pix) throw Failure(path + ": not a picture, or damaged");
  return pix;
}

Pix greyOf(Pix pix) {
  if (pixGetDepth(pix.get()) == 32 && pixGetSpp(pix.get()) == 4) {
    pix = Pix(pixAlphaBlendUniform(pix.get(), 0xffffff00));
  }
  return Pix(pix ? pixConvertTo8(pix.get(), 0) : nullptr);
}

}  // namespace

rzPelBuffer<unsigned char> readPicture(const std::string& path) {
  const Pix grey = greyOf(decoded(contentOf(path), path));
  if (!grey) throw Failure(path + ": cannot be turned to grey");
  const rzLong width = pixGetWidth(grey.get());
  const rzLong height = pixGetHeight(grey.get());
  if (width < 1 || height < 1 || std::int64_t{width} * height > kMostPels) {
    throw Failure(path + ": a picture of " + std::to_string(width) + "x" + std::to_string(height) +
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

}  // namespace glyphline
