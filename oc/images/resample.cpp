// SPDX-License-Identifier: Apache-2.0
#include "oc/images/resample.h"

#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "oc/image_helpers.h"
#include "oc/images/clipped_sampling.h"
#include "rz/pel_functions.h"
#include "rz/sampling.h"

namespace {

constexpr std::size_t kMaskThreshold = 128;

std::vector<unsigned char> makeMaskBinarizeTable() {
  std::vector<unsigned char> table(256, 0);
  for (std::size_t value = kMaskThreshold; value < table.size(); ++value) table[value] = 255;
  return table;
}

const std::vector<unsigned char> sMaskBinarizeTable = makeMaskBinarizeTable();

// Halves away from zero; more than 16 bits wrap, and the sampler refuses what is not positive.
std::int16_t sampleCount(double length) { return static_cast<std::int16_t>(std::llround(length)); }

rzAffineRectangle uprightAtOrigin(rzPair<rzLong> size) {
  return {rzVector<2>(), static_cast<double>(size.x()), static_cast<double>(size.y()),
          rzRadian(0.0), rzRadian(0.0)};
}

}  // namespace

rzAffineRectangle rf_SamplingRectangle(const rzPelRect& rect, const rzRadian& xRot,
                                       const rzRadian& yRot) {
  const rzXform<2> turn(rzMatrix<2>(xRot, yRot, 1.0, 1.0), rzVector<2>());
  const rzPelRect holder = uprightAtOrigin(rect.size()).map(turn).encloseImageRect(rzXform<2>());
  rzAffineRectangle result = uprightAtOrigin(holder.size()).map(turn);
  result.center((rzVector<2>(rect.ul()) + rzVector<2>(rect.lr())) * 0.5);
  return result;
}

void rf_ResampleToMatch(const rzPelBuffer_const<unsigned char>& trainImage,
                        rzPelBuffer<unsigned char>& runImage, rzPelBuffer<unsigned char>& runMask) {
  // What one step of a trained pel is in run pels.
  const rzMatrix<2> step =
      (runImage.imageFromClientXform() * trainImage.clientFromImageXform()).matrix();
  if (!runMask.isBound()) {
    runMask = rzPelBuffer<unsigned char>(runImage.window(), kImageAlign);
    rfPelSet(runMask, 255);
  }
  rzAffineRectangle grid = rf_SamplingRectangle(runImage.window(), step.xRot(), step.yRot());
  const double stepsInX = grid.xLength() / step.xScale();
  const double stepsInY = grid.yLength() / step.yScale();
  const std::int16_t nx = sampleCount(stepsInX);
  const std::int16_t ny = sampleCount(stepsInY);
  grid.xLength(grid.xLength() * nx / stepsInX);
  grid.yLength(grid.yLength() * ny / stepsInY);
  grid.xRotation(step.xRot());
  grid.skew(step.yRot() - step.xRot());
  const rzAffineSamplingParams params(grid.map(runImage.clientFromImageXform()), nx, ny,
                                      rzAffineSamplingParams::eBicubic);
  rzPelBuffer<unsigned char> sampled;
  rzPelBuffer<unsigned char> sampledMask;
  rfAffineTransformWithClipping(runImage, runMask, params, sampled, sampledMask);
  runMask = rfPelMap(sampledMask, std::span<const unsigned char, 256>(sMaskBinarizeTable));
  runImage = sampled;
}
