// SPDX-License-Identifier: Apache-2.0
//
// The correlation of a small model with an image, place by place: the caller owns the loop over the
// places and takes from here the buffer for the scores, the tables of the image, the function that
// sums at one place, and the score that follows from the sums.
//
//   const rz_CorrelationModel<unsigned char> model(part, exclusionMask);
//   auto scores = rf_corr_alloc_space(image.window(), model.image().window().size());
//   const rz_CorrelationTables tables = rf_corr_init(image);
//   const auto core = rf_correlate_core_get_func_point_no_mask_U8();
//   std::int16_t score = rf_corr_score(core(tables, model, x, y), model.sums(), mode);
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/vision/correlation/care_pels.h"
#include "platform/vision/correlation/cross_sums.h"
#include "rz/pel_buffer.h"
#include "rz/types.h"

class rz_CorrelationDefs {
 public:
  enum ScoreMode : rzLong {
    /// Thousandths of the correlation coefficient, -1000 to 1000, rounded; 0 if a side is flat.
    eSignedCorrelation = 2,
  };
};

/// Sums over the pels of a model that count.
struct rz_CorrelationModelSums {
  std::int64_t n = 0;
  std::int64_t sum = 0;
  std::int64_t squares = 0;
};

/// Sums over the pels of the image under them.
struct rz_CorrelationSums {
  std::int64_t sum = 0;
  std::int64_t squares = 0;
  std::int64_t products = 0;  // with the model
};

template <class T>
class rz_CorrelationModel;

template <>
class rz_CorrelationModel<unsigned char> {
 public:
  /// Pels where `exclusionMask` is not 0 are left out; an unbound mask leaves none out. Windows of
  /// equal size, paired from their upper left corners.
  explicit rz_CorrelationModel(const rzPelBuffer_const<unsigned char>& image,
                               const rzPelBuffer_const<unsigned char>& exclusionMask = {});

  const rzPelBuffer_const<unsigned char>& image() const { return image_; }
  bool hasMask() const { return hasMask_; }
  std::int64_t nCarePels() const { return sums_.n; }
  /// n squared times the variance of the pels that count; exact up to 2^53.
  double variance() const;
  const rz_CorrelationModelSums& sums() const { return sums_; }
  const rz_CarePels& pels() const { return pels_; }

 private:
  rzPelBuffer_const<unsigned char> image_;
  bool hasMask_;
  rz_CarePels pels_;
  rz_CorrelationModelSums sums_;
};

/// What the cores need of an image.
struct rz_CorrelationTables {
  rz_CarePels pels;
  rz_WindowSums windowSums;
};

/// Sums with the model's upper left corner in column x and row y of the image's window; the model
/// lies wholly inside.
using rz_CorrelationCore = rz_CorrelationSums (*)(const rz_CorrelationTables& tables,
                                                  const rz_CorrelationModel<unsigned char>& model,
                                                  std::size_t x, std::size_t y);

/// A score for each place of a model of that size inside the window, at the window's offset.
/// Unbound, so that its window is null, when the model does not fit.
rzPelBuffer<std::int16_t> rf_corr_alloc_space(const rzPelRect& imageWindow,
                                              const rzPair<rzLong>& modelSize);

rz_CorrelationTables rf_corr_init(const rzPelBuffer_const<unsigned char>& image);

rz_CorrelationCore rf_correlate_core_get_func_point_mask_U8();
/// For models without a mask: looks the sums of the image up.
rz_CorrelationCore rf_correlate_core_get_func_point_no_mask_U8();

std::int16_t rf_corr_score(const rz_CorrelationSums& sums, const rz_CorrelationModelSums& modelSums,
                           rz_CorrelationDefs::ScoreMode mode);
