// SPDX-License-Identifier: Apache-2.0
#include "oc/padding.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "oc/occhar/care_region.h"
#include "oc/occhar/row_median.h"
#include "rz/charlib/result.h"
#include "rz/exception.h"
#include "rz/pel_error.h"
#include "rz/pel_functions.h"

namespace {

using Buffer = rzPelBuffer<unsigned char>;
using Image = rzPelBuffer_const<unsigned char>;

// Columns on either side of the area.
struct Margins {
  std::size_t left;
  std::size_t area;
  std::size_t right;

  std::size_t all() const { return left + area + right; }
};

Margins marginsOf(const rzPelRect& window, const rzPelRect& area) {
  return {static_cast<std::size_t>(area.x() - window.x()), static_cast<std::size_t>(area.width()),
          static_cast<std::size_t>(window.ur().x() - area.ur().x())};
}

void copyRow(std::size_t length, const unsigned char* source, unsigned char* destination) {
  rfThrowExceptionOnFailure(rsys_memory_copy(length, source, destination));
}

void fillSides(unsigned char* row, const Margins& margins, unsigned char left,
               unsigned char right) {
  std::fill_n(row, margins.left, left);
  std::fill_n(row + margins.left + margins.area, margins.right, right);
}

// Continues the area's edge row through `count` rows, each `step` further outward.
void padRows(unsigned char* edgeRow, std::ptrdiff_t step, rzLong count, const Margins& margins) {
  if (count == 0) return;
  unsigned char* first = edgeRow + step;
  copyRow(margins.area, edgeRow + margins.left, first + margins.left);
  fillSides(first, margins, first[margins.left], first[margins.left + margins.area - 1]);
  rf_medianFilterRow_({first, margins.all()});
  for (rzLong i = 1; i < count; ++i) copyRow(margins.all(), first, first + i * step);
}

// Continues the area's edge columns to the window's sides.
void padColumns(unsigned char* firstRow, std::ptrdiff_t step, std::size_t height,
                const Margins& margins) {
  if (margins.left == 0 && margins.right == 0) return;
  std::vector<unsigned char> leftEdge(height);
  std::vector<unsigned char> rightEdge(height);
  const auto rowAt = [=](std::size_t i) {
    return firstRow + static_cast<std::ptrdiff_t>(i) * step;
  };
  for (std::size_t i = 0; i < height; ++i) {
    leftEdge[i] = rowAt(i)[margins.left];
    rightEdge[i] = rowAt(i)[margins.left + margins.area - 1];
  }
  rf_medianFilterRow_(leftEdge);
  rf_medianFilterRow_(rightEdge);
  for (std::size_t i = 0; i < height; ++i) {
    fillSides(rowAt(i), margins, leftEdge[i], rightEdge[i]);
  }
}

rzPelRect careRegion(Buffer& mask, unsigned char careThreshold, bool& careFound) {
  return windowMaskCareRegion(mask, careThreshold, careFound);
}
rzPelRect careRegion(Image& mask, unsigned char careThreshold, bool& careFound) {
  return rf_OCWindowMaskCareRegion(mask, careThreshold, careFound);
}

template <class AnyBuffer>
void padWithMask(AnyBuffer& image, AnyBuffer& mask, unsigned char careThreshold,
                 const rzPelRect& area, bool& careFound) {
  rzPelRect keep = area;
  careFound = true;
  if (mask.isBound()) keep = careRegion(mask, careThreshold, careFound).intersect(area);
  if (!careFound) return;
  rf_OCBackgroundPadImage(image, keep);
  if (mask.isBound()) rf_OCBackgroundPadImage(mask, keep);
}

}  // namespace

void rf_OCBackgroundPadImage(const Buffer& image, const rzPelRect& area) {
  const rzPelRect& window = image.window();
  image.requireBound();
  if (area.isNull()) return;
  if (!window.contains(area)) throw rzPel::BadWindow("Image window does not contain padded area");
  const Margins margins = marginsOf(window, area);
  const std::ptrdiff_t step = image.rowUpdate();
  unsigned char* first = image.pointToPel(window.x(), area.y());
  unsigned char* last = image.pointToPel(window.x(), area.ll().y() - 1);
  padRows(first, -step, area.y() - window.y(), margins);
  padRows(last, step, window.ll().y() - area.ll().y(), margins);
  padColumns(first, step, static_cast<std::size_t>(area.height()), margins);
}

void rf_OCBackgroundPadImage(Image& image, const rzPelRect& area) {
  const Buffer padded = rfPelCopy(image);
  rf_OCBackgroundPadImage(padded, area);
  image = padded;
}

void rf_OCBackgroundPadImage(Buffer& image, Buffer& mask, unsigned char careThreshold,
                             const rzPelRect& area, bool& careFound) {
  padWithMask(image, mask, careThreshold, area, careFound);
}

void rf_OCBackgroundPadImage(Image& image, Image& mask, unsigned char careThreshold,
                             const rzPelRect& area, bool& careFound) {
  padWithMask(image, mask, careThreshold, area, careFound);
}
