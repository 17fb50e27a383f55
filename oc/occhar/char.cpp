// SPDX-License-Identifier: Apache-2.0
//
// Fields of a character record, and what follows from a change of one.
#include "oc/char.h"

#include "oc/occhar/strings.h"
#include "rz/char_code.h"
#include "rz/pel_error.h"
#include "rz/pel_functions.h"
#include "rz/rect.h"

namespace {

bool equalImages(const rzOCChar::Image& a, const rzOCChar::Image& b) {
  if (!a.isBound() && !b.isBound()) return true;
  try {
    return rfPelEqual(a, b);
  } catch (const rzPel::UnboundWindow&) {
    return false;
  }
}

const std::string& checked(const std::string& narrow, const rzString32& wide) {
  if (narrow.empty() && !wide.empty()) throw rzCharCodeDefs::NotRepresentable();
  return narrow;
}

}  // namespace

rzOCChar::rzOCChar() = default;

rzOCChar::rzOCChar(const rzOCChar& other) { assign_(other); }

rzOCChar& rzOCChar::operator=(const rzOCChar& other) {
  if (this != &other) assign_(other);
  return *this;
}

void rzOCChar::assign_(const rzOCChar& other) {
  binarizedCached_ = false;
  hasThresholdAndInvert_ = false;
  key_ = other.key_;
  polarity_ = other.polarity_;
  threshold_ = other.threshold_;
  invert_ = other.invert_;
  imageArea_ = other.imageArea_;
  metrics_ = other.metrics_;
  name32_ = other.name32_;
  description32_ = other.description32_;
  name_ = other.name_;
  description_ = other.description_;
  image_ = other.image_;
  mask_ = other.mask_;
  normalizedImage_ = other.normalizedImage_;
  binarizedImage_ = other.binarizedImage_;
  binarizedCached_ = other.binarizedCached_;
  hasThresholdAndInvert_ = other.hasThresholdAndInvert_;
}

void rzOCChar::reset() { assign_(rzOCChar()); }

bool rzOCChar::operator==(const rzOCChar& other) const {
  return key_ == other.key_ && polarity_ == other.polarity_ && equalImages(image_, other.image_) &&
         equalImages(mask_, other.mask_) && equalImages(normalizedImage_, other.normalizedImage_) &&
         binarizedCached_ == other.binarizedCached_ &&
         equalImages(binarizedImage_, other.binarizedImage_) &&
         hasThresholdAndInvert_ == other.hasThresholdAndInvert_ && threshold_ == other.threshold_ &&
         invert_ == other.invert_ && imageArea_ == other.imageArea_ && metrics_ == other.metrics_ &&
         name32_ == other.name32_ && description32_ == other.description32_ &&
         name_ == other.name_ && description_ == other.description_;
}

void rzOCChar::imageArea(const rzPelRect& area) {
  if (area == imageArea_) return;
  imageArea_ = area;
  undetectMarkRect_();
}

void rzOCChar::polarity(rzOCDefs::Polarity polarity) {
  switch (polarity) {
    case rzOCDefs::eDarkOnLight:
    case rzOCDefs::eLightOnDark:
    case rzOCDefs::ePolarityUnknown:
      if (polarity == polarity_) return;
      polarity_ = polarity;
      undetectMarkRect_();
      return;
  }
  throw rzOCDefs::BadParams("Unknown polarity");
}

void rzOCChar::name32(const rzString32& name) {
  std::string narrow = narrowed(name);
  name32_ = name;
  name_.swap(narrow);
}

void rzOCChar::description32(const rzString32& description) {
  std::string narrow = narrowed(description);
  description32_ = description;
  description_.swap(narrow);
}

const std::string& rzOCChar::name() const { return checked(name_, name32_); }

void rzOCChar::name(const std::string& name) {
  rzString32 wide = widened(name);
  name_ = name;
  name32_.swap(wide);
}

const std::string& rzOCChar::description() const { return checked(description_, description32_); }

void rzOCChar::description(const std::string& description) {
  rzString32 wide = widened(description);
  description_ = description;
  description32_.swap(wide);
}

void rzOCChar::hasThresholdAndInvert(bool has) {
  if (has != hasThresholdAndInvert_) uncacheBinarizedImage_();
  hasThresholdAndInvert_ = has;
}

rzLong rzOCChar::threshold() const {
  checkHasThresholdAndInvert_();
  return threshold_;
}

void rzOCChar::threshold(rzLong threshold) {
  if (threshold < 0) throw rzOCDefs::BadParams("Threshold must be >= 0.");
  if (threshold != threshold_) uncacheBinarizedImage_();
  threshold_ = threshold;
}

bool rzOCChar::invert() const {
  checkHasThresholdAndInvert_();
  return invert_;
}

void rzOCChar::invert(bool invert) {
  if (invert != invert_) uncacheBinarizedImage_();
  invert_ = invert;
}

void rzOCChar::checkHasThresholdAndInvert_() const {
  if (!hasThresholdAndInvert_) throw rzOCDefs::ThresholdAndInvertNotSpecified();
}

void rzOCChar::undetectMarkRect_() {
  metrics_.hasDetectedMarkRect(false);
  metrics_.detectedMarkRect(rzRect());
}
