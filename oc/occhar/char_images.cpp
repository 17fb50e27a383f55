// SPDX-License-Identifier: Apache-2.0
//
// Images of a character record: private copies, windows, the binarized cache, the origin.
#include <utility>

#include "oc/char.h"
#include "platform/charlib/binarize.h"
#include "rz/pel_functions.h"
#include "rz/xform_linear.h"

namespace {

using Image = rzOCChar::Image;

// A copy of the pels of `rootCopyRect`, or of the window alone, that shows the same window.
Image rootCopy(const Image& source, const rzPelRect& rootCopyRect) {
  if (!source.isBound()) return source;
  Image view = source;
  if (!rootCopyRect.isNull()) {
    if (!rootCopyRect.contains(source.window())) {
      throw rzOCDefs::BadParams("Root copy rect does not contain image window");
    }
    view.setEntire();
    view.window(rootCopyRect.intersect(view.window()), false);
  }
  Image copy = rfPelCopy(view);
  copy.window(source.window(), false);
  return copy;
}

Image moved(Image buffer, const rzVector<2>& delta) {
  const rz2XformLinear shift(rzMatrix<2>(), delta);
  buffer.imageFromClientXformBase(buffer.imageFromClientXformBase()->composeBase(shift), true);
  return buffer;
}

}  // namespace

void rzOCChar::image(const Image& source, const rzPelRect& rootCopyRect) {
  image_ = rootCopy(source, rootCopyRect);
  undetectMarkRect_();
}

void rzOCChar::mask(const Image& source, const rzPelRect& rootCopyRect) {
  mask_ = rootCopy(source, rootCopyRect);
  undetectMarkRect_();
}

void rzOCChar::normalizedImage(const Image& source, const rzPelRect& rootCopyRect) {
  uncacheBinarizedImage_();
  normalizedImage_ = rootCopy(source, rootCopyRect);
  undetectMarkRect_();
}

rzOCChar::Image rzOCChar::image(bool windowToImageArea) const {
  return windowedImage_(image_, windowToImageArea);
}

rzOCChar::Image rzOCChar::mask(bool windowToImageArea) const {
  return windowedImage_(mask_, windowToImageArea);
}

rzOCChar::Image rzOCChar::normalizedImage(bool windowToImageArea) const {
  return windowedImage_(normalizedImage_, windowToImageArea);
}

rzOCChar::Image rzOCChar::binarizedImage(bool windowToImageArea) const {
  checkHasBinarizedImage_();
  return windowedImage_(binarizedImage_, windowToImageArea);
}

rzOCChar::Image rzOCChar::windowedImage_(const Image& buffer, bool windowToImageArea) const {
  if (!windowToImageArea || !buffer.isBound()) return buffer;
  if (imageArea_.isNull()) throw rzOCDefs::BadParams("imageArea cannot be null");
  if (!(imageArea_.intersect(buffer.window()) == imageArea_)) {
    throw rzOCDefs::BadParams("image does not contain imageArea");
  }
  Image windowed = buffer;
  windowed.window(imageArea_, false);
  return windowed;
}

rzOCChar::Image rzOCChar::imageMarkRect() const { return markRectWindow_(image_); }

rzOCChar::Image rzOCChar::maskMarkRect() const { return markRectWindow_(mask_); }

rzOCChar::Image rzOCChar::normalizedImageMarkRect() const {
  return markRectWindow_(normalizedImage_);
}

rzOCChar::Image rzOCChar::markRectWindow_(const Image& buffer) const {
  for (const rzOCCharMetrics::RectType type :
       {rzOCCharMetrics::eMarkRectImage, rzOCCharMetrics::eDetectedMarkRectImage,
        rzOCCharMetrics::eMarkRect, rzOCCharMetrics::eDetectedMarkRect}) {
    if (!metrics_.isRectSpecified(type)) continue;
    const rzPelRect mark = metrics_.encloseRectImage(type, buffer);
    Image windowed = buffer;
    if (windowed.isBound()) windowed.window(mark, true);
    return windowed;
  }
  throw rzOCDefs::RectNotSpecified();
}

rzPelRect rzOCChar::markOrImageArea() const {
  if (metrics_.isBlank()) return imageArea_;
  try {
    return imageMarkRect().window();
  } catch (const rzOCDefs::RectNotSpecified&) {
    return imageArea_;
  }
}

void rzOCChar::checkHasBinarizedImage_() const {
  checkHasThresholdAndInvert_();
  cacheBinarizedImage_();
}

void rzOCChar::cacheBinarizedImage_() const {
  if (binarizedCached_ || !hasThresholdAndInvert_ || !normalizedImage_.isBound()) return;
  if (threshold_ > kMaxThreshold) throw rzOCDefs::BadParams("threshold() > 256)");
  binarizedImage_ = binarized(normalizedImage_, threshold_, invert_);
  binarizedCached_ = true;
}

void rzOCChar::uncacheBinarizedImage_() {
  if (!binarizedCached_) return;
  binarizedCached_ = false;
  binarizedImage_ = Image();
}

void rzOCChar::moveOrigin(const rzVector<2>& delta) {
  Image image = moved(image_, delta);
  Image mask = moved(mask_, delta);
  image_ = std::move(image);
  mask_ = std::move(mask);
  for (const rzOCCharMetrics::RectType type :
       {rzOCCharMetrics::eCellRect, rzOCCharMetrics::eMarkRect,
        rzOCCharMetrics::eDetectedMarkRect}) {
    if (!metrics_.isRectSpecified(type)) continue;
    const rzRect old = metrics_.rect(type);
    if (!old.degen()) metrics_.rect(type, rzRect(old.ul() - delta, old.sz()));
  }
}
