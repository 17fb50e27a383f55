// SPDX-License-Identifier: Apache-2.0
#include "oc/char_metrics.h"

#include <limits>
#include <utility>

#include "oc/errors/source_names.h"
#include "oc/oc_defs.h"
#include "rz/affine_rectangle.h"
#include "rz/charlib/fixed_rect.h"

namespace {

constexpr unsigned char kMetricsVersion = 1;
constexpr rzULong kAllRects = 63;
constexpr rzULong kBlankRects = rzOCCharMetrics::eMarkRect | rzOCCharMetrics::eMarkRectImage |
                                rzOCCharMetrics::eDetectedMarkRect |
                                rzOCCharMetrics::eDetectedMarkRectImage;

struct RectPair {
  rzOCCharMetrics::RectType client;
  rzOCCharMetrics::RectType image;
};
constexpr RectPair kPairs[] = {
    {rzOCCharMetrics::eCellRect, rzOCCharMetrics::eCellRectImage},
    {rzOCCharMetrics::eMarkRect, rzOCCharMetrics::eMarkRectImage},
    {rzOCCharMetrics::eDetectedMarkRect, rzOCCharMetrics::eDetectedMarkRectImage},
};

bool isImageRect(rzOCCharMetrics::RectType type) {
  return (type & (rzOCCharMetrics::eCellRectImage | rzOCCharMetrics::eMarkRectImage |
                  rzOCCharMetrics::eDetectedMarkRectImage)) != 0;
}

void checkRange(double value) {
  constexpr double kMin = std::numeric_limits<rzLong>::min();
  constexpr double kMax = std::numeric_limits<rzLong>::max();
  if (value >= kMin && value <= kMax) return;
  throw rzOCDefs::IntegerOverflow("Value overflows integer value range");
}

const rzRect& rangeChecked(const rzRect& rect) {
  for (const rzVector<2>& corner : {rect.ul(), rect.lr()}) {
    checkRange(corner.x());
    checkRange(corner.y());
  }
  return rect;
}

rzRect mapped(const rzRect& rect, const rzXform<2>& xform) {
  return rzAffineRectangle(rect.ul(), rect.ur(), rect.ll()).map(xform).encloseRect();
}

rzXform<2> linearXform(const rz_PelBuffer& image) {
  if (!image.imageFromClientXformBase()->isLinear()) {
    throw rzOCDefs::BadParams("image must have a linear imageFromClient transform");
  }
  return image.imageFromClientXform();
}

rzRect fromFixed(const rzPelRect& rect, rzLong fixedPointBits) {
  const rzLong fixed[4] = {rect.x(), rect.y(), rect.width(), rect.height()};
  double real[4];
  rfThrowExceptionOnFailure(roc_rectDInitFromRect32Fixed_(real, fixed, fixedPointBits));
  return {real[0], real[1], real[2], real[3]};
}

rzPelRect toFixed(const rzRect& rect, rzLong fixedPointBits) {
  const double real[4] = {rect.x(), rect.y(), rect.width(), rect.height()};
  rzLong fixed[4];
  rfThrowExceptionOnFailure(roc_rect32FixedInitFromRectD_(fixed, fixedPointBits, real));
  return {fixed[0], fixed[1], fixed[2], fixed[3]};
}

}  // namespace

void rzOCCharMetrics::getRect_(RectType type, const rzRect*& client,
                               const rzPelRect*& image) const {
  client = nullptr;
  image = nullptr;
  switch (type) {
    case eCellRect:
      client = &cellRect_;
      return;
    case eCellRectImage:
      image = &cellRectImage_;
      return;
    case eMarkRect:
      client = &markRect_;
      return;
    case eMarkRectImage:
      image = &markRectImage_;
      return;
    case eDetectedMarkRect:
      client = &detectedMarkRect_;
      return;
    case eDetectedMarkRectImage:
      image = &detectedMarkRectImage_;
      return;
  }
  throw rzOCDefs::BadParams("Illegal metrics rect type");
}

void rzOCCharMetrics::getRect_(RectType type, rzRect*& client, rzPelRect*& image) {
  const rzRect* constClient;
  const rzPelRect* constImage;
  std::as_const(*this).getRect_(type, constClient, constImage);
  client = const_cast<rzRect*>(constClient);  // a field of this object, which may be changed
  image = const_cast<rzPelRect*>(constImage);
}

bool rzOCCharMetrics::isRectSpecified(RectType type) const {
  const rzRect* client;
  const rzPelRect* image;
  getRect_(type, client, image);
  return (specifiedRects_ & static_cast<rzULong>(type)) != 0;
}

void rzOCCharMetrics::isRectSpecified(RectType type, bool specified) {
  if (isRectSpecified(type) != specified) specifiedRects_ ^= static_cast<rzULong>(type);
}

rzRect rzOCCharMetrics::rect(RectType type) const {
  const rzRect* client;
  const rzPelRect* image;
  getRect_(type, client, image);
  if (!isRectSpecified(type)) throw rzOCDefs::RectNotSpecified();
  return client ? *client : fromFixed(*image, fixedPointBits_);
}

void rzOCCharMetrics::rect(RectType type, const rzRect& rect) {
  rzRect* client;
  rzPelRect* image;
  getRect_(type, client, image);
  if (client) {
    *client = rect;
  } else {
    *image = toFixed(rect, fixedPointBits_);
  }
}

