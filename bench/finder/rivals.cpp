// SPDX-License-Identifier: Apache-2.0
#include "bench/finder/rivals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/rgbd/linemod.hpp>
#include <vector>

namespace rivals {

namespace {

constexpr int kAngles = 90;  // 4 degrees apart
constexpr std::array<double, 5> kScales = {0.9, 0.95, 1.0, 1.05, 1.1};

cv::Mat matOf(const rzPelBuffer_const<unsigned char>& image) {
  cv::Mat mat(image.height(), image.width(), CV_8UC1);
  for (int y = 0; y < image.height(); ++y) {
    std::copy_n(image.pointToPel(0, y), image.width(), mat.ptr(y));
  }
  return mat;
}

// A trained glyph at one size.
struct Glyph {
  cv::Mat image;
  cv::Point2d centre;  // of the ink box, corner based
  double radius = 0.0;
};

Glyph glyphOf(const scene::Trained& t) {
  const rzVector<2> centre = t.image.clientFromImageXform().inverse() * t.centre;
  const double doubled = 1.0 / t.image.clientFromImageXform().xScale();
  Glyph glyph{matOf(t.image), {centre.x(), centre.y()}, 0.5 * std::hypot(t.width, t.height)};
  if (doubled > 1.5) {
    cv::resize(glyph.image, glyph.image, {}, 0.5, 0.5, cv::INTER_AREA);
    glyph.centre *= 0.5;
  }
  return glyph;
}

struct Turn {
  double degrees = 0.0;
  double scale = 1.0;
};

// The glyph turned about its centre; `reduction` makes it smaller. The centre comes to lie in the
// middle of the square, moved by `shift`.
cv::Mat turned(const Glyph& glyph, const Turn& turn, double reduction, cv::Point2d shift = {}) {
  const double scale = turn.scale / reduction;
  const int side = 2 * static_cast<int>(std::ceil(glyph.radius * scale + 1.5)) + 1;
  const double angle = turn.degrees * CV_PI / 180.0;
  const double c = scale * std::cos(angle);
  const double s = scale * std::sin(angle);
  // Coordinates of pels' centres.
  const cv::Point2d from = glyph.centre - cv::Point2d(0.5, 0.5);
  const cv::Point2d to = cv::Point2d(0.5 * (side - 1), 0.5 * (side - 1)) + shift;
  const cv::Matx23d map(c, -s, to.x - c * from.x + s * from.y, s, c,
                        to.y - s * from.x - c * from.y);
  cv::Mat out;
  const int how = reduction > 1.0 ? cv::INTER_AREA : cv::INTER_LINEAR;
  cv::warpAffine(glyph.image, out, map, {side, side}, how, cv::BORDER_REPLICATE);
  return out;
}

Glyph reduced(const Glyph& glyph, double factor) {
  Glyph small = glyph;
  cv::resize(glyph.image, small.image, {}, 1.0 / factor, 1.0 / factor, cv::INTER_AREA);
  const double fx = static_cast<double>(small.image.cols) / glyph.image.cols;
  const double fy = static_cast<double>(small.image.rows) / glyph.image.rows;
  small.centre = {glyph.centre.x * fx, glyph.centre.y * fy};
  small.radius /= factor;
  return small;
}

struct Pose {
  cv::Point2d centre;  // corner based
  Turn turn;
  double score = -1.0;
};

double correlationAt(const cv::Mat& picture, const Glyph& glyph, const Pose& pose) {
  const cv::Point2d cell(std::floor(pose.centre.x), std::floor(pose.centre.y));
  const cv::Point2d shift = pose.centre - cell - cv::Point2d(0.5, 0.5);
  const cv::Mat templ = turned(glyph, pose.turn, 1.0, shift);
  const int half = templ.cols / 2;
  const cv::Rect window(static_cast<int>(cell.x) - half, static_cast<int>(cell.y) - half,
                        templ.cols, templ.rows);
  if ((window & cv::Rect({}, picture.size())) != window) return -1.0;
  cv::Mat result;
  cv::matchTemplate(picture(window), templ, result, cv::TM_CCOEFF_NORMED);
  return static_cast<double>(result.at<float>(0, 0));
}

// Climbs in place, angle and scale, with steps that are halved `rounds` times.
Pose climbed(const cv::Mat& picture, const Glyph& glyph, Pose pose, int rounds) {
  double size = 1.0;
  pose.score = correlationAt(picture, glyph, pose);
  for (int round = 0; round < rounds; size *= 0.5) {
    ++round;
    for (bool isBetter = true; isBetter;) {
      isBetter = false;
      for (int k = 0; k < 8; ++k) {
        const double step = (k % 2 == 0 ? 1.0 : -1.0) * size;
        Pose trial = pose;
        if (k / 2 == 0) trial.centre.x += 0.5 * step;
        if (k / 2 == 1) trial.centre.y += 0.5 * step;
        if (k / 2 == 2) trial.turn.degrees += 2.0 * step;
        if (k / 2 == 3) trial.turn.scale *= 1.0 + 0.025 * step;
        trial.score = correlationAt(picture, glyph, trial);
        if (trial.score <= pose.score + 1e-6) continue;
        pose = trial;
        isBetter = true;
      }
    }
  }
  return pose;
}

Hit hitOf(const Pose& pose) {
  return {rzVector<2>(pose.centre.x, pose.centre.y), pose.turn.degrees, pose.turn.scale,
          std::max(0.0, pose.score)};
}

struct Template {
  cv::Mat image;
  Turn turn;
};

std::vector<Template> templatesOf(const Glyph& glyph) {
  std::vector<Template> templates;
  for (int a = 0; a < kAngles; ++a) {
    for (const double scale : kScales) {
      const Turn turn{a * 360.0 / kAngles, scale};
      templates.push_back({turned(glyph, turn, 1.0), turn});
    }
  }
  return templates;
}

// The best place of each template.
std::vector<Pose> bestPlaces(const cv::Mat& picture, const std::vector<Template>& templates) {
  std::vector<Pose> poses;
  cv::Mat result;
  for (const Template& t : templates) {
    cv::matchTemplate(picture, t.image, result, cv::TM_CCOEFF_NORMED);
    double score = 0.0;
    cv::Point place;
    cv::minMaxLoc(result, nullptr, &score, nullptr, &place);
    const cv::Point2d centre(place.x + 0.5 * t.image.cols, place.y + 0.5 * t.image.rows);
    poses.push_back({centre, t.turn, score});
  }
  std::sort(poses.begin(), poses.end(),
            [](const Pose& a, const Pose& b) { return a.score > b.score; });
  return poses;
}

constexpr int kFineRounds = 7;  // down to a hundredth of a pel

class FullCorrelation : public Rival {
 public:
  const char* title() const override { return "correlation at full size"; }
  void train(const scene::Trained& t) override {
    glyph_ = glyphOf(t);
    templates_ = templatesOf(glyph_);
  }
  Hit find(const rzPelBuffer_const<unsigned char>& image) const override {
    const cv::Mat picture = matOf(image);
    return hitOf(climbed(picture, glyph_, bestPlaces(picture, templates_).front(), kFineRounds));
  }

