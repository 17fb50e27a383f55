// SPDX-License-Identifier: Apache-2.0
#include "oc/oc/compile_row.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "oc/image_helpers.h"
#include "oc/images/resample.h"
#include "platform/vision/sub_model/tool/sub_model.h"
#include "rz/diag.h"
#include "rz/pel_functions.h"
#include "rz/timeout.h"
#include "rz/xform_linear.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;
using Result = std::optional<rzWarpSubModelResult>;

constexpr double kWeakestShare = 0.25;  // of the characters that show least in a blank

// One row of both tables.
class Row {
 public:
  explicit Row(const rz_CompileRowArgs& args)
      : args_(args), offsets_((*args.characterOffsets)[static_cast<std::size_t>(args.row)]) {
    for (rzLong column = 0; column < size(); ++column) {
      confusion(column, column == args.row ? 1.0 : 0.0);
      offset(column, rzXform<2>());
    }
  }

  rzLong size() const { return rf_Count(args_.characters->size()); }
  bool isOwn(rzLong column) const { return column == args_.row; }
  const rzOCModel& own() const { return character(args_.row); }
  const rzOCModel& character(rzLong column) const {
    return *(*args_.characters)[static_cast<std::size_t>(column)];
  }
  // Another character, and one that shows something.
  bool isNormalOther(rzLong column) const {
    return !isOwn(column) && character(column).charType() != rzOCModel::eBlank;
  }
  void confusion(rzLong column, double value) {
    args_.confusionMatrix->element(args_.row, column, value);
  }
  void offset(rzLong column, const rzXform<2>& xform) {
    offsets_[static_cast<std::size_t>(column)] = xform;
  }

 private:
  const rz_CompileRowArgs& args_;
  std::vector<rzXform<2>>& offsets_;
};

Image areaOf(Image image, const rzPelRect& area) {
  image.window(area, false);
  return image;
}

// A character need not have a mask.
Image maskOf(const rzOCModel& character) {
  return character.mask().isBound() ? areaOf(character.mask(), character.imageArea()) : Image();
}

rzPelBuffer<unsigned char> maskCopyOf(const rzOCModel& character) {
  const Image mask = maskOf(character);
  return mask.isBound() ? rfPelCopy(mask) : rzPelBuffer<unsigned char>();
}

// A rectangle of that size, made even, about the origin.
rzPelRect evenRectAtOrigin(rzPair<rzLong> size) {
  const rzLong width = size.x() + size.x() % 2;
  const rzLong height = size.y() + size.y() % 2;
  return {-width / 2, -height / 2, width, height};
}

// A character trained once, to be looked for in others.
class TrainedCharacter {
 public:
  explicit TrainedCharacter(const rzOCModel& character)
      : character_(character), image_(areaOf(character.image(), character.imageArea())) {
    rzWarpSubModelCorTrainParams params;
    params.coarseGrainLimit(1.0);
    params.zoneAllowed(0);
    const Image mask = maskOf(character);
    const rzWarpSubModel subModel =
        mask.isBound() ? rzWarpSubModel(image_, mask, "") : rzWarpSubModel(image_, "");
    tool_.train(subModel, params, &diag_, 0);
  }

  Result findIn(const rzOCModel& other) {
    const rzRect enclose = character_.encloseRect(
        rzXform<2>(), rzXform<2>(), other.image().clientFromImageXform(), 0.0, rzRadian(0.0), 0.0);
    auto runImage = rfPelCopy(areaOf(other.image(), other.imageArea()));
    auto runMask = maskCopyOf(other);
    if (image_.imageFromClientXform().matrix() != runImage.imageFromClientXform().matrix()) {
      rf_ResampleToMatch(image_, runImage, runMask);
    }
    rzWarpSubModelCorRunParams params;
    params.acceptThreshold(0.0);
    params.zoneEnable(0);
    params.partialMatch(evenRectAtOrigin(image_.window().size()));
    params.xyUncertainty(enclose.sz().x(), enclose.sz().y());
    return run_(runImage, runMask, params);
  }

 private:
  // A run that fails finds nothing; only a stop from outside passes.
  Result run_(const Image& image, const Image& mask, const rzWarpSubModelCorRunParams& params) {
    const rzPtrHandle_const<rz2XformBase> startPose(new rz2XformLinear(rzXform<2>()));
    rz_SubModelResultSet set;
    try {
      const std::vector<rzVector<2>> points;
      if (mask.isBound()) {
        tool_.run(image, mask, startPose, params, points, set, &diag_, 0);
      } else {
        tool_.run(image, startPose, params, points, set, &diag_, 0);
      }
    } catch (const rzTimeout::Expired&) {
      throw;
    } catch (const rzException&) {
      return {};
    }
    if (set.numFound() == 0) return {};
    return set.results().front();
  }

  const rzOCModel& character_;
  Image image_;
  rzDiagObject diag_;  // stays empty: rows do not record
  rz_SubModelTool tool_;
};

void compileNormalRow(Row& row) {
  TrainedCharacter trained(row.own());
  for (rzLong column = 0; column < row.size(); ++column) {
    if (!row.isNormalOther(column)) continue;
    if (const Result result = trained.findIn(row.character(column))) {
      row.confusion(column, result->score());
      row.offset(column, result->pose().linearXform(rzVector<2>()));
    }
  }
}

double meanOfWeakest(std::vector<double> scores) {
  std::sort(scores.begin(), scores.end());
  const double share = std::ceil(kWeakestShare * static_cast<double>(scores.size()));
  scores.resize(static_cast<std::size_t>(share));
  return std::accumulate(scores.begin(), scores.end(), 0.0) / share;
}

// A character can pass for a blank as far as it shows less in the blank's rectangle than the mean
// of those that show least. The first column keeps what the values are measured by.
void compileBlankRow(Row& row) {
  const rzOCModel& blank = row.own();
  std::vector<rzLong> columns;
  std::vector<double> scores;
  for (rzLong column = 0; column < row.size(); ++column) {
    if (!row.isNormalOther(column)) continue;
    const rzOCModel& other = row.character(column);
    columns.push_back(column);
    scores.push_back(rfScoreBlankness(other.image(), other.mask(), rzXform<2>(), blank.image(),
                                      blank.imageArea(), blank.mask()));
  }
  if (scores.empty()) return;
  const double mean = meanOfWeakest(scores);
  const auto weakness = [mean](double score) { return mean != 0.0 ? 1.0 - score / mean : 0.0; };
  for (std::size_t k = 0; k < scores.size(); ++k) {
    row.confusion(columns[k], scores[k] < mean ? weakness(scores[k]) : 0.0);
  }
  const double margin = weakness(*std::min_element(scores.begin(), scores.end()));
  row.offset(0, rzXform<2>(rzMatrix<2>(), rzVector<2>(mean, margin)));
}

}  // namespace

void rf_CompileRow(void* args) {
  Row row(*static_cast<const rz_CompileRowArgs*>(args));
  if (row.own().charType() == rzOCModel::eBlank) {
    compileBlankRow(row);
  } else {
    compileNormalRow(row);
  }
}
