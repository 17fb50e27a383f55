// SPDX-License-Identifier: Apache-2.0
#include "rz/xform_radial.h"

#include <algorithm>
#include <cmath>

#include "rz/archive.h"
#include "rz/xform_linear.h"

namespace {

// The tangent matrix of d -> (1 + strength |d|^2) d.
rzMatrix<2> tangent(const rzVector<2>& d, double strength) {
  const double scale = 1.0 + strength * d.dot(d);
  const double k = 2.0 * strength;
  return {scale + k * d.x() * d.x(), k * d.x() * d.y(), k * d.x() * d.y(),
          scale + k * d.y() * d.y()};
}

// The root r >= 0 of r + strength r^3 = radius on the branch through 0, by Newton's method. The
// start lies on the side from which the steps never pass the root: above it for a positive
// strength (convex), below it for a negative one (concave up to the fold).
double sourceRadius(double radius, double strength) {
  constexpr int kMaxSteps = 60;  // enough for the slow approach to a double root at the fold
  double r = strength > 0.0 ? std::min(radius, std::cbrt(radius / strength)) : radius;
  for (int i = 0; i < kMaxSteps; ++i) {
    const double slope = 1.0 + 3.0 * strength * r * r;
    const double next = r - (r + strength * r * r * r - radius) / slope;
    if (!(slope > 0.0) || next == r) break;
    r = next;
  }
  return r;
}

// Where the fold of a negative strength is moved to: no point from within lands farther out.
double reach(double strength) { return 2.0 / 3.0 / std::sqrt(-3.0 * strength); }

}  // namespace

const rz_Instantiator rz2XformRadial::sExemplar(typeid(rz2XformRadial), &rz2XformRadial::make);

rzPersistent* rz2XformRadial::make() { return new rz2XformRadial; }

rzVector<2> rz2XformRadial::mapPoint(const rzVector<2>& p) const {
  const rzVector<2> d = p - center_;
  if (!isInverse_) return center_ + (1.0 + strength_ * d.dot(d)) * d;
  const double radius = d.len();
  if (radius == 0.0) return p;
  if (strength_ < 0.0 && radius > reach(strength_)) {
    rf_ThrowSingular("Point lies beyond the fold of a radial transform");
  }
  return center_ + (sourceRadius(radius, strength_) / radius) * d;
}

rz2XformLinear rz2XformRadial::linearXform(const rzVector<2>& p) const {
  const rzVector<2> image = mapPoint(p);
  const rzMatrix<2> matrix =
      isInverse_ ? tangent(image - center_, strength_).inverse() : tangent(p - center_, strength_);
  return {matrix, image - matrix * p};
}

rzPtrHandle<rz2XformBase> rz2XformRadial::inverseBase() const {
  return new rz2XformRadial(center_, strength_, !isInverse_);
}

rzPtrHandle<rz2XformBase> rz2XformRadial::cloneBase() const { return new rz2XformRadial(*this); }

RZ_DEFINE_DISPATCH_SERIALIZE(rz2XformRadial)

void rz2XformRadial::serialize_(rzArchive& archive, unsigned char version) {
  if (version != 0) throw rzArchive::UnknownVersion("rz2XformRadial", 0);
  rzVector<2> center = center_;
  double strength = strength_;
  bool isInverse = isInverse_;
  archive || center || strength || isInverse;
  if (archive.isStoring()) return;
  if (!center.isFinite() || !std::isfinite(strength)) {
    throw rzArchive::BadFormat("Transform is not finite");
  }
  *this = rz2XformRadial(center, strength, isInverse);
}
