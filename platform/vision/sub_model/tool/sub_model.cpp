// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/sub_model/tool/sub_model.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "rz/archive.h"
#include "rz/attention.h"
#include "rz/rect.h"

RZ_DEFINE_EXCEPTION_LEAF(rz_SubModelDefs::Errors, rzExceptionWithString, 0x10000420)

namespace {

using Image = rzPelBuffer_const<unsigned char>;

constexpr std::size_t kPlacesPerLook = 256;  // places between two looks at the time

bool isCared(unsigned char mask) { return mask >= 128; }

// A place of the model's corner, from the corner of the picture's window.
struct Place {
  std::ptrdiff_t x = 0;
  std::ptrdiff_t y = 0;
  std::int64_t numPairs = 0;
  double distance = 0.0;  // squared, from the start
};

// The places of one axis that are looked at; none when first exceeds last.
struct Span {
  std::ptrdiff_t first = 0;
  std::ptrdiff_t last = -1;
};

// `reach` pels either way from `start`, the model of `size` pels hanging over a picture of `extent`
// pels by at most `overhang`, and with a pel on it.
Span spanOf(double start, double reach, rzLong size, rzLong extent, rzLong overhang) {
  if (!(reach >= 0.0)) return {};
  const double over = std::clamp<rzLong>(overhang, 0, size - 1);
  const double first = std::max(start - std::floor(reach), -over);
  const double last = std::min(start + std::floor(reach), double{over} + extent - size);
  if (!(first <= last)) return {};
  return {static_cast<std::ptrdiff_t>(first), static_cast<std::ptrdiff_t>(last)};
}

// Two pictures without masks: what is under the part in common is looked up.
class PlainComparison {
 public:
  PlainComparison(const rz_CarePels& model, const rz_WindowSums& modelSums, const Image& image)
      : model_(model.grey),
        modelSums_(modelSums),
        picture_(image, model.grey.width()),
        pictureSums_(picture_) {}

  std::int64_t numPairs(std::ptrdiff_t x, std::ptrdiff_t y) const {
    return static_cast<std::int64_t>(common_(x, model_.width(), picture_.width()).size *
                                     common_(y, model_.height(), picture_.height()).size);
  }

  rz_PairSums sums(std::ptrdiff_t x, std::ptrdiff_t y) const {
    const Common u = common_(x, model_.width(), picture_.width());
    const Common v = common_(y, model_.height(), picture_.height());
    rz_PairSums sums;
    sums.n = static_cast<std::int64_t>(u.size * v.size);
    sums.a = modelSums_.sum(u.inModel, v.inModel, u.size, v.size);
    sums.aa = modelSums_.squares(u.inModel, v.inModel, u.size, v.size);
    sums.b = pictureSums_.sum(u.inPicture, v.inPicture, u.size, v.size);
    sums.bb = pictureSums_.squares(u.inPicture, v.inPicture, u.size, v.size);
    sums.ab = rf_CrossSum(model_, picture_, x, y);
    return sums;
  }

 private:
  struct Common {
    std::size_t inModel;
    std::size_t inPicture;
    std::size_t size;
  };

  static Common common_(std::ptrdiff_t place, std::size_t modelSize, std::size_t pictureSize) {
    const std::ptrdiff_t first = std::max<std::ptrdiff_t>(place, 0);
    const std::ptrdiff_t end = std::min(place + static_cast<std::ptrdiff_t>(modelSize),
                                        static_cast<std::ptrdiff_t>(pictureSize));
    return {static_cast<std::size_t>(first - place), static_cast<std::size_t>(first),
            static_cast<std::size_t>(end - first)};
  }

  const rz_WidePels& model_;
  const rz_WindowSums& modelSums_;
  rz_WidePels picture_;
  rz_WindowSums pictureSums_;
};

// With a mask on either side every sum takes only the pels that both care for.
class MaskedComparison {
 public:
  MaskedComparison(const rz_CarePels& model, const Image& image, const Image& mask)
      : model_(model), picture_(image, mask, isCared, model.grey.width()) {}

  std::int64_t numPairs(std::ptrdiff_t x, std::ptrdiff_t y) const {
    return rf_NumPairs(model_, picture_, x, y);
  }
  rz_PairSums sums(std::ptrdiff_t x, std::ptrdiff_t y) const {
    return rf_PairSums(model_, picture_, x, y);
  }

