// SPDX-License-Identifier: Apache-2.0
//
// rzPelBuffer<T> and rzPelBuffer_const<T>: views of a picture, for writing and for reading. T is
// `unsigned char` for grey pictures and masks, std::int16_t for scores.
//
// A view has a root, the block of pels, which it shares with its copies; a window, the part of the
// root that it shows; and client transforms, which carry pel coordinates into coordinates of the
// caller's own choice and back. Copying a view, narrowing its window or giving it other transforms
// never touches a pel and no other view. Functions that read take a rzPelBuffer_const<T>, which a
// rzPelBuffer<T> becomes by itself.
//
//   rzPelBuffer_const<unsigned char> image = rfPelBufferFromPels(pels, width, height, width);
//   image.window(rzPelRect(10, 20, 64, 32), false);
//
// Pel coordinates: the pel in column x and row y covers [x, x + 1) by [y, y + 1), its centre is
// (x + 0.5, y + 0.5), y grows downwards. Numbers of pels belong to the view: a window that starts
// at (10, 20) has its first pel at (10, 20), not at (0, 0).
//
// A view is unbound by default: no pels, a null window, identity transforms. What needs pels throws
// rzPel::UnboundWindow then.
//
// Views of one root may be read on several threads at once; writing pels and changing one view
// need the caller's own order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

#include "rz/export.h"
#include "rz/pair.h"
#include "rz/pel_error.h"
#include "rz/pel_rect.h"
#include "rz/ptr_handle.h"
#include "rz/types.h"
#include "rz/xform.h"
#include "rz/xform_base.h"

/// A block of pels that views share. Rows follow each other from upper to lower.
class RZ_API rz_PelRoot {
 public:
  /// Zeroed pels of its own. Rows start at multiples of `align` bytes, a power of two.
  rz_PelRoot(rzLong width, rzLong height, rzLong bytesPerPel, rzLong align);
  /// Pels that `owner` keeps alive; null when the caller does.
  rz_PelRoot(const void* pels, rzLong width, rzLong height, rzLong bytesPerPel,
             std::int64_t rowBytes, std::shared_ptr<const void> owner);

  rzLong width() const { return width_; }
  rzLong height() const { return height_; }
  rzLong bytesPerPel() const { return bytesPerPel_; }
  std::int64_t rowBytes() const { return rowBytes_; }
  /// The pel in this column and row, counted from 0.
  unsigned char* at(std::int64_t column, std::int64_t row) const {
    return pels_ + row * rowBytes_ + column * bytesPerPel_;
  }

 private:
  rzLong width_;
  rzLong height_;
  rzLong bytesPerPel_;
  std::int64_t rowBytes_;
  unsigned char* pels_;
  std::shared_ptr<const void> owner_;
};

/// What views for reading and for writing have in common: everything but the type of the pels.
class RZ_API rz_PelBuffer {
 public:
  bool isBound() const { return root_ != nullptr; }
  /// Gives up the pels; the transforms become the identity.
  void setUnbound();
  /// Throws rzPel::UnboundWindow unless bound.
  void requireBound() const {
    if (!root_) throwUnbound_();
  }

  /// The pels shown, in pel coordinates; the null rectangle when unbound.
  const rzPelRect& window() const { return window_; }
  rzLong width() const { return window_.width(); }
  rzLong height() const { return window_.height(); }
  /// The whole root, in pel coordinates; the null rectangle when unbound.
  const rzPelRect& entire() const { return entire_; }
  /// Both show the same root.
  bool sharesRoot(const rz_PelBuffer& other) const { return root_ && root_ == other.root_; }

  /// Narrows the window to `rect`. With `clip` false, throws rzPel::BadWindow, and changes
  /// nothing, unless `rect` has pels and lies in the present window. With `clip` true the window
  /// becomes the common part; that may be null, and the view then stays bound and shows nothing.
  void window(const rzPelRect& rect, bool clip);
  /// Shows the whole root.
  void setEntire();

  /// Upper left corner of the window.
  rzPair<rzLong> offset() const { return window_.ul(); }
  /// Renumbers the pels so that the window starts at `p`. The transforms stay as they are, so the
  /// pels get other client coordinates. Throws rzPel::BadWindow when a corner of the root would
  /// leave the range of rzLong.
  void offset(const rzPair<rzLong>& p);

  /// Client coordinates from pel coordinates and back. Throw rz2XformBase::NotLinear when the
  /// transform is not linear.
  const rzXform<2>& clientFromImageXform() const;
  const rzXform<2>& imageFromClientXform() const;
  /// The same for any transform; never null.
  rzPtrHandle_const<rz2XformBase> clientFromImageXformBase() const;
  rzPtrHandle_const<rz2XformBase> imageFromClientXformBase() const;

  /// Each sets both directions. Throws rzMathError::Singular, and changes nothing, when there is
  /// no inverse. A handle is kept; the second argument has no other effect.
  void clientFromImageXform(const rzXform<2>& xform);
  void imageFromClientXform(const rzXform<2>& xform);
  void clientFromImageXformBase(const rzPtrHandle_const<rz2XformBase>& xform, bool = true);
  void imageFromClientXformBase(const rzPtrHandle_const<rz2XformBase>& xform, bool = true);
  /// Takes both directions as they are, to the last bit.
  void copyXforms(const rz_PelBuffer& other) { xforms_ = other.xforms_; }

