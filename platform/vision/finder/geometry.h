// SPDX-License-Identifier: Apache-2.0
//
// The plain values of the finder's inside. Coordinates are those of pels, corner based: the pel in
// column i covers [i, i + 1), its centre is i + 0.5. The upper left of the window is (0, 0).
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace finder {

struct Vec2 {
  double x = 0.0;
  double y = 0.0;
};

inline Vec2 operator+(Vec2 a, Vec2 b) { return {a.x + b.x, a.y + b.y}; }
inline Vec2 operator-(Vec2 a, Vec2 b) { return {a.x - b.x, a.y - b.y}; }
inline Vec2 operator*(double f, Vec2 v) { return {f * v.x, f * v.y}; }
inline double dot(Vec2 a, Vec2 b) { return a.x * b.x + a.y * b.y; }
inline double length(Vec2 v) { return std::sqrt(dot(v, v)); }

/// A linear map, by rows.
struct Mat2 {
  double xx = 1.0;
  double xy = 0.0;
  double yx = 0.0;
  double yy = 1.0;
};

inline Vec2 operator*(const Mat2& m, Vec2 v) {
  return {m.xx * v.x + m.xy * v.y, m.yx * v.x + m.yy * v.y};
}
inline Mat2 operator*(const Mat2& a, const Mat2& b) {
  return {a.xx * b.xx + a.xy * b.yx, a.xx * b.xy + a.xy * b.yy,  //
          a.yx * b.xx + a.yy * b.yx, a.yx * b.xy + a.yy * b.yy};
}
inline double determinant(const Mat2& m) { return m.xx * m.yy - m.xy * m.yx; }
/// The factor by which lengths grow, in the mean.
inline double meanScale(const Mat2& m) { return std::sqrt(std::abs(determinant(m))); }
/// The greatest factor by which lengths grow: the larger singular value.
inline double greatestScale(const Mat2& m) {
  const double squares = m.xx * m.xx + m.xy * m.xy + m.yx * m.yx + m.yy * m.yy;
  const double d = determinant(m);
  return std::sqrt(0.5 * (squares + std::sqrt(std::max(0.0, squares * squares - 4.0 * d * d))));
}
inline Mat2 inverse(const Mat2& m) {
  const double d = determinant(m);
  return {m.yy / d, -m.xy / d, -m.yx / d, m.xx / d};
}
inline Mat2 similarity(double angle, double scale) {
  const double c = scale * std::cos(angle);
  const double s = scale * std::sin(angle);
  return {c, -s, s, c};
}
/// Carries gradients along with points that `m` carries, but for their lengths: the transposed
/// inverse up to a positive factor.
inline Mat2 normalMap(const Mat2& m) {
  const double sign = determinant(m) < 0.0 ? -1.0 : 1.0;
  return {sign * m.yy, -sign * m.yx, -sign * m.xy, sign * m.xx};
}
/// The same for a unit vector, which stays one.
inline Vec2 mapNormal(const Mat2& m, Vec2 n) {
  const Vec2 v = normalMap(m) * n;
  return (1.0 / length(v)) * v;
}

/// The grey pels to look at. `mask`, where there is one, has the same size: pels of 128 or more are
/// looked at.
struct PelView {
  const std::uint8_t* pels = nullptr;
  int width = 0;
  int height = 0;
  std::ptrdiff_t stride = 0;
  const std::uint8_t* mask = nullptr;
  std::ptrdiff_t maskStride = 0;
};

/// Where a pattern lies: its centre in pels of the picture, its turn in radians and its scale in
/// client coordinates; and by how many pels its edges are moved to the bright side, as happens when
/// dark print is bolder, or more blurred, than what was trained.
struct Pose {
  Vec2 centre;
  double angle = 0.0;
  double scale = 1.0;
  double boldness = 0.0;
};

}  // namespace finder
