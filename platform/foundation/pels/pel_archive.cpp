// SPDX-License-Identifier: Apache-2.0
//
// The archive form of pel buffers.
#include <cstddef>

#include "platform/foundation/pels/pel_size.h"
#include "rz/archive.h"
#include "rz/math_error.h"
#include "rz/pel_buffer.h"
#include "rz/xform_linear.h"

namespace {

constexpr unsigned char kLinear = 0;
constexpr unsigned char kByHandle = 1;
constexpr rzLong kLoadedAlign = 32;  // rows as every working buffer has them
// Narrower rows are not aligned, so that a forged picture cannot take much more than its bytes.
constexpr rzLong kNarrowRow = 32;

void movePels(rzArchive& ar, const rz_PelRoot& root) {
  for (rzLong row = 0; row < root.height(); ++row) {
    if (root.bytesPerPel() == 1) {
      ar.moveBytes(root.at(0, row), static_cast<std::size_t>(root.width()));
      continue;
    }
    auto* pels = reinterpret_cast<std::int16_t*>(root.at(0, row));
    for (rzLong column = 0; column < root.width(); ++column) ar || pels[column];
  }
}

std::shared_ptr<rz_PelRoot> loadRoot(rzArchive& ar, const rzPelRect& entire, rzLong bytesPerPel) {
  if (static_cast<std::uint64_t>(entire.area()) * static_cast<std::uint64_t>(bytesPerPel) >
      ar.remaining()) {
    throw rzArchive::BadFormat("Fewer pels than the size asks for");
  }
  const rzLong align = entire.width() < kNarrowRow ? bytesPerPel : kLoadedAlign;
  auto root = std::make_shared<rz_PelRoot>(entire.width(), entire.height(), bytesPerPel, align);
  movePels(ar, *root);
  ar.addShared(root);
  return root;
}

// A window with pels lies in the root; one without has no size, wherever it is.
bool isWindowOf(const rzPelRect& window, const rzPelRect& entire) {
  if (window.isNull()) return window.size() == rzPair<rzLong>(0, 0);
  return entire.contains(window);
}

}  // namespace

void rz_PelBuffer::serializeXforms_(rzArchive& ar, Xforms& xforms) {
  unsigned char kind = xforms.isLinear() ? kLinear : kByHandle;
  ar || kind;
  if (kind == kLinear) {
    ar || xforms.clientFromImage || xforms.imageFromClient;
    return;
  }
  if (kind != kByHandle) throw rzArchive::BadFormat("Unknown kind of transform");
  rf_SerializeHandle(ar, xforms.clientFromImageBase);
  if (ar.isStoring()) return;
  if (xforms.clientFromImageBase.isNull()) throw rzArchive::BadFormat("Null transform");
  xforms.imageFromClientBase = xforms.clientFromImageBase->inverseBase();
  if (xforms.clientFromImageBase->isLinear()) {
    xforms.clientFromImage = xforms.clientFromImageBase->linearXform(rzVector<2>());
    xforms.imageFromClient = xforms.imageFromClientBase->linearXform(rzVector<2>());
    if (!xforms.clientFromImage.isFinite() || !xforms.imageFromClient.isFinite()) {
      throw rzArchive::BadFormat("Transform is not finite");
    }
  }
}

void rz_PelBuffer::serializePels_(rzArchive& ar) {
  rzLong bytesPerPel = bytesPerPel_;
  ar || bytesPerPel;
  rf_PersistenceHelper<rzLong>(ar, window_);
  rf_PersistenceHelper<rzLong>(ar, entire_);
  if (ar.isLoading() &&
      (bytesPerPel != bytesPerPel_ || !isPelPlace(entire_) || !isWindowOf(window_, entire_))) {
    throw rzArchive::BadFormat("Not a window on pels of this type");
  }
  if (ar.sharedId(root_)) {
    if (ar.isStoring()) {
      movePels(ar, *root_);
    } else {
      root_ = loadRoot(ar, entire_, bytesPerPel_);
    }
  }
  if (!root_ || root_->bytesPerPel() != bytesPerPel_ || root_->width() != entire_.width() ||
      root_->height() != entire_.height()) {
    throw rzArchive::BadFormat("Pels of another size");
  }
}

rzArchive& operator||(rzArchive& ar, rz_PelBuffer& buffer) {
  unsigned char version = 0;
  ar || version;
  if (version != 0) throw rzArchive::UnknownVersion("rz_PelBuffer", 0);
  rz_PelBuffer moved = buffer;
  if (ar.isLoading()) moved = rz_PelBuffer(buffer.bytesPerPel_);
  bool isBound = moved.isBound();
  ar || isBound;
  try {
    rz_PelBuffer::serializeXforms_(ar, moved.xforms_);
  } catch (const rzMathError::Singular&) {
    throw rzArchive::BadFormat("Transform without inverse");
  }
  if (isBound) moved.serializePels_(ar);
  if (ar.isLoading()) buffer = moved;
  return ar;
}
