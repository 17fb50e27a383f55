// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/build_arrangement.h"

#include <cmath>

#include "rz/text.h"

namespace {

constexpr double kLogPerLog2 = 0.6931471805599453;  // ln 2
constexpr double kDegreesPerRotationError = 45.0;

struct Uncertainty {
  double translation = 0.0;
  rzRadian rotation{0.0};
  double scale = 0.0;
};

// A final evaluation that failed has no scale for the lines behind the one where it stopped. Those
// are single unmatched positions: they have no error of scale that it would be multiplied with.
double lineScale(const rz_ArrangeCost& cost, std::size_t line) {
  return line < cost.lineScales.size() ? cost.lineScales[line] : 1.0;
}

Uncertainty uncertaintyOf(const rz_ArrangeCost& cost, std::size_t line, std::size_t i,
                          const rz_Pose& pose) {
  const rzDegree rotation(cost.rotationErrors[i] * kDegreesPerRotationError);
  const double factor = std::exp(cost.logScaleErrors[i] * kLogPerLog2);
  return {(pose.translation - cost.idealPositions[i]).len(), rotation,
          lineScale(cost, line) * std::fabs(factor - 1.0)};
}

rzPtrHandle_const<rzOCLine> buildLine(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                                      const std::vector<rzLong>& targetKeys,
                                      const rz_ArrangePath& path, const rz_ArrangeCost& cost,
                                      const std::vector<rz_Pose>& positionPoses,
                                      bool compPoseUncertainties, rzLong line) {
  const std::size_t start = rf_At(path.lineStarts[rf_At(line)]);
  const std::size_t end = rf_At(path.lineEnd(line));
  const rz2Rigid lineFromClient = static_cast<rz2Rigid>(positionPoses[start]).inverse();
  std::vector<rzOCKeySet> keySets;
  std::vector<rz2Rigid> charPoses;
  std::vector<double> charScales, translations, scales;
  std::vector<rzRadian> rotations;
  for (std::size_t i = start; i < end; ++i) {
    const rz_Pose& pose = positionPoses[i];
    keySets.emplace_back(std::vector<rzLong>{targetKeys[i]}, std::vector<rzLong>{0});
    charPoses.push_back(i == start ? rz2Rigid() : lineFromClient * static_cast<rz2Rigid>(pose));
    charScales.push_back(pose.scale);
    const Uncertainty uncertainty =
        compPoseUncertainties ? uncertaintyOf(cost, rf_At(line), i, pose) : Uncertainty();
    translations.push_back(uncertainty.translation);
    rotations.push_back(uncertainty.rotation);
    scales.push_back(uncertainty.scale);
  }
  return new rzOCLine(keySets, alphabet, charPoses, charScales, translations, rotations, scales,
                      "Line " + rfStr(line));
}

}  // namespace

void rf_BuildArrangement(const rzPtrHandle_const<rzOCAlphabet>& alphabet,
                         const std::vector<rzLong>& targetKeys, const rz_ArrangePath& path,
                         const rz_ArrangeCost& cost, const std::vector<rz_Pose>& positionPoses,
                         bool compPoseUncertainties,
                         rzPtrHandle_const<rzOCLineArrangement>& arrangement,
                         rzXform<2>& clientFromArrangementXform) {
  const rz2Rigid frame(positionPoses.front());
  const rz2Rigid arrangementFromClient = frame.inverse();
  std::vector<rzPtrHandle_const<rzOCLine>> lines;
  std::vector<rz2Rigid> linePoses;
  for (rzLong line = 0; line < path.numLines(); ++line) {
    const rz_Pose& first = positionPoses[rf_At(path.lineStarts[rf_At(line)])];
    linePoses.push_back(line == 0 ? rz2Rigid()
                                  : arrangementFromClient * static_cast<rz2Rigid>(first));
    lines.push_back(
        buildLine(alphabet, targetKeys, path, cost, positionPoses, compPoseUncertainties, line));
  }
  arrangement = new rzOCLineArrangement(lines, linePoses, 0.0, rzRadian(0.0), "");
  clientFromArrangementXform = frame.linear();
}
