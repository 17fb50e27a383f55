// SPDX-License-Identifier: Apache-2.0
//
// rzOCCharMetrics: where a character lies. Three rectangles, each in two coordinate spaces, and the
// advance to the next character. The cell is the room that the character takes up in a line; the
// mark is what is printed, as somebody has said; the detected mark is the same as found in the
// image.
//
// Client rectangles are in the character's own coordinates. Image rectangles are in pel coordinates
// (the pel in column x and row y covers [x, x + 1) by [y, y + 1)) and are kept as fixed-point
// numbers, the form in which the C-level character library exchanges them.
//
// Each rectangle and the advance is marked as specified or not. Storing a value does not mark it,
// and asking for one that is not marked is an error:
//
//     rzOCCharMetrics metrics;
//     metrics.markRect(rzRect(2.0, 3.0, 10.0, 14.0));
//     metrics.isMarkRectSpecified(true);
//
// A plain value. Every operation that is given a RectType throws rzOCDefs::BadParams for anything
// but one of the six enumerators, and changes nothing when it throws.
#pragma once

#include "rz/archive.h"
#include "rz/charlib/char_record.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"
#include "rz/rect.h"
#include "rz/types.h"
#include "rz/vector.h"
#include "rz/xform.h"

class RZ_API rzOCCharMetrics {
 public:
  /// The rectangles; each is a bit of its own.
  enum RectType : rzLong {
    eCellRect = 1,
    eCellRectImage = 2,
    eMarkRect = 4,
    eMarkRectImage = 8,
    eDetectedMarkRect = 16,
    eDetectedMarkRectImage = 32,
  };

  /// Nothing specified.
  rzOCCharMetrics() = default;
  void reset() { *this = rzOCCharMetrics(); }

  /// All values take part, also those that are not marked as specified.
  bool operator==(const rzOCCharMetrics& other) const = default;

  bool isRectSpecified(RectType type) const;
  void isRectSpecified(RectType type, bool specified);

  /// The rectangle in real numbers. Throws rzOCDefs::RectNotSpecified when it is not marked, and
  /// rzOCDefs::IntegerOverflow for a fixed-point rectangle beyond all real numbers.
  rzRect rect(RectType type) const;
  /// Store without marking; a rzPelRect is read as plain coordinates. Throw
  /// rzOCDefs::IntegerOverflow for what an image rectangle cannot hold.
  void rect(RectType type, const rzRect& rect);
  void rect(RectType type, const rzPelRect& rect);

  rzRect cellRect() const { return rect(eCellRect); }
  void cellRect(const rzRect& r) { rect(eCellRect, r); }
  rzRect markRect() const { return rect(eMarkRect); }
  void markRect(const rzRect& r) { rect(eMarkRect, r); }
  rzRect detectedMarkRect() const { return rect(eDetectedMarkRect); }
  void detectedMarkRect(const rzRect& r) { rect(eDetectedMarkRect, r); }

  bool isMarkRectSpecified() const { return isRectSpecified(eMarkRect); }
  void isMarkRectSpecified(bool specified) { isRectSpecified(eMarkRect, specified); }
  bool hasDetectedMarkRect() const { return isRectSpecified(eDetectedMarkRect); }
  void hasDetectedMarkRect(bool specified) { isRectSpecified(eDetectedMarkRect, specified); }

  /// Displacement to the next character, client units. Throws rzOCDefs::MetricNotSpecified when
  /// it is not marked; storing it does not mark it.
  rzVector<2> advance() const;
  void advance(const rzVector<2>& advance) { advance_ = advance; }
  bool isAdvanceSpecified() const { return isAdvanceSpecified_; }
  void isAdvanceSpecified(bool specified) { isAdvanceSpecified_ = specified; }

  /// The whole pels, or whole client units, that hold rect(type). Throws what rect(type) throws,
  /// rzOCDefs::IntegerOverflow for a corner out of the range of 32 bits, and rzMathError::Overflow
  /// when only the size is out of it.
  rzPelRect encloseRect(RectType type) const;

  /// The whole pels that hold the rectangle in the image. A client rectangle is mapped; one that
  /// is in image space already does not use the transform. With a buffer, its imageFromClient
  /// transform is taken; rzOCDefs::BadParams when that is not linear, whatever the type.
  rzPelRect encloseRectImage(RectType type, const rzXform<2>& imageFromClient) const;
  rzPelRect encloseRectImage(RectType type, const rz_PelBuffer& image) const;

  /// Makes each image rectangle from its client rectangle: the upright rectangle round the mapped
  /// one. Where the client rectangle is not specified, neither is the image rectangle afterwards.
  void setImageRectsFromClientRects(const rzXform<2>& imageFromClient);
  void setImageRectsFromClientRects(const rz_PelBuffer& image);

  /// The mark is known to be empty. False when no mark rectangle is specified; throws
  /// rzOCDefs::MetricNotSpecified when the two spaces contradict each other.
  bool isBlank() const;
  /// Specifies empty mark rectangles in both spaces; cell and advance stay.
  void makeBlank();
  static rzOCCharMetrics blankMetrics();

  /// Exchange all values with the C-level record, also those that are not marked.
  void setMetrics(const roc_charMetrics& record);
  void getMetrics(roc_charMetrics& record) const;

 private:
  friend RZ_API rzArchive& operator||(rzArchive& archive, rzOCCharMetrics& metrics);

  void getRect_(RectType type, rzRect*& client, rzPelRect*& image);
  void getRect_(RectType type, const rzRect*& client, const rzPelRect*& image) const;

  rzULong specifiedRects_ = 0;
  bool isAdvanceSpecified_ = false;
  rzPelRect cellRectImage_;  // fixed point, like the next two
  rzPelRect markRectImage_;
  rzPelRect detectedMarkRectImage_;
  rzLong fixedPointBits_ = 16;
  rzRect cellRect_;
  rzRect markRect_;
  rzRect detectedMarkRect_;
  rzVector<2> advance_;
};

/// Archive form: version byte 1 and the fields in their order.
RZ_API rzArchive& operator||(rzArchive& archive, rzOCCharMetrics& metrics);
