// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/find.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "platform/vision/finder/coarse_search.h"
#include "platform/vision/finder/overlap.h"
#include "platform/vision/finder/refine.h"
#include "platform/vision/finder/score.h"
#include "platform/vision/finder/search_grid.h"
#include "rz/attention.h"

namespace finder {

namespace {

// Agreement from which a place of the grid is worth a closer look. True instances lie above 0.8, in
// bad print above 0.7.
constexpr double kGridThreshold = 0.66;
constexpr double kGridThresholdOfOneScale = 0.73;  // a known scale is not off by a part of a step
constexpr std::size_t kMostCandidates = 250;
constexpr int kGridPoints = 48;
// The first look at a candidate; the share of its points that must find edges and the share of the
// accepted score that it must promise. Then the finer levels, and at last all points.
constexpr std::size_t kQuickPoints = 40;
constexpr std::size_t kAllPoints = std::numeric_limits<std::size_t>::max();
constexpr double kQuickSupport = 0.4;
constexpr double kQuickShare = 0.7;
constexpr RefinePlan kQuickLook{kQuickPoints, 2, 3, 0.0, kQuickSupport};
constexpr RefinePlan kNextLevel{kQuickPoints, 2, 2, 0.0, 0.0};
constexpr RefinePlan kLastLook{kAllPoints, 1, 6, 0.0, 0.0};
constexpr double kLeastStep = 0.4;  // of the contrast asked for: weaker edges do not draw a pose

Mat2 scaled(const Mat2& m, double f) { return {f * m.xx, f * m.xy, f * m.yx, f * m.yy}; }

Pose finer(Pose pose) {
  pose.centre = 2.0 * pose.centre;
  pose.boldness *= 2.0;
  return pose;
}

// What one level contributes to following candidates of a band.
struct LevelView {
  const Model* model;
  const GradientMap* gradients;
  Mat2 levelFromClient;
};

class Search {
 public:
  Search(const Pattern& pattern, PictureFeatures& picture, const FindPlan& plan)
      : pattern_(pattern), picture_(picture), plan_(plan) {}

  void run(bool isNegative) {
    isNegative_ = isNegative;
    rzAttention::check();
    const double radius = pattern_.radius() * meanScale(plan_.pelFromClient);
    for (const ScaleBand& band : scaleBands(plan_, pattern_.plan(), radius)) searchBand_(band);
  }

  // The best of what was found, without overlaps.
  std::vector<Found> finished() {
    std::sort(found_.begin(), found_.end(), [](const Found& a, const Found& b) {
      if (a.score != b.score) return a.score > b.score;
      if (a.pose.centre.y != b.pose.centre.y) return a.pose.centre.y < b.pose.centre.y;
      return a.pose.centre.x < b.pose.centre.x;
    });
    std::vector<Found> results;
    std::vector<std::vector<Vec2>> boxes;
    for (const Found& found : found_) {
      if (static_cast<int>(results.size()) >= plan_.mostResults) break;
      std::vector<Vec2> box = boxOf_(found.pose);
      const bool isTaken = std::any_of(boxes.begin(), boxes.end(), [&](const auto& other) {
        return overlapShare(box, other) > plan_.xyOverlap;
      });
      if (isTaken) continue;
      boxes.push_back(std::move(box));
      results.push_back(found);
    }
    return results;
  }

 private:
  // The model for a level, with its polarity turned where the negative is searched.
  const Model& model_(double grain, std::vector<std::unique_ptr<Model>>& storage) const {
    std::unique_ptr<Model> made;
    const Model& model = pattern_.model(grain, made);
    if (isNegative_) made = std::make_unique<Model>(negative(model));
    if (made == nullptr) return model;
    storage.push_back(std::move(made));
    return *storage.back();
  }

