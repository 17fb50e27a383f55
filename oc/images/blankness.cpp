// SPDX-License-Identifier: Apache-2.0
#include "oc/images/blankness.h"

#include <array>
#include <cstdlib>

#include "rz/attention.h"
#include "rz/pel_functions.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

constexpr rzLong kBorder = 2;            // greatest shift, in x and in y
constexpr double kLowestVariance = 1.0;  // of a pel; at or under it a region is flat
constexpr double kNothingCounts = 1.0;
constexpr double kFlat = 0.0;

// 255 below the mask threshold, 0 from it on: what is not cared for is left out.
constexpr std::array<unsigned char, 256> makeExclusionTable() {
  std::array<unsigned char, 256> table{};
  for (std::size_t value = 0; value < 128; ++value) table[value] = 255;
  return table;
}
constexpr std::array<unsigned char, 256> kExclusionTable = makeExclusionTable();

Image interiorOf(Image view) {
  const rzPelRect window = view.window();
  view.window(rzPelRect(window.x() + kBorder, window.y() + kBorder, window.width() - 2 * kBorder,
                        window.height() - 2 * kBorder),
              false);
  view.offset(rzPair<rzLong>(0, 0));
  return view;
}

double meanAbsolute(const rzPelBuffer<std::int16_t>& scores) {
  const rzPelRect window = scores.window();
  double sum = 0.0;
  for (rzLong y = window.y(); y < window.lr().y(); ++y) {
    for (rzLong x = window.x(); x < window.lr().x(); ++x) {
      sum += std::abs(*scores.pointToPel(x, y));
    }
  }
  return sum / static_cast<double>(window.area());
}

// The pels that count: those that both masks care for, where there are such.
Image careOf(const rzPelBuffer<unsigned char>& sampledMask, const Image& modelMask,
             const rzPelRect& area) {
  if (!modelMask.isBound()) return sampledMask;
  rzPelBuffer<unsigned char> care = rfPelCopy(modelMask);
  care.window(area, false);
  return sampledMask.isBound() ? rfPelMin(sampledMask, care) : care;
}

}  // namespace

void rf_CorrelateScores(const Image& image, const rz_CorrelationModel<unsigned char>& model,
                        rzPelBuffer<std::int16_t>& scores, rz_CorrelationDefs::ScoreMode mode) {
  scores = rf_corr_alloc_space(image.window(), model.image().window().size());
  const rzPelRect places = scores.window();
  if (places.isNull()) return;
  const rz_CorrelationModelSums& modelSums = model.sums();
  const rz_CorrelationCore core = model.hasMask() ? rf_correlate_core_get_func_point_mask_U8()
                                                  : rf_correlate_core_get_func_point_no_mask_U8();
  const rz_CorrelationTables tables = rf_corr_init(image);
  for (rzLong y = 0; y < places.height(); ++y) {
    rzAttention::check();
    for (rzLong x = 0; x < places.width(); ++x) {
      const rz_CorrelationSums sums =
          core(tables, model, static_cast<std::size_t>(x), static_cast<std::size_t>(y));
      *scores.pointToPel(places.x() + x, places.y() + y) = rf_corr_score(sums, modelSums, mode);
    }
  }
}

double rf_AutoCorrelationScore(const Image& region, const Image& care) {
  const Image interior = interiorOf(region);
  Image exclusion;
  if (care.isBound()) exclusion = rfPelMap(interiorOf(care), kExclusionTable);
  const rz_CorrelationModel<unsigned char> model(interior, exclusion);
  const double n = static_cast<double>(model.nCarePels());
  if (n == 0.0) return kNothingCounts;
  if (!(model.variance() / (n * n) > kLowestVariance)) return kFlat;
  rzPelBuffer<std::int16_t> scores;
  rf_CorrelateScores(region, model, scores, rz_CorrelationDefs::eSignedCorrelation);
  if (scores.window().isNull()) return kNothingCounts;
  return meanAbsolute(scores);
}

double rfScoreBlankness(const Image& image, const Image& mask, const rzXform<2>& pose,
                        const Image& modelImage, const rzPelRect& area, const Image& modelMask) {
  const rzAffineRectangle inModel(area.ul(), area.ur(), area.ll());
  const rzAffineSamplingParams params(inModel.map(pose * modelImage.clientFromImageXform()),
                                      static_cast<std::int16_t>(area.width()),
                                      static_cast<std::int16_t>(area.height()),
                                      rzAffineSamplingParams::eBilinear);
  rzPelBuffer<unsigned char> sampled;
  rzPelBuffer<unsigned char> sampledMask;
  rfAffineTransformWithClipping(image, mask, params, sampled, sampledMask);
  return rf_AutoCorrelationScore(sampled, careOf(sampledMask, modelMask, area));
}