 protected:
  explicit rz_PelBuffer(rzLong bytesPerPel) : bytesPerPel_(bytesPerPel) {}
  rz_PelBuffer(const rzPelRect& rect, rzLong bytesPerPel, rzLong align);
  rz_PelBuffer(std::shared_ptr<rz_PelRoot> root);
  rz_PelBuffer(const rz_PelBuffer&) = default;
  rz_PelBuffer& operator=(const rz_PelBuffer&) = default;
  ~rz_PelBuffer() = default;

  /// Step from row to row in bytes.
  std::int64_t rowBytes_() const {
    requireBound();
    return root_->rowBytes();
  }
  unsigned char* pel_(rzLong x, rzLong y) const {
    requireBound();
    return root_->at(std::int64_t{x} - entire_.x(), std::int64_t{y} - entire_.y());
  }

 private:
  friend RZ_API rzArchive& operator||(rzArchive& ar, rz_PelBuffer& buffer);

  // A transform that is not linear has both handles, and the plain forms stand unused. A linear
  // one has its plain forms, and the handle that it was given, if any.
  struct Xforms {
    rzXform<2> clientFromImage;
    rzXform<2> imageFromClient;
    rzPtrHandle_const<rz2XformBase> clientFromImageBase;
    rzPtrHandle_const<rz2XformBase> imageFromClientBase;

    bool isLinear() const {
      return clientFromImageBase.isNull() || clientFromImageBase->isLinear();
    }
  };

  [[noreturn]] static void throwUnbound_();
  static void serializeXforms_(rzArchive& ar, Xforms& xforms);
  void serializePels_(rzArchive& ar);

  rzLong bytesPerPel_;
  std::shared_ptr<rz_PelRoot> root_;
  rzPelRect entire_;  // the root in this view's numbers
  rzPelRect window_;
  Xforms xforms_;
};

/// Archive form: version byte 0, the bound flag, the transforms, and for a bound buffer the bytes
/// of a pel, the window, the whole root's rectangle and its shared id; the first view of a root
/// carries its pels. So views of one root are views of one root again. Loading throws
/// rzArchive::BadFormat for what cannot be a view of pels of this type, and leaves `buffer` as it
/// was.
RZ_API rzArchive& operator||(rzArchive& ar, rz_PelBuffer& buffer);

/// A view for writing.
template <class T>
class rzPelBuffer : public rz_PelBuffer {
  static_assert(std::is_same_v<T, unsigned char> || std::is_same_v<T, std::int16_t>);

 public:
  /// Unbound.
  rzPelBuffer() : rz_PelBuffer(sizeof(T)) {}
  /// Zeroed pels of its own on `rect`; each row starts at a multiple of `align` bytes, a power of
  /// two. Throws rzPel::BadSize when `rect` is null, has more than 2^31 - 1 pels or a corner out
  /// of the range of rzLong, and for any other `align`.
  explicit rzPelBuffer(const rzPelRect& rect, rzLong align = 32)
      : rz_PelBuffer(rect, sizeof(T), align) {}

  /// Address of a pel of the window; the rest of its row follows.
  T* pointToPel(rzLong x, rzLong y) const { return reinterpret_cast<T*>(pel_(x, y)); }
  /// Step from a pel to the one below, in elements.
  std::ptrdiff_t rowUpdate() const {
    return static_cast<std::ptrdiff_t>(rowBytes_() / std::int64_t{sizeof(T)});
  }
};

/// A view for reading.
template <class T>
class rzPelBuffer_const : public rz_PelBuffer {
  static_assert(std::is_same_v<T, unsigned char> || std::is_same_v<T, std::int16_t>);

 public:
  /// Unbound.
  rzPelBuffer_const() : rz_PelBuffer(sizeof(T)) {}
  /// The same view, read only.
  rzPelBuffer_const(const rzPelBuffer<T>& other) : rz_PelBuffer(other) {}

  /// A view of pels that are not copied, at (0, 0). `rowStep` is the step from row to row in
  /// elements, `width` or more. The pels stay where they are and unchanged while `owner` or, if
  /// that is null, the caller keeps them and any view of them is alive. Throws rzPel::BadSize when
  /// `pels` is null, when there are none or more than 2^31 - 1, and when `rowStep` is too small.
  static rzPelBuffer_const borrow(const T* pels, rzLong width, rzLong height,
                                  std::ptrdiff_t rowStep,
                                  std::shared_ptr<const void> owner = nullptr) {
    return rzPelBuffer_const(std::make_shared<rz_PelRoot>(
        pels, width, height, rzLong{sizeof(T)}, std::int64_t{rowStep} * std::int64_t{sizeof(T)},
        std::move(owner)));
  }

  /// Address of a pel of the window; the rest of its row follows.
  const T* pointToPel(rzLong x, rzLong y) const { return reinterpret_cast<const T*>(pel_(x, y)); }
  /// Step from a pel to the one below, in elements.
  std::ptrdiff_t rowUpdate() const {
    return static_cast<std::ptrdiff_t>(rowBytes_() / std::int64_t{sizeof(T)});
  }

 private:
  explicit rzPelBuffer_const(std::shared_ptr<rz_PelRoot> root) : rz_PelBuffer(std::move(root)) {}
};
