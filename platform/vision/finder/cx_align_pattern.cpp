// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/vision/finder/cx_cache.h"
#include "platform/vision/finder/find.h"
#include "platform/vision/finder/pattern.h"
#include "rz/angle.h"
#include "rz/attention.h"
#include "rz/cx_align.h"
#include "rz/pel_functions.h"
#include "rz/timeout.h"
#include "rz/xform_linear.h"

namespace {

using finder::FindPlan;
using finder::Found;
using finder::Mat2;
using finder::PelView;
using finder::Vec2;

constexpr double kSmallestScale = 0.05;
constexpr double kGreatestScale = 20.0;

PelView viewOf(const rzPelBuffer_const<unsigned char>& image) {
  PelView view;
  view.width = image.width();
  view.height = image.height();
  if (view.width <= 0 || view.height <= 0) return PelView{};
  view.pels = image.pointToPel(image.offset().x(), image.offset().y());
  view.stride = image.rowUpdate();
  return view;
}

Mat2 matrixOf(const rzMatrix<2>& m) { return {m(0, 0), m(0, 1), m(1, 0), m(1, 1)}; }

// The transform that touches the image's client transform at a pel.
rzXform<2> clientFromPelAt(const rzPelBuffer_const<unsigned char>& image, const rzVector<2>& pel) {
  return rzXform<2>(image.clientFromImageXformBase()->linearXform(pel));
}

rzVector<2> middleOf(const rzPelBuffer_const<unsigned char>& image) {
  return {image.offset().x() + 0.5 * image.width(), image.offset().y() + 0.5 * image.height()};
}

double radians(double degrees) { return rzRadian(rzDegree(degrees)).toDouble(); }

void planAngle(const rzCXAlignRunParams& params, FindPlan& plan) {
  constexpr double kTurn = 360.0;
  plan.angle = radians(params.nominal(rz_CXDefs::eAngle));
  plan.angleIsOpen = (params.zoneEnable() & rz_CXDefs::eAngle) != 0;
  const double start = params.zoneStart(rz_CXDefs::eAngle);
  double width = params.zoneEnd(rz_CXDefs::eAngle) - start;
  if (width < 0.0) width -= kTurn * std::floor(width / kTurn);
  if (!std::isfinite(start) || !(width < kTurn)) {
    plan.angleStart = 0.0;
    plan.angleEnd = radians(kTurn);
    return;
  }
  plan.angleStart = radians(start);
  plan.angleEnd = radians(start + width);
}

void planScale(const rzCXAlignRunParams& params, FindPlan& plan) {
  const auto cut = [](double scale) {
    return std::isnan(scale) ? 1.0 : std::clamp(scale, kSmallestScale, kGreatestScale);
  };
  plan.scale = cut(params.nominal(rz_CXDefs::eScale));
  plan.scaleIsOpen = (params.zoneEnable() & rz_CXDefs::eScale) != 0;
  plan.scaleStart = cut(params.zoneStart(rz_CXDefs::eScale));
  plan.scaleEnd = std::max(plan.scaleStart, cut(params.zoneEnd(rz_CXDefs::eScale)));
}

FindPlan planOf(const rzCXAlignRunParams& params, const rzXform<2>& clientFromPel) {
  FindPlan plan;
  plan.pelFromClient = finder::inverse(matrixOf(clientFromPel.matrix()));
  planAngle(params, plan);
  planScale(params, plan);
  plan.accept = params.acceptThreshold();
  plan.xyOverlap = params.xyOverlap();
  plan.mostResults = std::max<rzLong>(params.numToFind(), 0);
  plan.refine = params.algorithm() != rz_CXDefs::eCoarse;
  plan.ignorePolarity = params.ignorePolarity();
  return plan;
}

// Where the client transform bends, turn and scale differ from place to place: those that make the
// same pels of the pattern at this place.
void adaptToPlace(const FindPlan& plan, const rzXform<2>& clientFromPel, finder::Pose& pose) {
  const Mat2 m = matrixOf(clientFromPel.matrix()) * plan.pelFromClient *
                 finder::similarity(pose.angle, pose.scale);
  if (plan.angleIsOpen) pose.angle = std::atan2(m.yx - m.xy, m.xx + m.yy);
  if (plan.scaleIsOpen) pose.scale = 0.5 * std::hypot(m.yx - m.xy, m.xx + m.yy);
}

}  // namespace

class rzCXAlignPattern::Trained {
 public:
  Trained(const rzPelBuffer_const<unsigned char>& image, const finder::TrainingPlan& plan)
      : image_(rfPelCopy(image)),
        clientFromPel_(clientFromPelAt(image_, middleOf(image_))),
        pattern_(viewOf(image_), matrixOf(clientFromPel_.matrix()), plan) {}

  const rzPelBuffer_const<unsigned char>& image() const { return image_; }
  const finder::Pattern& pattern() const { return pattern_; }
  /// The pattern's centre in client coordinates.
  rzVector<2> centre() const {
    const Vec2 pel = pattern_.frame().centrePel;
    return clientFromPel_ * rzVector<2>(image_.offset().x() + pel.x, image_.offset().y() + pel.y);
  }

 private:
  rzPelBuffer_const<unsigned char> image_;
  rzXform<2> clientFromPel_;
  finder::Pattern pattern_;
};

