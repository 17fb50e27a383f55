// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "oc/extract/turning/affine_transform.h"
#include "oc/extract/turning/working_buffer.h"
#include "rz/assert.h"
#include "rz/pel_functions.h"

namespace {

using Buffer = rzPelBuffer<unsigned char>;

// Copies one row of `inner`'s width; both rows start at its first column.
void copyRow(const Buffer& buffer, const rzPelRect& inner, rzLong from, rzLong to) {
  std::copy_n(buffer.pointToPel(inner.x(), from), inner.width(), buffer.pointToPel(inner.x(), to));
}

void mirrorAboveAndBelow(const Buffer& buffer, const rzPelRect& inner) {
  const rzPelRect window = buffer.window();
  const rzLong top = inner.y() - window.y();
  const rzLong bottom = window.lr().y() - inner.lr().y();
  const rzLong nearest = std::min(top, inner.height()) - 1;
  for (rzLong k = 0; k < top; ++k) {
    copyRow(buffer, inner, inner.y() + std::max(nearest - k, 0), window.y() + k);
  }
  for (rzLong k = 0; k < bottom; ++k) {
    const rzLong source = std::max(inner.height() - 1 - k, 0);
    copyRow(buffer, inner, inner.y() + source, inner.lr().y() + k);
  }
}

// `first` is the pel in `inner`'s first column.
void mirrorRow(unsigned char* first, rzLong width, rzLong left, rzLong right) {
  for (rzLong i = 0; i < left; ++i) first[-1 - i] = first[std::min(i, width - 1)];
  unsigned char* last = first + width - 1;
  for (rzLong i = 0; i < right; ++i) last[1 + i] = *(last - std::min(i, left + width - 1));
}

}  // namespace

void rf_MirrorBorders(rzPelBuffer<unsigned char>& buffer, const rzPelRect& inner) {
  mirrorAboveAndBelow(buffer, inner);
  const rzPelRect window = buffer.window();
  const rzLong left = inner.x() - window.x();
  const rzLong right = window.lr().x() - inner.lr().x();
  for (rzLong y = window.y(); y < window.lr().y(); ++y) {
    mirrorRow(buffer.pointToPel(inner.x(), y), inner.width(), left, right);
  }
}

void rf_CopyWithBorder(const rzPelBuffer_const<unsigned char>& source, const rzPelRect& inner,
                       const rzPelRect& outer, rzPelBuffer_const<unsigned char>& out) {
  rzPelBuffer_const<unsigned char> view = source;
  view.setEntire();
  rstd_assert_(view.window().contains(inner), __LINE__);
  view.window(inner, false);
  Buffer buffer(outer, kWorkingAlign);
  rfPelCopy(view, buffer);
  if (!inner.contains(outer)) {
    const rzPelRect overlap = inner.intersect(outer);
    rstd_assert_(!overlap.isNull(), __LINE__);
    rf_MirrorBorders(buffer, overlap);
  }
  out = buffer;
}