  // The views of the levels from the finest one up to that of the band.
  std::vector<LevelView> levelViews_(const ScaleBand& band,
                                     std::vector<std::unique_ptr<Model>>& storage) {
    const double fullGrain =
        1.0 / (meanScale(plan_.pelFromClient) * band.middle * meanScale(pattern_.clientFromPel()));
    std::vector<LevelView> views;
    for (int level = 0; level <= band.level; ++level) {
      views.push_back({&model_(std::ldexp(fullGrain, level), storage),
                       &picture_.level(level).gradients,
                       scaled(plan_.pelFromClient, std::ldexp(1.0, -level))});
    }
    return views;
  }

  void searchBand_(const ScaleBand& band) {
    std::vector<std::unique_ptr<Model>> storage;
    const std::vector<LevelView> views = levelViews_(band, storage);
    const LevelView& top = views.back();
    if (top.model->points.empty()) return;
    const double radius = top.model->radius * meanScale(top.levelFromClient) * band.scales.back();
    const AngleRow angles = angleRow(plan_, radius);
    const PoseLimits limits = poseLimits(plan_, band, angles);
    const std::vector<Candidate> candidates = searchGrid(
        picture_.levelWithResponses(band.level).responses, thinned(top.model->points, kGridPoints),
        top.levelFromClient, gridTurns(band, angles),
        angles.isFullTurn ? static_cast<int>(angles.values.size()) : 0,
        plan_.scaleIsOpen ? kGridThreshold : kGridThresholdOfOneScale, kMostCandidates);
    for (const Candidate& candidate : candidates) {
      rzAttention::check();
      follow_(candidate.pose, views, limits);
    }
  }

  std::optional<Pose> refined_(const LevelView& view, const Pose& pose, const PoseLimits& limits,
                               RefinePlan how) const {
    how.least = kLeastStep * picture_.contrast() * kGradientOfStep;
    how.points = std::min(how.points, view.model->points.size());
    return refined(*view.gradients, *view.model, view.levelFromClient, pose, limits, how);
  }

  Assessment assess_(const LevelView& view, const Pose& pose, std::size_t points) const {
    return assess(*view.gradients, *view.model, points, view.levelFromClient, pose,
                  picture_.contrast());
  }

  // From a candidate to a result, through finer and finer levels.
  void follow_(const Pose& candidate, const std::vector<LevelView>& views,
               const PoseLimits& limits) {
    std::size_t level = views.size() - 1;
    std::optional<Pose> pose = refined_(views[level], candidate, limits, kQuickLook);
    if (!pose) return;
    const Assessment quick = assess_(views[level], *pose, kQuickPoints);
    if (quick.score < kQuickShare * plan_.accept) return;
    const auto last = plan_.refine ? static_cast<std::size_t>(finestLevel(pattern_.plan())) : level;
    for (; level > last; --level) {
      pose = refined_(views[level - 1], finer(*pose), limits, kNextLevel);
    }
    if (plan_.refine) pose = refined_(views[level], *pose, limits, kLastLook);
    const Assessment assessment = assess_(views[level], *pose, views[level].model->points.size());
    if (assessment.score < plan_.accept) return;
    for (; level > 0; --level) pose = finer(*pose);
    found_.push_back({*pose, assessment.score, assessment.coverage});
  }

  std::vector<Vec2> boxOf_(const Pose& pose) const {
    const Mat2 map = plan_.pelFromClient * similarity(pose.angle, pose.scale);
    std::vector<Vec2> box = pattern_.boxCorners();
    for (Vec2& corner : box) corner = pose.centre + map * corner;
    return box;
  }

  const Pattern& pattern_;
  PictureFeatures& picture_;
  const FindPlan& plan_;
  bool isNegative_ = false;
  std::vector<Found> found_;
};

}  // namespace

void find(const Pattern& pattern, PictureFeatures& picture, const FindPlan& plan,
          std::vector<Found>& results) {
  results.clear();
  Search search(pattern, picture, plan);
  try {
    search.run(false);
    if (plan.ignorePolarity) search.run(true);
  } catch (...) {
    results = search.finished();
    throw;
  }
  results = search.finished();
}

}  // namespace finder
