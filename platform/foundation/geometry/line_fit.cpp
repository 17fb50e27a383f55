// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "rz/fit.h"

// The line of total least squares runs through the centroid along the axis of largest scatter,
// whose angle is 0.5 atan2(2 Sxy, Sxx - Syy) (K. Pearson, "On lines and planes of closest fit to
// systems of points in space", Philosophical Magazine, 1901).
bool rz_LineMoments::fit(rzFLine& line) const {
  if (count_ < 2.0) return false;
  const rzVector<2> mean(sumX_ / count_, sumY_ / count_);
  const double sxx = sumXX_ - sumX_ * mean.x();
  const double sxy = sumXY_ - sumX_ * mean.y();
  const double syy = sumYY_ - sumY_ * mean.y();
  const rzVector<2> centroid = first_ + mean;
  const bool allEqual = sumXX_ == 0.0 && sumYY_ == 0.0;
  if (allEqual || !std::isfinite(sxx + sxy + syy) || !centroid.isFinite()) return false;
  const rzRadian angle(0.5 * std::atan2(2.0 * sxy, sxx - syy));
  line = rzFLine(angle, rzVector<2>(1.0, angle).cross(centroid));
  return true;
}

rzLineFitResult rfLineFit(const std::vector<rzVector<2>>& points, const rzLineFitParams&) {
  rz_LineMoments moments;
  for (const rzVector<2>& point : points) moments.add(point);
  return rzLineFitResult(moments.fit());
}
