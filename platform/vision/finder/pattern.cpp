// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/pattern.h"

#include <algorithm>
#include <cmath>

namespace finder {

namespace {

constexpr int kMostPoints = 128;
constexpr double kNearGrain = 1.16;  // factor between grains that one model serves

GreyImage copyOf(const PelView& view) {
  GreyImage copy{view.width, view.height, {}};
  for (int y = 0; y < view.height; ++y) {
    const std::uint8_t* row = view.pels + y * view.stride;
    copy.pels.insert(copy.pels.end(), row, row + view.width);
  }
  return copy;
}

bool isNear(double grain, double other) {
  return grain < other * kNearGrain && other < grain * kNearGrain;
}

}  // namespace

Pattern::Pattern(const PelView& image, const Mat2& clientFromPel, const TrainingPlan& plan)
    : image_(copyOf(image)), clientFromPel_(clientFromPel), plan_(plan) {
  // Met in client frames of either the training image or the plain picture.
  const double plainGrain = 1.0 / meanScale(clientFromPel);
  std::vector<double> grains{1.0, 2.0, 4.0};
  if (!isNear(plainGrain, 1.0)) grains.insert(grains.end(), {plainGrain, 2.0 * plainGrain});
  std::vector<EdgePoint> outline = outlineOf(trainingImage_(), 1.0);
  frame_ = measurePattern(outline);
  if (!(std::min(frame_.halfSize.x, frame_.halfSize.y) > 0.0)) return;
  for (const double grain : grains) {
    if (grain != 1.0) outline = outlineOf(trainingImage_(), grain);
    auto made =
        std::make_unique<Model>(makeModel(outline, frame_, clientFromPel_, grain, kMostPoints));
    if (made->points.empty() && models_.empty()) return;
    models_.push_back(std::move(made));
  }
  isUsable_ = true;
}

TrainingImage Pattern::trainingImage_() const {
  return {{image_.pels.data(), image_.width, image_.height, image_.width, nullptr, 0},
          clientFromPel_};
}

const Model& Pattern::model(double grain, std::unique_ptr<Model>& storage) const {
  for (const auto& made : models_) {
    if (isNear(grain, made->grain)) return *made;
  }
  if (storage == nullptr || !isNear(grain, storage->grain)) {
    storage = std::make_unique<Model>(
        makeModel(outlineOf(trainingImage_(), grain), frame_, clientFromPel_, grain, kMostPoints));
  }
  return *storage;
}

std::vector<Vec2> Pattern::boxCorners() const {
  const Vec2 h = frame_.halfSize;
  return {clientFromPel_ * Vec2{-h.x, -h.y}, clientFromPel_ * Vec2{h.x, -h.y},
          clientFromPel_ * Vec2{h.x, h.y}, clientFromPel_ * Vec2{-h.x, h.y}};
}

}  // namespace finder
