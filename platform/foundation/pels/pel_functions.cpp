// SPDX-License-Identifier: Apache-2.0
#include "rz/pel_functions.h"

#include <algorithm>
#include <cstdlib>

#include "platform/foundation/pels/pel_size.h"

namespace {

constexpr rzLong kRowAlign = 32;
constexpr std::size_t kNumGreys = 256;

using Grey = unsigned char;
using GreyView = rzPelBuffer_const<Grey>;

template <class T>
void copyPels(const rzPelBuffer_const<T>& src, const rzPelBuffer<T>& dst, const rzPelRect& common) {
  for (rzLong y = common.y(); y < common.lr().y(); ++y) {
    std::copy_n(src.pointToPel(common.x(), y), common.width(), dst.pointToPel(common.x(), y));
  }
}

template <class T>
rzPelBuffer<T> freshCopy(const rzPelBuffer_const<T>& src) {
  src.requireBound();
  rzPelBuffer<T> copy(src.window(), kRowAlign);
  copyPels(src, copy, src.window());
  copy.copyXforms(src);
  return copy;
}

template <class T>
void copyCommon(const rzPelBuffer_const<T>& src, rzPelBuffer<T>& dst) {
  src.requireBound();
  if (!dst.isBound()) {
    dst = freshCopy(src);
    return;
  }
  const rzPelRect common = src.window().intersect(dst.window());
  if (common.isNull()) return;
  // Views of one root may number its pels differently; then source and target can overlap.
  copyPels(src.sharesRoot(dst) ? rzPelBuffer_const<T>(freshCopy(src)) : src, dst, common);
}

template <class T>
void fill(const rzPelBuffer<T>& buffer, T value) {
  const rzPelRect window = buffer.window();
  buffer.requireBound();
  for (rzLong y = window.y(); y < window.lr().y(); ++y) {
    std::fill_n(buffer.pointToPel(window.x(), y), window.width(), value);
  }
}

// Each row of a window: action(first pel, number of pels).
template <class Action>
void forEachRow(const GreyView& buffer, Action action) {
  buffer.requireBound();
  const rzPelRect window = buffer.window();
  for (rzLong y = window.y(); y < window.lr().y(); ++y) {
    action(buffer.pointToPel(window.x(), y), window.width());
  }
}

void requirePels(const GreyView& buffer) {
  buffer.requireBound();
  if (buffer.window().isNull()) throw rzPel::BadWindow("The window shows no pels");
}

}  // namespace

rzPelBuffer<Grey> rfPelBufferFromPels(const Grey* pels, rzLong width, rzLong height,
                                      std::ptrdiff_t rowStep) {
  if (!pels || !isPelSize(width, height) || std::abs(rowStep) < width) {
    throw rzPel::BadSize("No pels, too many, or rows that overlap");
  }
  rzPelBuffer<Grey> copy(rzPelRect(0, 0, width, height), kRowAlign);
  for (rzLong y = 0; y < height; ++y) std::copy_n(pels + y * rowStep, width, copy.pointToPel(0, y));
  return copy;
}

rzPelBuffer<Grey> rfPelCopy(const GreyView& src) { return freshCopy(src); }

rzPelBuffer<std::int16_t> rfPelCopy(const rzPelBuffer_const<std::int16_t>& src) {
  return freshCopy(src);
}

void rfPelCopy(const GreyView& src, rzPelBuffer<Grey>& dst) { copyCommon(src, dst); }

void rfPelCopy(const rzPelBuffer_const<std::int16_t>& src, rzPelBuffer<std::int16_t>& dst) {
  copyCommon(src, dst);
}

void rfPelSet(const rzPelBuffer<Grey>& buffer, Grey value) { fill(buffer, value); }

void rfPelSet(const rzPelBuffer<std::int16_t>& buffer, std::int16_t value) { fill(buffer, value); }

rzPelBuffer<Grey> rfPelMap(const GreyView& src, std::span<const Grey, 256> table) {
  rzPelBuffer<Grey> result = freshCopy(src);
  const rzPelRect window = result.window();
  for (rzLong y = window.y(); y < window.lr().y(); ++y) {
    Grey* row = result.pointToPel(window.x(), y);
    std::transform(row, row + window.width(), row, [table](Grey pel) { return table[pel]; });
  }
  return result;
}

rzPelBuffer<Grey> rfPelMin(const GreyView& a, const GreyView& b) {
  b.requireBound();
  rzPelBuffer<Grey> result = freshCopy(a);
  if (a.window().size() != b.window().size()) {
    throw rzPel::BadWindow("The windows differ in size");
  }
  const rzPelRect window = result.window();
  for (rzLong y = 0; y < window.height(); ++y) {
    Grey* row = result.pointToPel(window.x(), window.y() + y);
    const Grey* other = b.pointToPel(b.window().x(), b.window().y() + y);
    std::transform(row, row + window.width(), other, row,
                   [](Grey left, Grey right) { return std::min(left, right); });
  }
  return result;
}

Grey rfPelMin(const GreyView& buffer) {
  requirePels(buffer);
  Grey smallest = 255;
  forEachRow(buffer, [&smallest](const Grey* row, rzLong count) {
    smallest = std::min(smallest, *std::min_element(row, row + count));
  });
  return smallest;
}

Grey rfPelMax(const GreyView& buffer) {
  requirePels(buffer);
  Grey greatest = 0;
  forEachRow(buffer, [&greatest](const Grey* row, rzLong count) {
    greatest = std::max(greatest, *std::max_element(row, row + count));
  });
  return greatest;
}

bool rfPelEqual(const GreyView& a, const GreyView& b) {
  a.requireBound();
  b.requireBound();
  if (a.window() != b.window()) return false;
  const rzPelRect window = a.window();
  for (rzLong y = window.y(); y < window.lr().y(); ++y) {
    const Grey* row = a.pointToPel(window.x(), y);
    if (!std::equal(row, row + window.width(), b.pointToPel(window.x(), y))) return false;
  }
  return true;
}

std::vector<rzLong> rfPelHistogram(const GreyView& buffer) {
  std::vector<rzLong> histogram(kNumGreys);
  forEachRow(buffer, [&histogram](const Grey* row, rzLong count) {
    for (rzLong i = 0; i < count; ++i) ++histogram[row[i]];
  });
  return histogram;
}
