// SPDX-License-Identifier: Apache-2.0
//
// rzRect: a rectangle with sides parallel to the axes and real-valued corners, upper left corner
// and size, both kept as given. rzGenRect: what becomes of one under an affine transform, a
// parallelogram that keeps its corners' names. For windows of whole pels use rzPelRect.
#pragma once

#include "rz/export.h"
#include "rz/pel_rect.h"
#include "rz/persistent.h"
#include "rz/vector.h"
#include "rz/xform.h"

class rzGenRect;

class RZ_API rzRect : public rzPersistent {
 public:
  /// The point (0, 0) with size 0.
  rzRect() = default;
  rzRect(const rzVector<2>& ul, const rzVector<2>& size) : ul_(ul), size_(size) {}
  rzRect(double x, double y, double width, double height) : ul_(x, y), size_(width, height) {}
  /// The pels' outline.
  explicit rzRect(const rzPelRect& rect) : ul_(rect.ul()), size_(rect.size()) {}

  const rzVector<2>& ul() const { return ul_; }
  const rzVector<2>& sz() const { return size_; }
  const rzVector<2>& size() const { return size_; }
  double x() const { return ul_.x(); }
  double y() const { return ul_.y(); }
  double width() const { return size_.x(); }
  double height() const { return size_.y(); }
  rzVector<2> ur() const { return {ul_.x() + size_.x(), ul_.y()}; }
  rzVector<2> ll() const { return {ul_.x(), ul_.y() + size_.y()}; }
  rzVector<2> lr() const { return ul_ + size_; }
  rzVector<2> center() const { return ul_ + size_ * 0.5; }

  /// Width and height are not both above 0.
  bool degen() const { return !(width() > 0.0 && height() > 0.0); }
  /// The smallest rectangle that holds the points of both. A degenerate rectangle is a point or a
  /// segment here and counts, so the default rectangle brings in (0, 0).
  rzRect enclose(const rzRect& other) const;
  /// The smallest rectangle of whole pels that holds this one: floor of the upper left corner,
  /// ceiling of the lower right one. Throws rzMathError::Overflow when that has no 32-bit form.
  rzPelRect enclosePelRect() const;
  rzGenRect map(const rzXform<2>& xform) const;

  /// Exact.
  bool operator==(const rzRect& other) const { return ul_ == other.ul_ && size_ == other.size_; }

  static const rz_Instantiator sExemplar;

 protected:
  void dispatchSerialize(rzArchive& ar) override;

 private:
  static rzPersistent* make();
  void serialize_(rzArchive& ar, unsigned char version);

  rzVector<2> ul_;
  rzVector<2> size_;
};

/// A rectangle after an affine transform: upper left corner and the two sides that leave it.
class rzGenRect {
 public:
  constexpr rzGenRect() = default;
  constexpr rzGenRect(const rzVector<2>& ul, const rzVector<2>& ur, const rzVector<2>& ll)
      : ul_(ul), ur_(ur), ll_(ll) {}
  rzGenRect(const rzRect& rect) : ul_(rect.ul()), ur_(rect.ur()), ll_(rect.ll()) {}

  constexpr const rzVector<2>& ul() const { return ul_; }
  constexpr const rzVector<2>& ur() const { return ur_; }
  constexpr const rzVector<2>& ll() const { return ll_; }
  constexpr rzVector<2> lr() const { return ur_ + ll_ - ul_; }

  constexpr rzGenRect map(const rzXform<2>& xform) const {
    return {xform * ul_, xform * ur_, xform * ll_};
  }

  constexpr bool operator==(const rzGenRect& other) const = default;

 private:
  rzVector<2> ul_;
  rzVector<2> ur_;
  rzVector<2> ll_;
};

/// The smallest rectangle of whole pels from `low` to `high`: floor of the one, ceiling of the
/// other. Throws rzMathError::Overflow when that has no 32-bit form.
RZ_API rzPelRect rf_EnclosePels(const rzVector<2>& low, const rzVector<2>& high);
