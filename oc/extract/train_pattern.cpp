// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/train_pattern.h"

#include <cmath>

#include "oc/affine_transform.h"
#include "oc/extract/edge_spread.h"
#include "oc/model.h"
#include "rz/angle.h"
#include "rz/cx_defs.h"
#include "rz/pel_functions.h"
#include "rz/sampling.h"

namespace {

constexpr rzLong kSmallestSide = 15;  // pels; outlines of smaller windows are too coarse to follow
constexpr double kEnlargement = 2.0;
constexpr double kAutomaticGrain = -1.0;
constexpr rzULong kCoarseAndFine = rz_CXDefs::eCoarse | rz_CXDefs::eFine;
constexpr double kLargestSide = 32767.0;  // pels; of what rf_AffineTransform makes

// Whether the window can be enlarged and turned by any angle within the limit of
// rf_AffineTransform.
bool isWorkable(const rzPelBuffer_const<unsigned char>& window) {
  return workingScale(window) * std::hypot(window.width(), window.height()) < kLargestSide;
}

rzPelBuffer_const<unsigned char> trainImageOf(const rzPelBuffer_const<unsigned char>& window) {
  const double scale = workingScale(window);
  if (scale == 1.0) return rfPelCopy(window);
  rzPelBuffer<unsigned char> enlarged;
  rf_AffineTransform(window, rzDegree(0.0), scale, enlarged, rzAffineSamplingParams::eBilinear);
  return enlarged;
}

void setGrain(rzCXAlignPattern& pattern, const std::pair<double, double>& limits) {
  const bool isAutomatic = limits.first == kAutomaticGrain || limits.second == kAutomaticGrain;
  pattern.autoSelectGrainLimits(isAutomatic);
  if (isAutomatic) return;
  pattern.grainLimits(static_cast<float>(limits.first), static_cast<float>(limits.second));
}

bool tryTraining(rzCXAlignPattern& pattern, const rzPelBuffer_const<unsigned char>& image) {
  try {
    pattern.train(image, kCoarseAndFine, nullptr, 0);
    return true;
  } catch (const rz_CXDefs::Errors&) {
    return false;  // the image gives no pattern at these grains
  }
}

rz_OCExtractObstacle obstacleOf(EdgeVerdict verdict) {
  switch (verdict) {
    case EdgeVerdict::kTooFew:
      return eTooFewEdges;
    case EdgeVerdict::kTooParallel:
      return eEdgesTooParallel;
    case EdgeVerdict::kUsable:
      break;
  }
  return eNoObstacle;
}

TrainedPattern withoutPattern(rz_OCExtractObstacle obstacle) { return {nullptr, 0.0, obstacle}; }

}  // namespace

rzPelBuffer_const<unsigned char> characterWindow(const rzOCModel& character) {
  rzPelBuffer_const<unsigned char> window = character.image();
  window.window(character.imageArea(), false);
  return window;
}

double workingScale(const rzPelBuffer_const<unsigned char>& window) {
  const bool isSmall = window.width() < kSmallestSide || window.height() < kSmallestSide;
  return isSmall ? kEnlargement : 1.0;
}

TrainedPattern trainPattern(const rzOCModel& character,
                            const std::pair<double, double>& grainLimits) {
  const bool isBlank = character.charType() == rzOCModel::eBlank;
  if (!character.image().isBound()) return withoutPattern(isBlank ? eBlankCharacter : eNoImage);
  const rzPelBuffer_const<unsigned char> window = characterWindow(character);
  if (isBlank) return withoutPattern(eBlankCharacter);
  if (!isWorkable(window)) return withoutPattern(eImageTooLarge);
  const rzPelBuffer_const<unsigned char> image = trainImageOf(window);
  const EdgeSpread edges = judgeEdges(image);
  if (edges.verdict != EdgeVerdict::kUsable) return withoutPattern(obstacleOf(edges.verdict));

  auto pattern = std::make_unique<rzCXAlignPattern>();
  setGrain(*pattern, grainLimits);
  bool isTrained = tryTraining(*pattern, image);
  if (!isTrained) {
    setGrain(*pattern, {1.0, 1.0});
    isTrained = tryTraining(*pattern, image);
  }
  if (!isTrained) return withoutPattern(eTrainingFailed);
  return {std::move(pattern), edges.spread, eNoObstacle};
}

rz_OCExtractObstacle rfOCExtractObstacle(const rzOCModel& character) {
  return trainPattern(character, rz_OCExtractModelParams().grainLimits).obstacle;
}

const char* rfOCExtractObstacleText(rz_OCExtractObstacle obstacle) {
  switch (obstacle) {
    case eNoObstacle:
      return "";
    case eBlankCharacter:
      return "blank character";
    case eNoImage:
      return "no image";
    case eTooFewEdges:
      return "too few edges";
    case eEdgesTooParallel:
      return "edges too parallel";
    case eImageTooLarge:
      return "image too large";
    case eTrainingFailed:
      return "training failed";
  }
  return "unknown reason";
}
