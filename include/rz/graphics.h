// SPDX-License-Identifier: Apache-2.0
//
// Coloured shapes that explain a picture: boxes of characters, lines of text, axes. Nothing is
// drawn here; a diagnostic record (rz/diag.h) keeps lists of them, and a viewer reads shape and
// properties back.
//
//   rzGraphicList list;
//   list.append(new rzGraphicSimple<rzLineSeg>(segment, rzColor::greenColor()), true);
//
// Graphics never change after construction, so lists share them freely.
#pragma once

#include <vector>

#include "rz/affine_rectangle.h"
#include "rz/coord_axes.h"
#include "rz/ellipse_arc.h"
#include "rz/export.h"
#include "rz/line.h"
#include "rz/ptr_handle.h"
#include "rz/rect.h"
#include "rz/rep_base.h"
#include "rz/types.h"
#include "rz/vector.h"

/// A colour by its shares of red, green and blue, 0 to 255 each.
class rzColor {
 public:
  constexpr rzColor() = default;
  constexpr rzColor(unsigned char red, unsigned char green, unsigned char blue)
      : red_(red), green_(green), blue_(blue) {}

  static constexpr rzColor redColor() { return {255, 0, 0}; }
  static constexpr rzColor greenColor() { return {0, 255, 0}; }
  static constexpr rzColor blueColor() { return {0, 0, 255}; }
  static constexpr rzColor orangeColor() { return {255, 165, 0}; }
  static constexpr rzColor yellowColor() { return {255, 255, 0}; }

  constexpr unsigned char red() const { return red_; }
  constexpr unsigned char green() const { return green_; }
  constexpr unsigned char blue() const { return blue_; }

  constexpr bool operator==(const rzColor& other) const = default;

 private:
  unsigned char red_ = 0;
  unsigned char green_ = 0;
  unsigned char blue_ = 0;
};

/// How a shape's outline looks.
class rzGraphicProps {
 public:
  /// `penWidth` in pels of the screen; pen style 0 is a solid line. The last argument has no
  /// effect.
  constexpr rzGraphicProps(const rzColor& color, rzLong penWidth = 1, rzLong penStyle = 0,
                           bool = false)
      : color_(color), penWidth_(penWidth), penStyle_(penStyle) {}

  constexpr const rzColor& color() const { return color_; }
  constexpr rzLong penWidth() const { return penWidth_; }
  constexpr rzLong penStyle() const { return penStyle_; }

  constexpr bool operator==(const rzGraphicProps& other) const = default;

 private:
  rzColor color_;
  rzLong penWidth_;
  rzLong penStyle_;
};

/// Any graphic. Which one it is, a reader asks by dynamic_cast.
class RZ_API rzGraphic : public rzRepBase {
 public:
  ~rzGraphic() override;

  const rzGraphicProps& props() const { return props_; }
  const rzColor& color() const { return props_.color(); }

 protected:
  explicit rzGraphic(const rzGraphicProps& props) : props_(props) {}

 private:
  rzGraphicProps props_;
};

/// An outline. `Shape` is rzAffineRectangle, rzLineSeg, rzEllipseArc2, rzRect, rzGenRect or
/// rzCoordAxes.
template <class Shape>
class RZ_API rzGraphicSimple : public rzGraphic {
 public:
  rzGraphicSimple(const Shape& shape, const rzGraphicProps& props)
      : rzGraphic(props), shape_(shape) {}
  /// A solid line of width 1.
  rzGraphicSimple(const Shape& shape, const rzColor& color)
      : rzGraphicSimple(shape, rzGraphicProps(color)) {}

  const Shape& shape() const { return shape_; }

 private:
  Shape shape_;
};

/// A shape that may be filled. `General` is what the shape becomes under an affine transform.
template <class Shape, class General>
class RZ_API rzGraphicWithFill : public rzGraphic {
 public:
  rzGraphicWithFill(const Shape& shape, const rzColor& color, bool isFilled)
      : rzGraphic(rzGraphicProps(color)), shape_(shape), isFilled_(isFilled) {}

  const Shape& shape() const { return shape_; }
  General general() const { return General(shape_); }
  bool isFilled() const { return isFilled_; }

 private:
  Shape shape_;
  bool isFilled_;
};

/// A mark at a point, of one size at every zoom.
class RZ_API rzGraphicPointIcon : public rzGraphic {
 public:
  rzGraphicPointIcon(const rzVector<2>& point, const rzColor& color)
      : rzGraphicPointIcon(point, rzGraphicProps(color)) {}
  rzGraphicPointIcon(const rzVector<2>& point, const rzGraphicProps& props)
      : rzGraphic(props), point_(point) {}
  ~rzGraphicPointIcon() override;

  const rzVector<2>& point() const { return point_; }

 private:
  rzVector<2> point_;
};

/// Graphics in the order in which they are drawn. A copy shares the graphics, not the list.
class RZ_API rzGraphicList {
 public:
  /// Adds a graphic and takes part in its ownership; the second argument has no other effect.
  /// Throws rzBadPointer for null.
  void append(const rzPtrHandle_const<rzGraphic>& graphic, bool = true);

  const std::vector<rzPtrHandle_const<rzGraphic>>& items() const { return items_; }

 private:
  std::vector<rzPtrHandle_const<rzGraphic>> items_;
};
