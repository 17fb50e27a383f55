// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "rz/attention.h"
#include "rz/edgelet.h"

namespace {

// Two strokes of a letter must not melt into one at small sizes, nor fall into thin lines at large
// ones; widths found on capitals and digits of 16 to 100 pels.
constexpr double kSmallestSigma = 2.0;
constexpr double kSigmaOfLongerSide = 0.08;
constexpr double kKernelSigmas = 4.0;  // the rest of a Gaussian is below 1e-4

// For every grain a number that kernels can be made of.
double sigmaFor(const rzPelRect& window, double grain) {
  constexpr double kSharpest = 0.1;   // a Gaussian on one pel alone
  constexpr double kBroadest = 4096;  // broader than most pictures
  const double longer = std::max(window.width(), window.height());
  const double sigma = grain * std::max(kSmallestSigma, kSigmaOfLongerSide * longer);
  return sigma > kSharpest ? std::min(sigma, kBroadest) : kSharpest;
}

// Weights of a correlation, the middle one for the pel itself.
using Kernel = std::vector<float>;

// A Gaussian of sum 1, and its derivative with the answer 1 to a slope of 1 per pel.
struct GaussKernels {
  Kernel smooth;
  Kernel slope;
};

GaussKernels gaussKernels(double sigma) {
  const int radius = std::max(1, static_cast<int>(std::ceil(kKernelSigmas * sigma)));
  double sum = 0.0;
  double moment = 0.0;
  std::vector<double> weights;
  for (int x = -radius; x <= radius; ++x) {
    weights.push_back(std::exp(-0.5 * x * x / (sigma * sigma)));
    sum += weights.back();
    moment += weights.back() * x * x;
  }
  GaussKernels kernels;
  for (int x = -radius; x <= radius; ++x) {
    const double weight = weights[static_cast<std::size_t>(x + radius)];
    kernels.smooth.push_back(static_cast<float>(weight / sum));
    kernels.slope.push_back(static_cast<float>(weight * x / moment));
  }
  return kernels;
}

// A plane of real numbers, row by row.
struct Plane {
  rzLong width;
  rzLong height;
  std::vector<float> values;

  Plane(rzLong w, rzLong h)
      : width(w), height(h), values(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}
  float* row(rzLong y) { return values.data() + std::ptrdiff_t{y} * width; }
  const float* row(rzLong y) const { return values.data() + std::ptrdiff_t{y} * width; }
};

Plane planeOf(const rzPelBuffer_const<unsigned char>& image) {
  const rzPelRect window = image.window();
  Plane plane(window.width(), window.height());
  for (rzLong y = 0; y < plane.height; ++y) {
    std::copy_n(image.pointToPel(window.x(), window.y() + y), plane.width, plane.row(y));
  }
  return plane;
}

// Adds `weight` times a row to another.
void accumulate(const float* source, float weight, rzLong count, float* out) {
  for (rzLong x = 0; x < count; ++x) out[x] += weight * source[x];
}

Plane alongRows(const Plane& plane, const Kernel& kernel) {
  const rzLong radius = rf_Count(kernel.size() / 2);
  Plane result(plane.width, plane.height);
  std::vector<float> padded(static_cast<std::size_t>(plane.width) + kernel.size());
  for (rzLong y = 0; y < plane.height; ++y) {
    rzAttention::check();
    const float* row = plane.row(y);
    float* middle = padded.data() + radius;
    std::fill_n(padded.data(), radius, row[0]);
    std::copy_n(row, plane.width, middle);
    std::fill_n(middle + plane.width, radius, row[plane.width - 1]);
    for (std::size_t k = 0; k < kernel.size(); ++k) {
      accumulate(padded.data() + k, kernel[k], plane.width, result.row(y));
    }
  }
  return result;
}

Plane alongColumns(const Plane& plane, const Kernel& kernel) {
  const rzLong radius = rf_Count(kernel.size() / 2);
  Plane result(plane.width, plane.height);
  for (rzLong y = 0; y < plane.height; ++y) {
    rzAttention::check();
    for (std::size_t k = 0; k < kernel.size(); ++k) {
      const rzLong source = std::clamp(y - radius + rf_Count(k), rzLong{0}, plane.height - 1);
      accumulate(plane.row(source), kernel[k], plane.width, result.row(y));
    }
  }
  return result;
}

// The pels within the outermost ring whose gradient is that of a step of `least` or more.
std::vector<rzEdgelet> strongPels(const Plane& gx, const Plane& gy, const rzPelRect& window,
                                  double sigma, double least) {
  // The gradient of an ideal step of height 1, smoothed, is 1 / (sigma sqrt(2 pi)) at its middle.
  const double stepHeight = sigma * std::sqrt(kRzTwoPi);
  std::vector<rzEdgelet> edges;
  for (rzLong y = 1; y < window.height() - 1; ++y) {
    for (rzLong x = 1; x < window.width() - 1; ++x) {
      const rzVector<2> gradient(gx.row(y)[x], gy.row(y)[x]);
      const double contrast = gradient.len() * stepHeight;
      if (!(contrast >= least)) continue;
      edges.emplace_back(rzVector<2>(window.x() + x + 0.5, window.y() + y + 0.5),
                         rzAngle8(gradient.angle()), static_cast<float>(contrast));
    }
  }
  return edges;
}

}  // namespace

void rfEdgeDetect(const rzPelBuffer_const<unsigned char>& image, const rzEdgeletParams& params,
                  rzEdgeletSet& edgelets) {
  image.requireBound();
  const rzPelRect window = image.window();
  if (window.isNull()) {
    edgelets = rzEdgeletSet();
    return;
  }
  const double sigma = sigmaFor(window, params.grain());
  const GaussKernels kernels = gaussKernels(sigma);
  const Plane plane = planeOf(image);
  const Plane gx = alongColumns(alongRows(plane, kernels.slope), kernels.smooth);
  const Plane gy = alongColumns(alongRows(plane, kernels.smooth), kernels.slope);
  edgelets = rzEdgeletSet(strongPels(gx, gy, window, sigma, params.contrast()));
}