 private:
  const rz_CarePels& model_;
  rz_CarePels picture_;
};

struct Best {
  Place place;
  double score = 0.0;
};

bool isBetter(const Best& a, const Best& b) {
  if (a.score != b.score) return a.score > b.score;
  return std::pair(a.place.distance, std::pair(a.place.y, a.place.x)) <
         std::pair(b.place.distance, std::pair(b.place.y, b.place.x));
}

// A score cannot exceed its share. So the places are taken in falling order of share, and the rest
// is left out once it cannot reach the best score so far.
template <class Comparison>
Best bestPlace(const Comparison& comparison, std::vector<Place> places, std::int64_t numCarePels) {
  const auto shareOf = [numCarePels](const Place& place) {
    return static_cast<double>(place.numPairs) / static_cast<double>(numCarePels);
  };
  for (Place& place : places) place.numPairs = comparison.numPairs(place.x, place.y);
  const auto isSmaller = [](const Place& a, const Place& b) { return a.numPairs < b.numPairs; };
  std::make_heap(places.begin(), places.end(), isSmaller);
  Best best;
  for (std::size_t count = 0; !places.empty(); ++count) {
    if (count % kPlacesPerLook == 0) rzAttention::check();
    std::pop_heap(places.begin(), places.end(), isSmaller);
    const Place place = places.back();
    places.pop_back();
    const double share = shareOf(place);
    if (share < best.score || place.numPairs == 0) break;
    const double r = std::max(0.0, rf_Correlation(comparison.sums(place.x, place.y)));
    const Best candidate{place, r * r * share};
    if (candidate.score > 0.0 && (best.score == 0.0 || isBetter(candidate, best))) best = candidate;
  }
  return best;
}

std::vector<Place> placesOf(const Span& columns, const Span& rows, const rzVector<2>& start) {
  std::vector<Place> places;
  for (std::ptrdiff_t y = rows.first; y <= rows.last; ++y) {
    for (std::ptrdiff_t x = columns.first; x <= columns.last; ++x) {
      const rzVector<2> shift = rzVector<2>(static_cast<double>(x), static_cast<double>(y)) - start;
      places.push_back({x, y, 0, shift.dot(shift)});
    }
  }
  return places;
}

rzVector<2> roundedToPels(const rzVector<2>& v) { return {std::round(v.x()), std::round(v.y())}; }

}  // namespace

void rz_SubModelTool::train(const rzWarpSubModel& model, const rzWarpSubModelCorTrainParams&,
                            rzDiagObject*, rzULong) {
  rz_CarePels pels(model.image(), model.mask(), isCared);
  const rz_PairSums own = rf_PairSums(pels, pels, 0, 0);
  if (rf_ScaledVariance(own.n, own.a, own.aa) == 0) {
    throw rz_SubModelDefs::Errors("The model shows nothing.");
  }
  clientFromImage_ = model.image().clientFromImageXform();
  window_ = model.image().window();
  hasMask_ = model.mask().isBound();
  windowSums_ = rz_WindowSums(pels.grey);
  model_ = std::move(pels);
  numCarePels_ = own.n;
}

void rz_SubModelTool::run(const Image& image, const rzPtrHandle_const<rz2XformBase>& startPose,
                          const rzWarpSubModelCorRunParams& params,
                          const std::vector<rzVector<2>>& points, rz_SubModelResultSet& set,
                          rzDiagObject* diag, rzULong flags) const {
  run(image, Image(), startPose, params, points, set, diag, flags);
}

void rz_SubModelTool::run(const Image& image, const Image& mask,
                          const rzPtrHandle_const<rz2XformBase>& startPose,
                          const rzWarpSubModelCorRunParams& params, const std::vector<rzVector<2>>&,
                          rz_SubModelResultSet& set, rzDiagObject*, rzULong) const {
  set.results_.clear();
  rzAttention::check();
  if (numCarePels_ == 0) throw rz_SubModelDefs::Errors("No model has been trained.");

  const rzPelRect window = image.window();
  const rzVector<2> middle = rzRect(window_).center();
  const rzVector<2> clientMiddle = clientFromImage_ * middle;
  const rzXform<2> clientFromRun = image.clientFromImageXform();
  const rzVector<2> startMiddle = image.imageFromClientXform() * startPose->mapPoint(clientMiddle);
  // Places of the model's corner count from the corner of the picture's window.
  const rzVector<2> cornerShift = rzVector<2>(window_.ul()) - rzVector<2>(window.ul());
  const rzVector<2> start = roundedToPels(startMiddle - middle) + cornerShift;
  const Span columns = spanOf(start.x(), params.xyUncertainty().x(), window_.width(),
                              window.width(), params.partialMatch().width());
  const Span rows = spanOf(start.y(), params.xyUncertainty().y(), window_.height(), window.height(),
                           params.partialMatch().height());
  std::vector<Place> places = placesOf(columns, rows, start);
  const Best best =
      hasMask_ || mask.isBound()
          ? bestPlace(MaskedComparison(model_, image, mask), std::move(places), numCarePels_)
          : bestPlace(PlainComparison(model_, windowSums_, image), std::move(places), numCarePels_);
  if (best.score <= 0.0 || best.score < params.acceptThreshold()) return;

  const rzVector<2> corner(static_cast<double>(best.place.x), static_cast<double>(best.place.y));
  const rzVector<2> found = middle + (corner - cornerShift);
  set.results_.emplace_back(best.score, clientFromRun * found - clientMiddle);
}
