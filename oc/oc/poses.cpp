// SPDX-License-Identifier: Apache-2.0
#include "oc/oc/poses.h"

std::vector<rz2Rigid> rf_RepeatedSteps(const rz2Rigid& step, std::size_t count) {
  std::vector<rz2Rigid> poses(count);
  for (std::size_t i = 1; i < count; ++i) poses[i] = step * poses[i - 1];
  return poses;
}
