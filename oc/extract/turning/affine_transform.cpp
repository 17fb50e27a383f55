// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/turning/affine_transform.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "oc/extract/turning/working_buffer.h"
#include "rz/assert.h"
#include "rz/pel_functions.h"
#include "rz/rect.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;
using Buffer = rzPelBuffer<unsigned char>;

constexpr rzLong kFrame = 3;  // pels on each side; covers the reach of every interpolation
constexpr double kSmallestSide = 0.5;
constexpr double kLargestSide = 32767.0;
constexpr std::ptrdiff_t kMaskThreshold = 128;
constexpr unsigned char kLeftOut = 255;

rzPelRect framed(const rzPelRect& rect) {
  return rect.trim(-kFrame, -kFrame, -kFrame, -kFrame, false);
}

// The window in the middle of everything that sampling `covering` can read. Its frame is real
// where the root has pels and mirrored where it has none. The rest stays 0; the corners of a turned
// copy read it.
Buffer paddedCopy(const Image& image, const rzAffineRectangle& covering) {
  Buffer pad(framed(covering.encloseImageRect(rzXform<2>())), kWorkingAlign);
  rfPelSet(pad, 0);
  Image whole = image;
  whole.setEntire();
  Image bordered;
  rf_CopyWithBorder(whole, whole.window(), framed(image.window()), bordered);
  rfPelCopy(bordered, pad);
  pad.copyXforms(image);
  return pad;
}

Buffer paddedMask(const Image& mask, const rzPelRect& imageWindow, const Buffer& pad) {
  Buffer maskPad(pad.window(), kWorkingAlign);
  rfPelSet(maskPad, kLeftOut);
  if (mask.isBound()) {
    rfPelCopy(mask, maskPad);
  } else {
    Buffer underImage = maskPad;
    underImage.window(imageWindow, true);
    rfPelSet(underImage, 0);
  }
  maskPad.copyXforms(pad);
  return maskPad;
}

std::array<unsigned char, 256> thresholdTable() {
  std::array<unsigned char, 256> table{};
  std::fill(table.begin() + kMaskThreshold, table.end(), kLeftOut);
  return table;
}

rzLong sampleCount(double length) {
  rstd_assert_(length >= kSmallestSide && length < kLargestSide, __LINE__);
  return static_cast<rzLong>(length + 0.5);
}

rzAffineSamplingParams samplingOf(const rzAffineRectangle& covering, const rzMatrix<2>& inverse,
                                  const rzVector<2>& centre, const rzXform<2>& clientFromImage,
                                  rzAffineSamplingParams::Interpolation interpolation) {
  const rzLong width = sampleCount(covering.xLength() / inverse.xScale());
  const rzLong height = sampleCount(covering.yLength() / inverse.yScale());
  rzAffineRectangle sample;
  sample.xLength(width * inverse.xScale());
  sample.yLength(height * inverse.yScale());
  sample.xRotation(inverse.xRot());
  sample.skew(inverse.yRot() - inverse.xRot());
  sample.center(centre);
  return {sample.map(clientFromImage), width, height, interpolation};
}

struct MaskRequest {
  const Image& mask;
  Buffer& out;
  rzAffineSamplingParams::Interpolation interpolation;
};

void transform(const Image& image, const rzRadian& angle, double scale, Buffer& out,
               rzAffineSamplingParams::Interpolation interpolation, const MaskRequest* request) {
  const rzMatrix<2> inverse = rzMatrix<2>(angle, angle, scale, scale).inverse();
  const rzPelRect window = image.window();
  const rzAffineRectangle covering = rf_EncloseRotated(window, inverse.xRot(), inverse.yRot());
  const Buffer pad = paddedCopy(image, covering);
  rzAffineSamplingParams sampling =
      samplingOf(covering, inverse, rf_CenterOf(window), pad.clientFromImageXform(), interpolation);
  const Buffer turned = rfAffineTransformImage(pad, sampling);
  if (request) {
    const Buffer maskPad = paddedMask(request->mask, window, pad);
    sampling.interpolation(request->interpolation);
    request->out = rfPelMap(rfAffineTransformImage(maskPad, sampling), thresholdTable());
  }
  out = turned;
}

}  // namespace

rzVector<2> rf_CenterOf(const rzPelRect& rect) {
  return (rzVector<2>(rect.ul()) + rzVector<2>(rect.lr())) * 0.5;
}

rzAffineRectangle rf_MapRect(const rzPelRect& rect, const rzXform<2>* xform) {
  const rzAffineRectangle corners(rect.ul(), rect.ur(), rect.ll());
  return xform ? corners.map(*xform) : corners;
}

rzAffineRectangle rf_EncloseRotated(const rzPelRect& rect, const rzRadian& xRot,
                                    const rzRadian& yRot) {
  const rzVector<2> centre = rf_CenterOf(rect);
  const rzXform<2> toOrigin(rzMatrix<2>(), -centre);
  const rzXform<2> back(rzMatrix<2>(), centre);
  const rzXform<2> unturn(rzMatrix<2>(-xRot, -yRot, 1.0, 1.0), rzVector<2>());
  const rzXform<2> turn(rzMatrix<2>(xRot, yRot, 1.0, 1.0), rzVector<2>());
  const rzXform<2> unturned = unturn * toOrigin;
  const rzRect box = rf_MapRect(rect, &unturned).encloseRect();
  return rzAffineRectangle(box.ul(), box.ur(), box.ll()).map(back * turn);
}

void rf_AffineTransform(const Image& image, const rzRadian& angle, double scale, Buffer& out,
                        rzAffineSamplingParams::Interpolation interpolation) {
  transform(image, angle, scale, out, interpolation, nullptr);
}

void rf_AffineTransform(const Image& image, const Image& mask, const rzRadian& angle, double scale,
                        Buffer& out, Buffer& outMask,
                        rzAffineSamplingParams::Interpolation interpolation,
                        rzAffineSamplingParams::Interpolation maskInterpolation) {
  const MaskRequest request{mask, outMask, maskInterpolation};
  transform(image, angle, scale, out, interpolation, &request);
}
