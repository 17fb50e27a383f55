// SPDX-License-Identifier: Apache-2.0
//
// Which pels a sample needs, along one axis. One rule for reading and for asking beforehand.
#pragma once

#include <cmath>

#include "rz/sampling.h"
#include "rz/types.h"

/// Coordinates this near to a pel's centre count as on it, so that rounding in the last digits of a
/// turned grid asks for no further pel.
inline constexpr double kOnCentre = 1e-6;

/// A coordinate by the pel whose centre is at or before it and the distance from that centre.
struct PelFraction {
  rzLong pel;
  double fraction;  ///< In [0, 1).
};

/// `coordinate` has a floor in the range of rzLong.
inline PelFraction pelFraction(double coordinate) {
  const double fromCentre = coordinate - 0.5;
  const double floor = std::floor(fromCentre);
  const double fraction = fromCentre - floor;
  const rzLong pel = static_cast<rzLong>(floor);
  if (fraction < kOnCentre) return {pel, 0.0};
  if (fraction > 1.0 - kOnCentre) return {pel + 1, 0.0};
  return {pel, fraction};
}

/// The pel whose centre is nearest; the further one of two.
inline rzLong nearestPel(double coordinate) {
  return static_cast<rzLong>(std::floor(coordinate + kOnCentre));
}

/// The pels from `first` to `last` have weights that are not 0.
struct PelReach {
  rzLong first;
  rzLong last;
};

inline PelReach pelReach(double coordinate, rzAffineSamplingParams::Interpolation interpolation) {
  if (interpolation == rzAffineSamplingParams::eNearest) {
    const rzLong pel = nearestPel(coordinate);
    return {pel, pel};
  }
  const PelFraction place = pelFraction(coordinate);
  if (place.fraction == 0.0) return {place.pel, place.pel};
  if (interpolation == rzAffineSamplingParams::eBilinear) return {place.pel, place.pel + 1};
  return {place.pel - 1, place.pel + 2};
}
