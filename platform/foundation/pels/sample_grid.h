// SPDX-License-Identifier: Apache-2.0
//
// SampleGrid: the places of all samples, in pel coordinates of the picture that is sampled.
//
// Each place is computed from its two indices alone, by multiplication before division; adding up
// steps would let the last column drift, and would miss pel centres that the exact place meets.
#pragma once

#include <vector>

#include "rz/pel_buffer.h"
#include "rz/sampling.h"
#include "rz/vector.h"

class SampleGrid {
 public:
  SampleGrid(const rz_PelBuffer& buffer, const rzAffineSamplingParams& params)
      : rectangle_(params.affineRectangle()), nx_(params.xNumSamples()), ny_(params.yNumSamples()) {
    const auto xform = buffer.imageFromClientXformBase();
    if (xform->isLinear()) {
      rectangle_ = rectangle_.map(buffer.imageFromClientXform());
    } else {
      imageFromClient_ = xform;
    }
  }

  bool isLinear() const { return imageFromClient_.isNull(); }
  rzLong numColumns() const { return nx_; }
  rzLong numRows() const { return ny_; }

  /// The places of one row are columnOffsets()[i] + rowStart(j), mapped by place().
  std::vector<rzVector<2>> columnOffsets() const {
    const rzVector<2> side = rectangle_.cornerPx() - rectangle_.cornerPo();
    std::vector<rzVector<2>> offsets;
    offsets.reserve(static_cast<std::size_t>(nx_));
    for (rzLong i = 0; i < nx_; ++i) offsets.push_back(side * (i + 0.5) / nx_);
    return offsets;
  }
  rzVector<2> rowStart(rzLong j) const {
    const rzVector<2> side = rectangle_.cornerPy() - rectangle_.cornerPo();
    return rectangle_.cornerPo() + side * (j + 0.5) / ny_;
  }
  rzVector<2> place(const rzVector<2>& onGrid) const {
    return isLinear() ? onGrid : imageFromClient_->mapPoint(onGrid);
  }

 private:
  rzAffineRectangle rectangle_;  // in pel coordinates if linear, in client coordinates if not
  rzLong nx_;
  rzLong ny_;
  rzPtrHandle_const<rz2XformBase> imageFromClient_;
};