namespace {

rzCXAlignResult resultOf(const Found& found, const FindPlan& plan,
                         const rzPelBuffer_const<unsigned char>& image, const rzVector<2>& centre) {
  const rzVector<2> pel(image.offset().x() + found.pose.centre.x,
                        image.offset().y() + found.pose.centre.y);
  finder::Pose pose = found.pose;
  const bool isLinear = image.clientFromImageXformBase()->isLinear();
  if (!isLinear) adaptToPlace(plan, clientFromPelAt(image, pel), pose);
  const rzXform<2> turned(rzVector<2>(), pose.scale, 1.0, rzRadian(0.0), rzRadian(pose.angle));
  const rzVector<2> place = image.clientFromImageXformBase()->mapPoint(pel);
  const rzXform<2> map(turned.matrix(), place - turned.mapVector(centre));
  return {map, pose.scale, found.score, found.coverage, found.score >= plan.accept};
}

void giveResults(const std::vector<Found>& found, const FindPlan& plan,
                 const rzPelBuffer_const<unsigned char>& image, const rzVector<2>& centre,
                 rzCXAlignResultSet& set) {
  std::vector<rzCXAlignResult> results;
  for (const Found& f : found) results.push_back(resultOf(f, plan, image, centre));
  const bool isSound = std::all_of(results.begin(), results.end(),
                                   [](const auto& r) { return r.pose().isFinite(); });
  if (!isSound) throw rz_CXDefs::InternalError("A pose is not finite");
  set.results(std::move(results));
}

}  // namespace

rzCXAlignPattern::rzCXAlignPattern() = default;
rzCXAlignPattern::rzCXAlignPattern(const rzCXAlignPattern&) = default;
rzCXAlignPattern::rzCXAlignPattern(rzCXAlignPattern&&) noexcept = default;
rzCXAlignPattern& rzCXAlignPattern::operator=(const rzCXAlignPattern&) = default;
rzCXAlignPattern& rzCXAlignPattern::operator=(rzCXAlignPattern&&) noexcept = default;
rzCXAlignPattern::~rzCXAlignPattern() = default;

void rzCXAlignPattern::grainLimits(float coarse, float fine) {
  coarseGrainLimit_ = coarse;
  fineGrainLimit_ = fine;
}

void rzCXAlignPattern::train(const rzPelBuffer_const<unsigned char>& image, rzULong /*algorithms*/,
                             rzDiagObject* /*diag*/, rzULong /*flags*/) {
  image.requireBound();
  rzAttention::check();
  finder::TrainingPlan plan;
  plan.automaticGrain = autoSelectGrainLimits_;
  plan.coarsest = static_cast<double>(coarseGrainLimit_);
  plan.finest = static_cast<double>(fineGrainLimit_);
  auto trained = std::make_shared<const Trained>(image, plan);
  if (!trained->pattern().isUsable()) throw rz_CXDefs::Errors("Too few edges in training image");
  trained_ = std::move(trained);
}

rzPelBuffer_const<unsigned char> rzCXAlignPattern::trainImage() const {
  return trained_ ? trained_->image() : rzPelBuffer_const<unsigned char>();
}

rzPtrHandle_const<rz2XformBase> rzCXAlignPattern::trainClientFromImage() const {
  return trainImage().clientFromImageXformBase();
}

void rzCXAlignPattern::run(const rzPelBuffer_const<unsigned char>& image,
                           const rzCXAlignRunParams& params, rzCXAlignResultSet& set,
                           rzDiagObject* diag, rzULong flags) const {
  run(image, rzPelBuffer_const<unsigned char>(), params, set, diag, flags);
}

void rzCXAlignPattern::run(const rzPelBuffer_const<unsigned char>& image,
                           const rzPelBuffer_const<unsigned char>& mask,
                           const rzCXAlignRunParams& params, rzCXAlignResultSet& set,
                           rzDiagObject* /*diag*/, rzULong /*flags*/) const {
  set.results({});
  if (!trained_) throw rz_CXDefs::Errors("Pattern is not trained");
  image.requireBound();
  PelView view = viewOf(image);
  if (mask.isBound()) {
    if (mask.width() != image.width() || mask.height() != image.height()) {
      throw rzPel::BadWindow("Mask and image differ in size");
    }
    const PelView maskView = viewOf(mask);
    view.mask = maskView.pels;
    view.maskStride = maskView.stride;
  }
  rzAttention::check();
  if (view.pels == nullptr) return;
  const FindPlan plan = planOf(params, clientFromPelAt(image, middleOf(image)));
  if (plan.mostResults == 0) return;
  if (!params.cache_) params.cache_ = std::make_shared<rzCXAlignRunParams::Cache>();
  std::vector<Found> found;
  try {
    finder::find(trained_->pattern(), params.cache_->featuresOf(view, params.contrastThreshold()),
                 plan, found);
  } catch (const rzTimeout::InternalExpired&) {
    giveResults(found, plan, image, trained_->centre(), set);
    throw;
  } catch (const rzTimeout::Expired&) {
    giveResults(found, plan, image, trained_->centre(), set);
    throw;
  }
  giveResults(found, plan, image, trained_->centre(), set);
}
