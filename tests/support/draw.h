// SPDX-License-Identifier: Apache-2.0
//
// Pictures for tests: shapes filled into a grey image by supersampling, at any pose. A shape is the
// set of points for which its function answers true; letters stand in a box of 20 by 30 units whose
// middle is their origin.
#pragma once

#include <cmath>
#include <functional>
#include <vector>

#include "rz/pel_buffer.h"
#include "rz/types.h"
#include "rz/vector.h"
#include "rz/xform.h"

namespace draw {

using Shape = std::function<bool(const rzVector<2>&)>;

inline rzPelBuffer<unsigned char> paper(rzLong width, rzLong height, unsigned char grey = 220) {
  rzPelBuffer<unsigned char> image(rzPelRect(0, 0, width, height), 32);
  for (rzLong y = 0; y < height; ++y) {
    for (rzLong x = 0; x < width; ++x) *image.pointToPel(x, y) = grey;
  }
  return image;
}

/// Fills `shape`, carried to pel coordinates by `pose`, with `grey`.
inline void fill(rzPelBuffer<unsigned char>& image, const Shape& shape, const rzXform<2>& pose,
                 unsigned char grey = 30) {
  constexpr rzLong kSamples = 5;  // to a side of a pel
  const rzXform<2> shapeFromPel = pose.inverse();
  const rzPelRect window = image.window();
  for (rzLong y = window.ul().y(); y < window.lr().y(); ++y) {
    for (rzLong x = window.ul().x(); x < window.lr().x(); ++x) {
      rzLong inside = 0;
      for (rzLong k = 0; k < kSamples * kSamples; ++k) {
        const rzVector<2> point(x + (k % kSamples + 0.5) / kSamples,
                                y + (k / kSamples + 0.5) / kSamples);
        inside += shape(shapeFromPel * point) ? 1 : 0;
      }
      unsigned char& pel = *image.pointToPel(x, y);
      const double share = static_cast<double>(inside) / (kSamples * kSamples);
      pel = static_cast<unsigned char>(std::lround(share * grey + (1.0 - share) * pel));
    }
  }
}

/// A pen stroke from (x0, y0) to (x1, y1) with square ends.
inline Shape stroke(double x0, double y0, double x1, double y1, double width = 5.0) {
  const rzVector<2> from(x0, y0);
  const double length = (rzVector<2>(x1, y1) - from).len();
  const rzVector<2> along = (rzVector<2>(x1, y1) - from) / length;
  return [=](const rzVector<2>& p) {
    const rzVector<2> d = p - from;
    const double t = d.x() * along.x() + d.y() * along.y();
    const double s = d.y() * along.x() - d.x() * along.y();
    return t >= 0.0 && t <= length && std::fabs(s) <= 0.5 * width;
  };
}

inline Shape ring(double x, double y, double inner, double outer) {
  return [=](const rzVector<2>& p) {
    const double r = std::hypot(p.x() - x, p.y() - y);
    return r >= inner && r <= outer;
  };
}

inline Shape together(std::vector<Shape> parts) {
  return [parts = std::move(parts)](const rzVector<2>& p) {
    for (const Shape& part : parts) {
      if (part(p)) return true;
    }
    return false;
  };
}

inline Shape rightOf(double x, Shape shape) {
  return [x, shape = std::move(shape)](const rzVector<2>& p) { return p.x() >= x && shape(p); };
}

inline Shape letterF() {
  return together({stroke(-7, -15, -7, 15), stroke(-9, -12.5, 9, -12.5), stroke(-9, 0, 6, 0)});
}
inline Shape letterR() {
  return together({stroke(-7, -15, -7, 15), stroke(-9, -12.5, 1, -12.5), stroke(-9, 0, 1, 0),
                   rightOf(0.5, ring(0.5, -6.25, 3.75, 8.75)), stroke(0, 0, 8, 15)});
}
inline Shape letterK() {
  return together({stroke(-7, -15, -7, 15), stroke(-6, 2, 8, -15), stroke(-2, -2, 8, 15)});
}
inline Shape letterA() {
  return together({stroke(-8, 15, 0, -15), stroke(8, 15, 0, -15), stroke(-5, 6, 5, 6)});
}
inline Shape letterZ() {
  return together({stroke(-9, -12.5, 9, -12.5), stroke(-9, 12.5, 9, 12.5), stroke(-7, 12, 7, -12)});
}
inline Shape letterO() { return ring(0, 0, 7, 12); }
/// Longer than any letter: in a letter's window it has edges in one direction only.
inline Shape bar() { return stroke(0, -40, 0, 40); }

}  // namespace draw