 private:
  Glyph glyph_;
  std::vector<Template> templates_;
};

class PyramidCorrelation : public Rival {
 public:
  const char* title() const override { return "correlation in a pyramid"; }
  void train(const scene::Trained& t) override {
    glyphs_[0] = glyphOf(t);
    glyphs_[1] = reduced(glyphs_[0], 2.0);
    glyphs_[2] = reduced(glyphs_[0], 4.0);
    templates_ = templatesOf(glyphs_[2]);
  }
  Hit find(const rzPelBuffer_const<unsigned char>& image) const override {
    std::array<cv::Mat, 3> pictures = {matOf(image), {}, {}};
    for (std::size_t i = 1; i < 3; ++i) {
      cv::resize(pictures[i - 1], pictures[i], {}, 0.5, 0.5, cv::INTER_AREA);
    }
    std::vector<Pose> poses = bestPlaces(pictures[2], templates_);
    const std::array<std::size_t, 3> kept = {1, 4, 0};
    const std::array<int, 3> rounds = {kFineRounds, 1, 0};
    poses.resize(std::min(kMostCandidates, poses.size()));
    for (std::size_t level = 2; level-- > 0;) {
      for (Pose& pose : poses) {
        pose.centre *= 2.0;
        pose = climbed(pictures[level], glyphs_[level], pose, level == 0 ? 1 : rounds[level]);
      }
      std::sort(poses.begin(), poses.end(),
                [](const Pose& a, const Pose& b) { return a.score > b.score; });
      poses.resize(std::min(kept[level], poses.size()));
    }
    return hitOf(climbed(pictures[0], glyphs_[0], poses.front(), rounds[0]));
  }

