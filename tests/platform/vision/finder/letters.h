// SPDX-License-Identifier: Apache-2.0
//
// Letters trained and shown for the tests of the pattern finder.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "rz/angle.h"
#include "rz/cx_align.h"
#include "tests/support/draw.h"

namespace letters {

using Image = rzPelBuffer<unsigned char>;

constexpr double kTrainWidth = 32;
constexpr double kTrainHeight = 42;

inline rzXform<2> pose(double x, double y, double degrees = 0.0, double scale = 1.0) {
  return rzXform<2>(rzVector<2>(x, y), scale, 1.0, rzRadian(0.0), rzRadian(rzDegree(degrees)));
}

/// The letter upright, its origin in the middle of the picture.
inline Image trainImage(const draw::Shape& letter) {
  Image image = draw::paper(static_cast<rzLong>(kTrainWidth), static_cast<rzLong>(kTrainHeight));
  draw::fill(image, letter, pose(kTrainWidth / 2, kTrainHeight / 2));
  return image;
}

inline rzCXAlignPattern trained(const draw::Shape& letter) {
  rzCXAlignPattern pattern;
  pattern.train(trainImage(letter), 3);
  return pattern;
}

/// A picture of 160 by 120 pels that shows the letter.
inline Image scene(const draw::Shape& letter, const rzXform<2>& at, rzLong width = 160,
                   rzLong height = 120) {
  Image image = draw::paper(width, height);
  draw::fill(image, letter, at);
  return image;
}

inline rzCXAlignRunParams openParams(double accept = 0.5, rzLong count = 5) {
  rzCXAlignRunParams params;
  params.acceptThreshold(accept);
  params.zoneEnable(3);
  params.zone(rz_CXDefs::eAngle, -179.0, 180.0);
  params.zone(rz_CXDefs::eScale, 0.9, 1.1);
  params.xyOverlap(0.2);
  params.numToFind(count);
  return params;
}

inline std::vector<rzCXAlignResult> run(const rzCXAlignPattern& pattern, const Image& image,
                                        const rzCXAlignRunParams& params) {
  rzCXAlignResultSet set;
  pattern.run(image, params, set);
  return set.results();
}

/// Where the letter's origin lies by a result.
inline rzVector<2> originOf(const rzCXAlignResult& result) {
  return result.pose() * rzVector<2>(kTrainWidth / 2, kTrainHeight / 2);
}

/// The turn of a result against an angle, degrees from 0 to 180.
inline double turnFrom(const rzCXAlignResult& result, double degrees) {
  const double turn = rzDegree(result.pose().xRot()).toDouble();
  return std::fabs(std::remainder(turn - degrees, 360.0));
}

inline double bestScore(const std::vector<rzCXAlignResult>& results) {
  return results.empty() ? 0.0 : results.front().score();
}

inline Image changed(const Image& image, double gain, double offset) {
  Image result(image.window(), 32);
  for (rzLong y = 0; y < image.height(); ++y) {
    for (rzLong x = 0; x < image.width(); ++x) {
      const double grey = gain * *image.pointToPel(x, y) + offset;
      *result.pointToPel(x, y) =
          static_cast<unsigned char>(std::lround(std::clamp(grey, 0.0, 255.0)));
    }
  }
  return result;
}

}  // namespace letters