void rzOCCharMetrics::rect(RectType type, const rzPelRect& rect) { this->rect(type, rzRect(rect)); }

rzVector<2> rzOCCharMetrics::advance() const {
  if (!isAdvanceSpecified_) throw rzOCDefs::MetricNotSpecified();
  return advance_;
}

rzPelRect rzOCCharMetrics::encloseRect(RectType type) const {
  return rangeChecked(rect(type)).enclosePelRect();
}

rzPelRect rzOCCharMetrics::encloseRectImage(RectType type,
                                            const rzXform<2>& imageFromClient) const {
  const rzRect found = rect(type);
  return rangeChecked(isImageRect(type) ? found : mapped(found, imageFromClient)).enclosePelRect();
}

rzPelRect rzOCCharMetrics::encloseRectImage(RectType type, const rz_PelBuffer& image) const {
  return encloseRectImage(type, linearXform(image));
}

void rzOCCharMetrics::setImageRectsFromClientRects(const rzXform<2>& imageFromClient) {
  rzOCCharMetrics result = *this;
  for (const RectPair& pair : kPairs) {
    const bool specified = isRectSpecified(pair.client);
    if (specified) {
      result.rect(pair.image, rangeChecked(mapped(rect(pair.client), imageFromClient)));
    }
    result.isRectSpecified(pair.image, specified);
  }
  *this = result;
}

void rzOCCharMetrics::setImageRectsFromClientRects(const rz_PelBuffer& image) {
  setImageRectsFromClientRects(linearXform(image));
}

bool rzOCCharMetrics::isBlank() const {
  const bool client = isRectSpecified(eMarkRect);
  const bool image = isRectSpecified(eMarkRectImage);
  const bool clientBlank = client && markRect_.degen();
  const bool imageBlank = image && markRectImage_.isNull();
  if (client && image && clientBlank != imageBlank) throw rzOCDefs::MetricNotSpecified();
  return clientBlank || imageBlank;
}

void rzOCCharMetrics::makeBlank() {
  markRect_ = rzRect();
  detectedMarkRect_ = rzRect();
  markRectImage_ = rzPelRect();
  detectedMarkRectImage_ = rzPelRect();
  specifiedRects_ |= kBlankRects;
}

rzOCCharMetrics rzOCCharMetrics::blankMetrics() {
  rzOCCharMetrics metrics;
  metrics.makeBlank();
  return metrics;
}

void rzOCCharMetrics::setMetrics(const roc_charMetrics& record) {
  const auto client = [](const double(&r)[4]) { return rzRect(r[0], r[1], r[2], r[3]); };
  const auto image = [](const rzLong(&r)[4]) { return rzPelRect(r[0], r[1], r[2], r[3]); };
  specifiedRects_ = record.specifiedRects & kAllRects;
  isAdvanceSpecified_ = record.isAdvanceSpecified != 0;
  fixedPointBits_ = record.fixedPointBits;
  cellRect_ = client(record.cellRect);
  markRect_ = client(record.markRect);
  detectedMarkRect_ = client(record.detectedMarkRect);
  cellRectImage_ = image(record.cellRectImage);
  markRectImage_ = image(record.markRectImage);
  detectedMarkRectImage_ = image(record.detectedMarkRectImage);
  advance_ = rzVector<2>(record.advance[0], record.advance[1]);
}

void rzOCCharMetrics::getMetrics(roc_charMetrics& record) const {
  const auto copy = [](const auto& rect, auto& numbers) {
    numbers[0] = rect.x();
    numbers[1] = rect.y();
    numbers[2] = rect.width();
    numbers[3] = rect.height();
  };
  record.specifiedRects = specifiedRects_ & kAllRects;
  record.isAdvanceSpecified = isAdvanceSpecified_ ? 1 : 0;
  record.fixedPointBits = fixedPointBits_;
  copy(cellRect_, record.cellRect);
  copy(markRect_, record.markRect);
  copy(detectedMarkRect_, record.detectedMarkRect);
  copy(cellRectImage_, record.cellRectImage);
  copy(markRectImage_, record.markRectImage);
  copy(detectedMarkRectImage_, record.detectedMarkRectImage);
  record.advance[0] = advance_.x();
  record.advance[1] = advance_.y();
}

rzArchive& operator||(rzArchive& archive, rzOCCharMetrics& metrics) {
  unsigned char version = kMetricsVersion;
  archive || version;
  if (version != kMetricsVersion) throw rzArchive::UnknownVersion(kSourceOCChar, __LINE__);
  rzOCCharMetrics moved = metrics;
  archive || moved.specifiedRects_ || moved.isAdvanceSpecified_;
  rf_PersistenceHelper<rzLong>(archive, moved.cellRectImage_);
  rf_PersistenceHelper<rzLong>(archive, moved.markRectImage_);
  rf_PersistenceHelper<rzLong>(archive, moved.detectedMarkRectImage_);
  archive || moved.fixedPointBits_;
  archive || moved.cellRect_ || moved.markRect_ || moved.detectedMarkRect_;
  archive || moved.advance_;
  if (archive.isLoading()) metrics = moved;
  return archive;
}
