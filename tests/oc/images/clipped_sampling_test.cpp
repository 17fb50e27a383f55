// SPDX-License-Identifier: Apache-2.0
#include "oc/images/clipped_sampling.h"

#include <gtest/gtest.h>

#include "rz/pel_functions.h"
#include "support/noise.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;
using Sampling = rzAffineSamplingParams;

// Left half 0, right half 255.
Image halfMask(const rzPelRect& rect) {
  rzPelBuffer<unsigned char> mask(rect, 32);
  for (rzLong y = rect.y(); y < rect.lr().y(); ++y) {
    for (rzLong x = rect.x(); x < rect.lr().x(); ++x) {
      *mask.pointToPel(x, y) = x - rect.x() < rect.width() / 2 ? 0 : 255;
    }
  }
  return mask;
}

// A grid of one sample a pel whose corner lies at (x, y).
Sampling gridAt(double x, double y, rzLong nx, rzLong ny,
                Sampling::Interpolation interpolation = Sampling::eBilinear) {
  return Sampling(
      rzAffineRectangle(rzVector<2>(x, y), rzVector<2>(x + nx, y), rzVector<2>(x, y + ny)), nx, ny,
      interpolation);
}

TEST(ClippedSampling, OverTheEdgeTheMedianStandsInAndTheMaskIsZero) {
  rzPelBuffer<unsigned char> image(rzPelRect(0, 0, 10, 10), 32);
  rfPelSet(image, 200);
  *image.pointToPel(0, 5) = 7;
  rzPelBuffer<unsigned char> out;
  rzPelBuffer<unsigned char> outMask;
  rfAffineTransformWithClipping(image, Image(), gridAt(-3, -4, 6, 12, Sampling::eBicubic), out,
                                outMask);
  for (rzLong y = 0; y < 12; ++y) {
    for (rzLong x = 0; x < 6; ++x) {
      const bool isReal = x >= 3 && y >= 4;
      EXPECT_EQ(*outMask.pointToPel(x, y), isReal ? 255 : 0) << x << ", " << y;
      EXPECT_EQ(*out.pointToPel(x, y), x == 3 && y == 9 ? 7 : 200) << x << ", " << y;
    }
  }
}

TEST(ClippedSampling, OverTheEdgeAMaskIsSampledBilinearlyThroughTheImagesClientFrame) {
  const rzPelRect window(0, 0, 10, 6);
  Image image = noise(window, 2);
  image.clientFromImageXform(rzXform<2>(rzMatrix<2>(2.0, 0.0, 0.0, 2.0), rzVector<2>(100, 50)));
  // Client (109, 50) is pel (4.5, 0): between the halves of the mask.
  const Sampling grid(
      rzAffineRectangle(rzVector<2>(109, 46), rzVector<2>(113, 46), rzVector<2>(109, 54)), 2, 4,
      Sampling::eNearest);
  rzPelBuffer<unsigned char> out;
  rzPelBuffer<unsigned char> outMask;
  rfAffineTransformWithClipping(image, halfMask(window), grid, out, outMask);
  EXPECT_EQ(*outMask.pointToPel(0, 1), 0);    // above the image
  EXPECT_EQ(*outMask.pointToPel(0, 3), 128);  // half of 255, rounded up
  EXPECT_EQ(*outMask.pointToPel(1, 3), 255);
}

TEST(PadForSampling, CopiesOnlyWhenTheRegionReachesOver) {
  const rzPelRect window(3, 4, 10, 8);
  const Image image = noise(window, 3);
  const Image mask = halfMask(window);
  Image out;
  Image outMask;
  rf_PadForSampling(image, mask, rzPelRect(4, 4, 9, 8), out, outMask);
  EXPECT_EQ(out.pointToPel(5, 5), image.pointToPel(5, 5));
  EXPECT_EQ(outMask.pointToPel(5, 5), mask.pointToPel(5, 5));

  const rzPelRect region(6, 2, 20, 5);
  rf_PadForSampling(image, mask, region, out, outMask);
  EXPECT_EQ(out.window(), region);
  EXPECT_EQ(outMask.window(), region);
  EXPECT_EQ(*out.pointToPel(6, 4), *image.pointToPel(6, 4));
  EXPECT_EQ(*outMask.pointToPel(12, 4), 255);
  EXPECT_EQ(*outMask.pointToPel(13, 4), 0);
}

}  // namespace
