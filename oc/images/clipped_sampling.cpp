// SPDX-License-Identifier: Apache-2.0
#include "oc/images/clipped_sampling.h"

#include "rz/histogram.h"
#include "rz/pel_functions.h"
#include "rz/real_eq.h"
#include "rz/rect.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

constexpr double kMargin = 4.0;  // pels round a sampled region, more than any interpolation reads
constexpr auto kMaskInterpolation = rzAffineSamplingParams::eBilinear;
constexpr unsigned char kReal = 255;

rzPelRect paddedRegion(const rzRect& region) {
  return {rfIFloor(region.ul().x() - kMargin), rfIFloor(region.ul().y() - kMargin),
          rfICeil(region.sz().x() + 2.0 * kMargin), rfICeil(region.sz().y() + 2.0 * kMargin)};
}

rzPelBuffer<unsigned char> bufferFor(const Image& source, const rzPelRect& region,
                                     unsigned char grey) {
  rzPelBuffer<unsigned char> buffer(region, kImageAlign);
  buffer.clientFromImageXform(source.clientFromImageXform());
  rfPelSet(buffer, grey);
  return buffer;
}

}  // namespace

void rf_PadForSampling(const Image& image, const Image& mask, const rzPelRect& region,
                       Image& outImage, Image& outMask) {
  if (image.window().contains(region)) {
    outImage = image;
    outMask = mask;
    return;
  }
  const rzHistoStats greys(rfPelHistogram(image), false);
  auto padImage = bufferFor(image, region, static_cast<unsigned char>(greys.median()));
  auto padMask = bufferFor(mask, region, 0);
  rfPelCopy(image, padImage);
  if (mask.isBound()) {
    rfPelCopy(mask, padMask);
  } else {
    padMask.window(image.window(), true);
    rfPelSet(padMask, kReal);
    padMask.setEntire();
  }
  outImage = padImage;
  outMask = padMask;
}

void rfAffineTransformWithClipping(const Image& image, const Image& mask,
                                   const rzAffineSamplingParams& params,
                                   rzPelBuffer<unsigned char>& outImage,
                                   rzPelBuffer<unsigned char>& outMask) {
  // The mask is sampled through the image's client coordinates.
  Image maskView = mask;
  maskView.imageFromClientXform(image.imageFromClientXform());
  if (!params.willClip(image) && (!mask.isBound() || !params.willClip(maskView))) {
    rfAffineTransformImage(image, outImage, params);
    if (mask.isBound()) rfAffineTransformImage(maskView, outMask, params);
    return;
  }
  const rzRect region = params.affineRectangle().map(image.imageFromClientXform()).encloseRect();
  Image padded;
  Image paddedMask;
  rf_PadForSampling(image, maskView, paddedRegion(region), padded, paddedMask);
  rfAffineTransformImage(padded, outImage, params);
  rzAffineSamplingParams maskParams = params;
  maskParams.interpolation(kMaskInterpolation);
  rfAffineTransformImage(paddedMask, outMask, maskParams);
}
