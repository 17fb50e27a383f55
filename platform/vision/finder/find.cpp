// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/finder/find.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "platform/vision/finder/coarse_search.h"
#include "platform/vision/finder/overlap.h"
#include "platform/vision/finder/refine.h"
#include "platform/vision/finder/score.h"
#include "rz/attention.h"

namespace finder {

namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

double envOr(const char* n, double d) { const char* s = std::getenv(n); return s ? std::atof(s) : d; }

// The grid.
const double kCoarseRadius = envOr("CRAD", 17.0);      // at most, in pels of the level that is searched
const double kAngleReach = envOr("AREACH", 1.3);         // pels by which the outermost points may be off
const double kScaleReach = envOr("SREACH", 1.1);
constexpr double kWidestStep = 12.0 * std::numbers::pi / 180.0;
const double kGridThreshold = envOr("GTHR", 0.66);
const std::size_t kMostCandidates = static_cast<std::size_t>(envOr("MAXC", 250));
const int kGridPoints = static_cast<int>(envOr("GPTS", 48));
// The way from a candidate to a result.
const std::size_t kQuickPoints = static_cast<std::size_t>(envOr("QPTS", 40));
const double kQuickShare = envOr("QSHARE", 0.5);  // of the accepted score, that a coarse look must reach

// Scales of the same pel size are searched in the same level.
struct Band {
  int level = 0;
  double grain = 1.0;  // pels of the level in pels of the training image
  std::vector<double> scales;
  double scaleStep = 1.0;  // factor
};

double toLevel(double v, int level) { return std::ldexp(v, -level); }

Mat2 scaled(const Mat2& m, double f) { return {f * m.xx, f * m.xy, f * m.yx, f * m.yy}; }

class Search {
 public:
  Search(const Pattern& pattern, PictureFeatures& picture, const FindPlan& plan,
         std::vector<Found>& results)
      : pattern_(pattern), picture_(picture), plan_(plan), results_(results) {}

  void run() {
    rzAttention::check();
    const std::vector<Band> bands = bands_();
    for (const Band& band : bands) searchBand_(band);
  }

  void finish() {
    const auto isBetter = [](const Found& a, const Found& b) {
      if (a.score != b.score) return a.score > b.score;
      if (a.pose.centre.y != b.pose.centre.y) return a.pose.centre.y < b.pose.centre.y;
      return a.pose.centre.x < b.pose.centre.x;
    };
    std::sort(found_.begin(), found_.end(), isBetter);
    results_.clear();
    std::vector<std::vector<Vec2>> boxes;
    for (const Found& found : found_) {
      if (static_cast<int>(results_.size()) >= plan_.mostResults) break;
      const std::vector<Vec2> box = boxOf_(found.pose);
      const bool isTaken = std::any_of(boxes.begin(), boxes.end(), [&](const auto& other) {
        return overlapShare(box, other) > plan_.xyOverlap;
      });
      if (isTaken) continue;
      boxes.push_back(box);
      results_.push_back(found);
    }
  }

 private:
  double pelScale_() const { return meanScale(plan_.pelFromClient); }
  // Size of the picture's pels in training pels when the pattern has the given scale.
  double grainOf_(double scale, int level) const {
    return std::ldexp(1.0, level) / (pelScale_() * scale * meanScale(pattern_.clientFromPel()));
  }

  int levelFor_(double scale) const {
    const double radius = pattern_.radius() * pelScale_() * scale;
    int level = 0;
    const int most = pattern_.plan().automaticGrain
                         ? 6
                         : std::max(0, static_cast<int>(std::log2(pattern_.plan().coarsest)));
    while (level < most && toLevel(radius, level) > kCoarseRadius) ++level;
    while (toLevel(radius, level) > kGreatestRadius - 2) ++level;
    return level;
  }

  std::vector<Band> bands_() const {
    if (!plan_.scaleIsOpen) {
      const int level = levelFor_(plan_.scale);
      return {{level, grainOf_(plan_.scale, level), {plan_.scale}, 1.0}};
    }
    std::vector<Band> bands;
    constexpr double kWidestBand = 1.35;
    const double width = std::log(plan_.scaleEnd / plan_.scaleStart);
    const int count = std::max(1, static_cast<int>(std::ceil(width / std::log(kWidestBand))));
    for (int i = 0; i < count; ++i) {
      const double low = plan_.scaleStart * std::exp(width * i / count);
      const double high = plan_.scaleStart * std::exp(width * (i + 1) / count);
      const double middle = std::sqrt(low * high);
      Band band;
      band.level = levelFor_(middle);
      band.grain = grainOf_(middle, band.level);
      const double radius = toLevel(pattern_.radius() * pelScale_() * high, band.level);
      const double step = 2.0 * std::log1p(kScaleReach / radius);
      const int steps = std::max(1, static_cast<int>(std::ceil(std::log(high / low) / step)));
      band.scaleStep = std::exp(std::log(high / low) / steps);
      for (int k = 0; k < steps; ++k) {
        band.scales.push_back(low * std::pow(band.scaleStep, k + 0.5));
      }
      bands.push_back(band);
    }
    return bands;
  }

