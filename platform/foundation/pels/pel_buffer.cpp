// SPDX-License-Identifier: Apache-2.0
#include "rz/pel_buffer.h"

#include <utility>

#include "platform/foundation/pels/pel_size.h"
#include "rz/xform_linear.h"

rz_PelBuffer::rz_PelBuffer(const rzPelRect& rect, rzLong bytesPerPel, rzLong align)
    : bytesPerPel_(bytesPerPel), entire_(rect), window_(rect) {
  if (!isPelPlace(rect)) throw rzPel::BadSize("Pel buffer without pels or too large");
  root_ = std::make_shared<rz_PelRoot>(rect.width(), rect.height(), bytesPerPel, align);
}

rz_PelBuffer::rz_PelBuffer(std::shared_ptr<rz_PelRoot> root)
    : bytesPerPel_(root->bytesPerPel()),
      root_(std::move(root)),
      entire_(0, 0, root_->width(), root_->height()),
      window_(entire_) {}

void rz_PelBuffer::throwUnbound_() { throw rzPel::UnboundWindow("The pel buffer has no pels"); }

void rz_PelBuffer::setUnbound() { *this = rz_PelBuffer(bytesPerPel_); }

void rz_PelBuffer::window(const rzPelRect& rect, bool clip) {
  requireBound();
  if (clip) {
    window_ = window_.intersect(rect);
    return;
  }
  if (rect.isNull() || !window_.contains(rect)) {
    throw rzPel::BadWindow("The rectangle does not fit into the window");
  }
  window_ = rect;
}

void rz_PelBuffer::setEntire() {
  requireBound();
  window_ = entire_;
}

void rz_PelBuffer::offset(const rzPair<rzLong>& p) {
  requireBound();
  const std::int64_t x = std::int64_t{entire_.x()} + p.x() - window_.x();
  const std::int64_t y = std::int64_t{entire_.y()} + p.y() - window_.y();
  if (!isPelPlace(x, y, entire_.width(), entire_.height())) {
    throw rzPel::BadWindow("The offset moves pels out of the range of coordinates");
  }
  entire_ =
      rzPelRect(static_cast<rzLong>(x), static_cast<rzLong>(y), entire_.width(), entire_.height());
  window_ = rzPelRect(p.x(), p.y(), window_.width(), window_.height());
}

const rzXform<2>& rz_PelBuffer::clientFromImageXform() const {
  if (!xforms_.isLinear()) throw rz2XformBase::NotLinear("The client transform is not linear");
  return xforms_.clientFromImage;
}

const rzXform<2>& rz_PelBuffer::imageFromClientXform() const {
  if (!xforms_.isLinear()) throw rz2XformBase::NotLinear("The client transform is not linear");
  return xforms_.imageFromClient;
}

rzPtrHandle_const<rz2XformBase> rz_PelBuffer::clientFromImageXformBase() const {
  if (xforms_.clientFromImageBase.isBound()) return xforms_.clientFromImageBase;
  return new rz2XformLinear(xforms_.clientFromImage);
}

rzPtrHandle_const<rz2XformBase> rz_PelBuffer::imageFromClientXformBase() const {
  if (xforms_.imageFromClientBase.isBound()) return xforms_.imageFromClientBase;
  return new rz2XformLinear(xforms_.imageFromClient);
}

void rz_PelBuffer::clientFromImageXform(const rzXform<2>& xform) {
  xforms_ = Xforms{xform, xform.inverse(), nullptr, nullptr};
}

void rz_PelBuffer::imageFromClientXform(const rzXform<2>& xform) {
  xforms_ = Xforms{xform.inverse(), xform, nullptr, nullptr};
}

void rz_PelBuffer::clientFromImageXformBase(const rzPtrHandle_const<rz2XformBase>& xform, bool) {
  if (xform->isLinear()) {
    const rzXform<2> linear = xform->linearXform(rzVector<2>());
    xforms_ = Xforms{linear, linear.inverse(), xform, nullptr};
  } else {
    xforms_ = Xforms{{}, {}, xform, xform->inverseBase()};
  }
}

void rz_PelBuffer::imageFromClientXformBase(const rzPtrHandle_const<rz2XformBase>& xform, bool) {
  if (xform->isLinear()) {
    const rzXform<2> linear = xform->linearXform(rzVector<2>());
    xforms_ = Xforms{linear.inverse(), linear, nullptr, xform};
  } else {
    xforms_ = Xforms{{}, {}, xform->inverseBase(), xform};
  }
}
