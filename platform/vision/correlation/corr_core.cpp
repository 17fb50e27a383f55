// SPDX-License-Identifier: Apache-2.0
#include "platform/vision/correlation/corr_core.h"

#include <cmath>

namespace {

constexpr double kFullScore = 1000.0;
constexpr rzLong kRowAlignment = 32;

bool isIncluded(unsigned char exclusion) { return exclusion == 0; }

rz_CorrelationModelSums sumsOf(const rz_CarePels& pels) {
  const rz_PairSums all = rf_PairSums(pels, pels, 0, 0);
  return {all.n, all.a, all.aa};
}

rz_CorrelationSums maskedCore(const rz_CorrelationTables& tables,
                              const rz_CorrelationModel<unsigned char>& model, std::size_t x,
                              std::size_t y) {
  const rz_PairSums sums = rf_PairSums(model.pels(), tables.pels, static_cast<std::ptrdiff_t>(x),
                                       static_cast<std::ptrdiff_t>(y));
  return {sums.b, sums.bb, sums.ab};
}

rz_CorrelationSums unmaskedCore(const rz_CorrelationTables& tables,
                                const rz_CorrelationModel<unsigned char>& model, std::size_t x,
                                std::size_t y) {
  const rz_WidePels& pattern = model.pels().grey;
  const std::size_t width = pattern.width();
  const std::size_t height = pattern.height();
  return {tables.windowSums.sum(x, y, width, height),
          tables.windowSums.squares(x, y, width, height),
          rf_CrossSum(pattern, tables.pels.grey, static_cast<std::ptrdiff_t>(x),
                      static_cast<std::ptrdiff_t>(y))};
}

}  // namespace

rz_CorrelationModel<unsigned char>::rz_CorrelationModel(
    const rzPelBuffer_const<unsigned char>& image,
    const rzPelBuffer_const<unsigned char>& exclusionMask)
    : image_(image),
      hasMask_(exclusionMask.isBound()),
      pels_(image, exclusionMask, isIncluded),
      sums_(sumsOf(pels_)) {}

double rz_CorrelationModel<unsigned char>::variance() const {
  return static_cast<double>(rf_ScaledVariance(sums_.n, sums_.sum, sums_.squares));
}

rzPelBuffer<std::int16_t> rf_corr_alloc_space(const rzPelRect& imageWindow,
                                              const rzPair<rzLong>& modelSize) {
  const rzLong width = imageWindow.width() - modelSize.x() + 1;
  const rzLong height = imageWindow.height() - modelSize.y() + 1;
  if (width <= 0 || height <= 0) return {};
  return rzPelBuffer<std::int16_t>(rzPelRect(imageWindow.x(), imageWindow.y(), width, height),
                                   kRowAlignment);
}

rz_CorrelationTables rf_corr_init(const rzPelBuffer_const<unsigned char>& image) {
  rz_CorrelationTables tables;
  tables.pels = rz_CarePels(image, {}, isIncluded);
  tables.windowSums = rz_WindowSums(tables.pels.grey);
  return tables;
}

rz_CorrelationCore rf_correlate_core_get_func_point_mask_U8() { return maskedCore; }

rz_CorrelationCore rf_correlate_core_get_func_point_no_mask_U8() { return unmaskedCore; }

std::int16_t rf_corr_score(const rz_CorrelationSums& sums, const rz_CorrelationModelSums& modelSums,
                           rz_CorrelationDefs::ScoreMode) {
  const double r = rf_Correlation(
      {modelSums.n, modelSums.sum, modelSums.squares, sums.sum, sums.squares, sums.products});
  return static_cast<std::int16_t>(std::round(kFullScore * r));
}
