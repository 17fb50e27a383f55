// SPDX-License-Identifier: Apache-2.0
//
// The exchange of a character record with its C-level form.
#include <utility>

#include "oc/char.h"
#include "oc/char_polarity.h"
#include "rz/charlib/char_record.h"
#include "rz/charlib/image_wrap.h"
#include "rz/pel_functions.h"

namespace {

using Image = rzOCChar::Image;

// A record that is released whatever happens.
class ScopedRecord {
 public:
  ScopedRecord() { rfThrowExceptionOnFailure(roc_char_construct(&record_)); }
  ScopedRecord(const ScopedRecord&) = delete;
  ScopedRecord& operator=(const ScopedRecord&) = delete;
  ~ScopedRecord() { roc_char_destruct(&record_); }

  roc_char& get() { return record_; }

 private:
  roc_char record_;
};

class ScopedImage {
 public:
  ScopedImage() { rfThrowExceptionOnFailure(rimg_imageConst_constructUnbound(&image_)); }
  ScopedImage(const ScopedImage&) = delete;
  ScopedImage& operator=(const ScopedImage&) = delete;
  ~ScopedImage() { rimg_imageConst_destruct(&image_); }

  rimg_imageConst& get() { return image_; }

 private:
  rimg_imageConst image_;
};

// A copy of the whole root that shows the same window.
Image entireCopy(const Image& source) {
  if (!source.isBound()) return source;
  Image view = source;
  view.setEntire();
  Image copy = rfPelCopy(view);
  copy.window(copy.window().intersect(source.window()), false);
  return copy;
}

Image copied(const Image& source, bool copyPels) { return copyPels ? entireCopy(source) : source; }

rzString32 stringOf(const char32_t* string) { return string ? string : rzString32(); }
std::string stringOf(const char* string) { return string ? string : std::string(); }

// Both put a new copy into a field of a record; what the field held is released.
void store(const rzString32& string, rstd_char32*& field) {
  rstd_char32* copy = nullptr;
  rfThrowExceptionOnFailure(rstd_string_clone32(string.c_str(), &copy));
  rstd_string_release32(&field);
  field = copy;
}

void store(const std::string& string, char*& field) {
  char* copy = nullptr;
  rfThrowExceptionOnFailure(rstd_string_cloneA(string.c_str(), &copy));
  rstd_string_releaseA(&field);
  field = copy;
}

void store(const rz_Image& image, rimg_imageConst& field) {
  rfThrowExceptionOnFailure(rimg_imageConst_assign(&field, image.imageConst()));
}

}  // namespace

void rzOCChar::setCharacter(const roc_char& record, bool copyImages) {
  hasThresholdAndInvert_ = false;
  binarizedCached_ = false;
  key_.setKey(record.key);
  metrics_.setMetrics(record.metrics);
  rfConvertPolarity(record.polarity, polarity_);
  imageArea_ =
      rzPelRect(record.imageArea[0], record.imageArea[1], record.imageArea[2], record.imageArea[3]);
  threshold_ = record.threshold;
  invert_ = record.invert != 0;
  name32_ = stringOf(record.name32);
  name_ = stringOf(record.name);
  description32_ = stringOf(record.description32);
  description_ = stringOf(record.description);
  image_ = copied(rfConvertImage(record.image), copyImages);
  mask_ = copied(rfConvertImage(record.mask), copyImages);
  normalizedImage_ = copied(rfConvertImage(record.normalizedImage), copyImages);
  binarizedImage_ = copied(rfConvertImage(record.binarizedImage), copyImages);
  binarizedCached_ = record.binarizedCached != 0;
  hasThresholdAndInvert_ = record.hasThresholdAndInvert != 0;
}

void rzOCChar::getCharacter(roc_char& record, bool copyImages) const {
  key_.getKey(record.key);
  metrics_.getMetrics(record.metrics);
  rfConvertPolarity(polarity_, record.polarity);
  record.imageArea[0] = imageArea_.x();
  record.imageArea[1] = imageArea_.y();
  record.imageArea[2] = imageArea_.width();
  record.imageArea[3] = imageArea_.height();
  record.hasThresholdAndInvert = hasThresholdAndInvert_ ? 1 : 0;
  record.threshold = threshold_;
  record.invert = invert_ ? 1 : 0;
  store(name32_, record.name32);
  store(description32_, record.description32);
  store(name_, record.name);
  store(description_, record.description);
  record.binarizedCached = 0;
  const rz_Image image(copied(image_, copyImages));
  const rz_Image mask(copied(mask_, copyImages));
  const rz_Image normalizedImage(copied(normalizedImage_, copyImages));
  const rz_Image binarizedImage(copied(binarizedImage_, copyImages));
  store(image, record.image);
  store(mask, record.mask);
  store(normalizedImage, record.normalizedImage);
  store(binarizedImage, record.binarizedImage);
  record.binarizedCached = binarizedCached_ ? 1 : 0;
}

void rzOCChar::normalizedImage(const Image& source, bool hasThresholdAndInvert, rzLong threshold,
                               bool invert, const rzPelRect& imageArea) {
  ScopedRecord record;
  getCharacter(record.get(), false);
  const rz_Image wrapped(source);
  const rzLong area[4] = {imageArea.x(), imageArea.y(), imageArea.width(), imageArea.height()};
  rfThrowExceptionOnFailure(roc_char_setNormalizedImageThresholdAndInvert8(
      &record.get(), wrapped, hasThresholdAndInvert ? 1 : 0, threshold, invert ? 1 : 0, area));
  setCharacter(record.get(), false);
}

rzOCChar::Image rzOCChar::binarizedImageMarkRect() const {
  ScopedRecord record;
  getCharacter(record.get(), false);
  ScopedImage image;
  rfThrowExceptionOnFailure(roc_char_getBinarizedImageMarkRect8(&record.get(), &image.get()));
  return rfConvertImage(image.get());
}
