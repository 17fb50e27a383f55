// SPDX-License-Identifier: Apache-2.0
#include "page/png.h"

#include <leptonica/allheaders.h>

#include <memory>

#include "failure.h"

namespace glyphline {
namespace {

struct Release {
  void operator()(PIX* pix) const { pixDestroy(&pix); }
  void operator()(l_uint8* bytes) const { lept_free(bytes); }
};

}  // namespace

std::string pngOf(const rzPelBuffer_const<unsigned char>& image) {
  const rzPelRect window = image.window();
  const std::unique_ptr<PIX, Release> pix(pixCreate(window.width(), window.height(), 8));
  if (!pix) throw Failure("a picture is too large to be written");
  for (rzLong y = 0; y < window.height(); ++y) {
    l_uint32* line = pixGetData(pix.get()) + std::ptrdiff_t{y} * pixGetWpl(pix.get());
    const unsigned char* row = image.pointToPel(window.x(), window.y() + y);
    for (rzLong x = 0; x < window.width(); ++x) SET_DATA_BYTE(line, x, row[x]);
  }
  l_uint8* data = nullptr;
  std::size_t size = 0;
  const l_ok failed = pixWriteMemPng(&data, &size, pix.get(), 0.0F);
  const std::unique_ptr<l_uint8, Release> owner(data);
  if (failed != 0) throw Failure("a picture cannot be written as PNG");
  return std::string(reinterpret_cast<const char*>(data), size);
}

std::string base64Of(std::string_view bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const auto at = [bytes](std::size_t i) {
    return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
  };
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const unsigned group = at(i) << 16U | at(i + 1) << 8U | at(i + 2);
    text += kDigits[group >> 18U];
    text += kDigits[group >> 12U & 63U];
    text += i + 1 < bytes.size() ? kDigits[group >> 6U & 63U] : '=';
    text += i + 2 < bytes.size() ? kDigits[group & 63U] : '=';
  }
  return text;
}

}  // namespace glyphline