 private:
  static constexpr std::size_t kMostCandidates = 12;
  std::array<Glyph, 3> glyphs_;
  std::vector<Template> templates_;
};

class GradientResponses : public Rival {
 public:
  const char* title() const override { return "gradient response matcher"; }
  void train(const scene::Trained& t) override {
    const Glyph glyph = glyphOf(t);
    constexpr float kWeak = 10.0F;
    constexpr float kStrong = 55.0F;
    constexpr std::size_t kFeatures = 63;
    const std::vector<cv::Ptr<cv::linemod::Modality>> kinds = {
        cv::makePtr<cv::linemod::ColorGradient>(kWeak, kFeatures, kStrong)};
    detector_ = cv::makePtr<cv::linemod::Detector>(kinds, std::vector<int>{5, 8});
    places_.clear();
    for (const Template& templ : templatesOf(glyph)) {
      // A template needs room about it.
      constexpr int kRim = 8;
      cv::Mat grey;
      cv::Mat colour;
      cv::copyMakeBorder(templ.image, grey, kRim, kRim, kRim, kRim, cv::BORDER_REPLICATE);
      cv::cvtColor(grey, colour, cv::COLOR_GRAY2BGR);
      cv::Rect box;
      if (detector_->addTemplate({colour}, "glyph", cv::Mat(), &box) < 0) continue;
      const cv::Point2d middle(0.5 * colour.cols, 0.5 * colour.rows);
      places_.push_back({middle - cv::Point2d(box.tl()), templ.turn, 0.0});
    }
  }
  Hit find(const rzPelBuffer_const<unsigned char>& image) const override {
    if (places_.empty()) return {};
    cv::Mat colour;
    cv::cvtColor(matOf(image), colour, cv::COLOR_GRAY2BGR);
    std::vector<cv::linemod::Match> matches;
    constexpr float kThreshold = 80.0F;
    detector_->match({colour}, kThreshold, matches);
    if (matches.empty()) return {};
    const cv::linemod::Match& best = matches.front();
    Pose pose = places_[static_cast<std::size_t>(best.template_id)];
    pose.centre += cv::Point2d(best.x, best.y);
    pose.score = static_cast<double>(best.similarity) / 100.0;
    return hitOf(pose);
  }

 private:
  cv::Ptr<cv::linemod::Detector> detector_;
  std::vector<Pose> places_;  // of the templates, against their boxes
};

}  // namespace

std::unique_ptr<Rival> fullCorrelation() {
  cv::setNumThreads(1);
  return std::make_unique<FullCorrelation>();
}
std::unique_ptr<Rival> pyramidCorrelation() {
  cv::setNumThreads(1);
  return std::make_unique<PyramidCorrelation>();
}
std::unique_ptr<Rival> gradientResponses() {
  cv::setNumThreads(1);
  return std::make_unique<GradientResponses>();
}

}  // namespace rivals
