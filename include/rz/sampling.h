// SPDX-License-Identifier: Apache-2.0
//
// Reading a picture on the grid of a parallelogram, turned and scaled as it lies: how a character
// is brought upright, enlarged, or turned into a template.
//
//   rzAffineSamplingParams sampling(rectangle, 40, 60, rzAffineSamplingParams::eBilinear);
//   if (!sampling.willClip(image)) patch = rfAffineTransformImage(image, sampling);
//
// The rectangle lies in the client coordinates of the picture that is sampled. With nx samples
// along the x side and ny along the y side, sample (i, j) is taken at the centre of its cell,
//   Po + (i + 0.5)/nx (Px - Po) + (j + 0.5)/ny (Py - Po),
// carried to pel coordinates by the picture's own transform. The value of a pel lives at its
// centre. So the rectangle of a window with as many samples as pels gives the window again.
//
// Bicubic interpolation is that of R. Keys, "Cubic Convolution Interpolation for Digital Image
// Processing", IEEE Transactions on Acoustics, Speech and Signal Processing 29 (1981), with
// a = -1/2. All three kinds pass through the pels.
#pragma once

#include <string>

#include "rz/affine_rectangle.h"
#include "rz/exception.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"

class RZ_API rzAffineSamplingDefs {
 public:
  class BadParams;
};

/// Sampling parameters out of their range.
class RZ_API rzAffineSamplingDefs::BadParams : public rzExceptionWithString {
 public:
  explicit BadParams(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(BadParams)
};

class RZ_API rzAffineSamplingParams {
 public:
  enum Interpolation : rzLong {
    eNearest = 1,   ///< The nearest pel.
    eBilinear = 2,  ///< Between 2 by 2 pels.
    eBicubic = 3,   ///< Between 4 by 4 pels; sharper, and may overshoot at edges.
  };

  /// `nx` and `ny` are the numbers of samples. Throws rzAffineSamplingDefs::BadParams when one is
  /// not positive, when a corner is not finite, and for an unknown interpolation.
  rzAffineSamplingParams(const rzAffineRectangle& affineRectangle, rzLong nx, rzLong ny,
                         Interpolation interpolation = eBilinear);

  const rzAffineRectangle& affineRectangle() const { return affineRectangle_; }
  rzLong xNumSamples() const { return nx_; }
  rzLong yNumSamples() const { return ny_; }
  Interpolation interpolation() const { return interpolation_; }
  /// Throws rzAffineSamplingDefs::BadParams for an unknown one, and then changes nothing.
  void interpolation(Interpolation interpolation);

  /// Some sample needs a pel outside the window of `buffer` with a weight that is not 0. A
  /// coordinate within 1e-6 of a pel's centre counts as on it. Throws rzPel::UnboundWindow.
  bool willClip(const rz_PelBuffer& buffer) const;

  /// Client coordinates from the pel coordinates of a sampled picture.
  rzXform<2> clientFromSamples() const;

 private:
  rzAffineRectangle affineRectangle_;
  rzLong nx_;
  rzLong ny_;
  Interpolation interpolation_;
};

/// The samples as a new buffer with the window (0, 0, nx, ny), each rounded to the nearest whole
/// number, halves up, and kept in 0 to 255. The client transform of the result is the map of the
/// grid: what is seen has the same client coordinates in both pictures. Where a sample needs a pel
/// outside the window the nearest one inside stands in for it.
///
/// Throws rzPel::UnboundWindow; rzPel::BadWindow when the window shows nothing; rzPel::BadSize for
/// more than 2^31 - 1 samples; rzMathError::Singular for a rectangle without area.
RZ_API rzPelBuffer<unsigned char> rfAffineTransformImage(
    const rzPelBuffer_const<unsigned char>& src, const rzAffineSamplingParams& params);

/// The same; `out` becomes the new buffer, or stays as it was when something is thrown.
RZ_API void rfAffineTransformImage(const rzPelBuffer_const<unsigned char>& src,
                                   rzPelBuffer<unsigned char>& out,
                                   const rzAffineSamplingParams& params);