  struct Angles {
    std::vector<double> values;
    double step = 0.0;
    bool isFullTurn = false;
  };

  Angles angles_(double radius) const {
    if (!plan_.angleIsOpen) return {{plan_.angle}, 0.0, false};
    const double widest = std::min(2.0 * std::asin(std::min(1.0, kAngleReach / radius)), kWidestStep);
    constexpr double kNearlyFull = 359.0 / 360.0 * kTurn;
    const double width = plan_.angleEnd - plan_.angleStart;
    Angles angles;
    angles.isFullTurn = width >= kNearlyFull - 1e-9;
    const double whole = angles.isFullTurn ? kTurn : width;
    const int count = std::max(1, static_cast<int>(std::ceil(whole / widest - 1e-9)));
    angles.step = whole / count;
    const double first = angles.isFullTurn ? 0.0 : plan_.angleStart + 0.5 * angles.step;
    for (int i = 0; i < count; ++i) angles.values.push_back(first + i * angles.step);
    return angles;
  }

  PoseLimits limits_(const Angles& angles, const Band& band) const {
    // A refined pose may leave its zone a little.
    constexpr double kSlack = 0.45;
    PoseLimits limits;
    limits.angleIsFree = plan_.angleIsOpen;
    limits.isFullTurn = angles.isFullTurn;
    limits.lowestAngle = plan_.angleStart - kSlack * angles.step;
    limits.highestAngle = plan_.angleEnd + kSlack * angles.step;
    limits.scaleIsFree = plan_.scaleIsOpen;
    const double slack = std::pow(band.scaleStep, kSlack);
    limits.lowestScale = plan_.scaleStart / slack;
    limits.highestScale = plan_.scaleEnd * slack;
    return limits;
  }

  void searchBand_(const Band& band) {
    std::unique_ptr<Model> storage;
    const Model& coarse = pattern_.model(band.grain, storage);
    if (coarse.points.empty()) return;
    const Mat2 levelFromClient = scaled(plan_.pelFromClient, toLevel(1.0, band.level));
    const double radius =
        coarse.radius * meanScale(levelFromClient) * band.scales.back();
    const Angles angles = angles_(radius);
    std::vector<GridTurn> turns;
    for (std::size_t s = 0; s < band.scales.size(); ++s) {
      for (std::size_t a = 0; a < angles.values.size(); ++a) {
        turns.push_back({angles.values[a], band.scales[s], static_cast<int>(a), static_cast<int>(s)});
      }
    }
    const ResponseMaps& maps = picture_.levelWithResponses(band.level).responses;
    const std::vector<Candidate> candidates = searchGrid(
        maps, thinned(coarse.points, kGridPoints), levelFromClient, turns,
        angles.isFullTurn ? static_cast<int>(angles.values.size()) : 0, kGridThreshold,
        kMostCandidates);
    const PoseLimits limits = limits_(angles, band);
    if (std::getenv("FDBG")) fprintf(stderr, "level %d turns %zu scales %zu candidates %zu\n", band.level, turns.size(), band.scales.size(), candidates.size());
    for (const Candidate& candidate : candidates) {
      rzAttention::check();
      follow_(candidate, band, limits);
    }
  }

  // From a candidate to a result, through finer and finer levels.
  void follow_(const Candidate& candidate, const Band& band, const PoseLimits& limits) {
    Pose pose = candidate.pose;
    int range = 2;
    double least = 0.4 * picture_.contrast() * kGradientOfStep;
    for (int level = band.level; level >= 0; --level) {
      std::unique_ptr<Model> storage;
      const Mat2 levelFromClient = scaled(plan_.pelFromClient, toLevel(1.0, level));
      const Model& model = pattern_.model(std::ldexp(band.grain, level - band.level), storage);
      const GradientMap& gradients = picture_.level(level).gradients;
      if (level == band.level) {
        pose = refined(gradients, model, levelFromClient, pose, limits,
                       {kQuickPoints, range, 3, least});
        const Assessment quick =
            assess(gradients, model, kQuickPoints, levelFromClient, pose, picture_.contrast());
        if (quick.score < kQuickShare * plan_.accept) return;
      }
      if (level == 0) {
        pose = refined(gradients, model, levelFromClient, pose, limits,
                       {model.points.size(), 1, 6, least});
        const Assessment final = assess(gradients, model, model.points.size(), levelFromClient,
                                        pose, picture_.contrast());
        if (final.score < plan_.accept) return;
        found_.push_back({pose, final.score, final.coverage});
        return;
      }
      if (level != band.level) {
        pose = refined(gradients, model, levelFromClient, pose, limits, {kQuickPoints, 2, 2, least});
      }
      pose.centre = 2.0 * pose.centre;
      range = 2;
    }
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
  std::vector<Found>& results_;
  std::vector<Found> found_;
};

}  // namespace

void find(const Pattern& pattern, PictureFeatures& picture, const FindPlan& plan,
          std::vector<Found>& results) {
  results.clear();
  Search search(pattern, picture, plan, results);
  try {
    search.run();
  } catch (...) {
    search.finish();
    throw;
  }
  search.finish();
}

}  // namespace finder
