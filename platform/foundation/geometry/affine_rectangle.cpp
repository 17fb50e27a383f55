// SPDX-License-Identifier: Apache-2.0
#include "rz/affine_rectangle.h"

#include <algorithm>

namespace {

rzVector<2> withLength(const rzVector<2>& side, double length, const rzVector<2>& unturned) {
  const double old = side.len();
  return length * (old > 0.0 ? side / old : unturned);
}

rzVector<2> xSide(double length, const rzRadian& rotation) { return {length, rotation}; }

rzVector<2> ySide(double length, const rzRadian& rotation) {
  const rzVector<2> x(length, rotation);
  return {0.0 - x.y(), x.x()};
}

rzVector<2> lowest(const rzAffineRectangle& r) {
  return {std::min({r.cornerPo().x(), r.cornerPx().x(), r.cornerPy().x(), r.cornerPopp().x()}),
          std::min({r.cornerPo().y(), r.cornerPx().y(), r.cornerPy().y(), r.cornerPopp().y()})};
}

rzVector<2> highest(const rzAffineRectangle& r) {
  return {std::max({r.cornerPo().x(), r.cornerPx().x(), r.cornerPy().x(), r.cornerPopp().x()}),
          std::max({r.cornerPo().y(), r.cornerPx().y(), r.cornerPy().y(), r.cornerPopp().y()})};
}

}  // namespace

rzAffineRectangle::rzAffineRectangle(const rzVector<2>& cornerPo, double xLength, double yLength,
                                     const rzRadian& xRotation, const rzRadian& skew)
    : po_(cornerPo),
      px_(cornerPo + xSide(xLength, xRotation)),
      py_(cornerPo + ySide(yLength, xRotation + skew)) {}

rzRadian rzAffineRectangle::yRotation() const {
  const rzVector<2> y = py_ - po_;
  return rzVector<2>(y.y(), 0.0 - y.x()).angle();
}

void rzAffineRectangle::sides_(const rzVector<2>& x, const rzVector<2>& y) {
  const rzVector<2> po = center() - 0.5 * (x + y);
  *this = rzAffineRectangle(po, po + x, po + y);
}

void rzAffineRectangle::xLength(double value) {
  sides_(withLength(px_ - po_, value, {1.0, 0.0}), py_ - po_);
}

void rzAffineRectangle::yLength(double value) {
  sides_(px_ - po_, withLength(py_ - po_, value, {0.0, 1.0}));
}

void rzAffineRectangle::xRotation(const rzRadian& value) {
  sides_(xSide(xLength(), value), ySide(yLength(), value + skew()));
}

void rzAffineRectangle::skew(const rzRadian& value) {
  sides_(px_ - po_, ySide(yLength(), xRotation() + value));
}

void rzAffineRectangle::center(const rzVector<2>& value) {
  const rzVector<2> shift = value - center();
  *this = rzAffineRectangle(po_ + shift, px_ + shift, py_ + shift);
}

rzRect rzAffineRectangle::encloseRect() const {
  const rzVector<2> low = lowest(*this);
  return {low, highest(*this) - low};
}

rzPelRect rzAffineRectangle::encloseImageRect(const rzXform<2>& imageFromClient) const {
  const rzAffineRectangle mapped = map(imageFromClient);
  return rf_EnclosePels(lowest(mapped), highest(mapped));
}
