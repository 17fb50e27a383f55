// SPDX-License-Identifier: Apache-2.0
//
// rzOCChar: the full record of one character: its key, its images, where it lies in them, and its
// names. It is what a program keeps of its characters and exchanges with C programs (roc_char); the
// arranger works on rzOCModel, which rfOCModelFromChar (oc/char_model.h) makes of a record.
//
//     rzOCChar a;
//     a.key(rzOCCharKey('A'));
//     a.image(picture, rzPelRect());
//     a.imageArea(picture.window());
//     a.metrics(rzOCCharMetrics());  // nothing is known yet; those of a fresh record say blank
//
// A record holds up to four images: the image as taken, its mask, a normalized form, and the
// binarized image, a cache made of the normalized one by threshold and inversion when it is first
// asked for. Images are stored as private copies; copies of a record share their pels, which
// nobody writes. A detected mark rectangle in the metrics is cleared whenever the image, the mask,
// the normalized image, the polarity or the image area changes.
//
// Pel coordinates: the pel in column x and row y covers [x, x + 1) by [y, y + 1). The client
// transform of an image leads to the character's own coordinates.
//
// A plain value. Setters check before they change anything. binarizedImage() fills the cache of a
// const object, so a record may be read by several threads only once its cache is filled.
#pragma once

#include <string>
#include <vector>

#include "oc/char_key.h"
#include "oc/char_metrics.h"
#include "oc/oc_defs.h"
#include "rz/archive.h"
#include "rz/charlib/char_record.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"
#include "rz/types.h"
#include "rz/vector.h"

class RZ_API rzOCChar {
 public:
  using Image = rzPelBuffer_const<unsigned char>;

  /// Default key, polarity unknown, no images, blank metrics, empty strings.
  rzOCChar();
  rzOCChar(const rzOCChar& other);
  rzOCChar& operator=(const rzOCChar& other);
  ~rzOCChar() = default;

  /// Back to the default.
  void reset();

  /// Equal in every field, caches and unused values included; images by their pels and windows.
  bool operator==(const rzOCChar& other) const;
  bool operator!=(const rzOCChar& other) const { return !(*this == other); }

  const rzOCCharKey& key() const { return key_; }
  void key(const rzOCCharKey& key) { key_ = key; }
  rzULong characterCode() const { return key_.characterCode(); }
  void characterCode(rzULong code) { key_.characterCode(code); }

  const rzOCCharMetrics& metrics() const { return metrics_; }
  void metrics(const rzOCCharMetrics& metrics) { metrics_ = metrics; }

  /// The part of the images that belongs to the character, in pel coordinates.
  const rzPelRect& imageArea() const { return imageArea_; }
  void imageArea(const rzPelRect& area);

  /// Whether marks are darker or lighter than their background. Throws rzOCDefs::BadParams for a
  /// value that is none of the three.
  rzOCDefs::Polarity polarity() const { return polarity_; }
  void polarity(rzOCDefs::Polarity polarity);

  /// Name and description, each in 32-bit characters and in bytes. Setting one form sets the
  /// other: bytes are widened with their sign, and a 32-bit string with a character that has no
  /// 8-bit form leaves the 8-bit string empty. Asking for that throws
  /// rzCharCodeDefs::NotRepresentable.
  const rzString32& name32() const { return name32_; }
  void name32(const rzString32& name);
  const rzString32& description32() const { return description32_; }
  void description32(const rzString32& description);
  const std::string& name() const;
  void name(const std::string& name);
  const std::string& description() const;
  void description(const std::string& description);

  /// Whether threshold() and invert() hold values. The setters of those two do not set this.
  bool hasThresholdAndInvert() const { return hasThresholdAndInvert_; }
  void hasThresholdAndInvert(bool has);
  /// The lowest grey of the upper group, 0 or more; above 256 no image can be binarized. Throw
  /// rzOCDefs::ThresholdAndInvertNotSpecified without hasThresholdAndInvert(), the setter
  /// rzOCDefs::BadParams for a negative value.
  rzLong threshold() const;
  void threshold(rzLong threshold);
  /// False: greys below the threshold become 0, the others 255; true: the other way round.
  bool invert() const;
  void invert(bool invert);

  /// Store a private copy of the pels of `rootCopyRect`, or of the window alone when that
  /// rectangle is null; the window stays. Throw rzOCDefs::BadParams when the rectangle does not
  /// contain the window. An unbound source is stored as it is.
  void image(const Image& source, const rzPelRect& rootCopyRect);
  void mask(const Image& source, const rzPelRect& rootCopyRect);
  void normalizedImage(const Image& source, const rzPelRect& rootCopyRect);
  /// Takes a normalized image, without copying its pels, together with all that belongs to it.
  /// Throws rzOCDefs::BadParams for a threshold outside 0 to 256, and then changes nothing.
  void normalizedImage(const Image& source, bool hasThresholdAndInvert, rzLong threshold,
                       bool invert, const rzPelRect& imageArea);

  /// The image as it is stored, or windowed to imageArea(). The latter throw rzOCDefs::BadParams
  /// when the area is null or not within the image's window. An unbound image is given back.
  Image image(bool windowToImageArea) const;
  Image mask(bool windowToImageArea) const;
  Image normalizedImage(bool windowToImageArea) const;
  /// Throws rzOCDefs::ThresholdAndInvertNotSpecified without hasThresholdAndInvert(), and
  /// rzOCDefs::BadParams for a threshold above 256 when there is an image to binarize.
  Image binarizedImage(bool windowToImageArea) const;

  /// The image windowed to its common part with the mark: the first specified one of
  /// eMarkRectImage, eDetectedMarkRectImage, eMarkRect and eDetectedMarkRect. Throw
  /// rzOCDefs::RectNotSpecified when none is.
  Image imageMarkRect() const;
  Image maskMarkRect() const;
  Image normalizedImageMarkRect() const;
  Image binarizedImageMarkRect() const;

  /// The window of imageMarkRect(); imageArea() for a blank character and without a mark.
  rzPelRect markOrImageArea() const;

  /// Moves the origin of the client coordinates by `delta`, client units. The pels stay where they
  /// are; image and mask get another client transform, and client rectangles that are specified
  /// and not empty move by -delta. The normalized image, the binarized image and the image
  /// rectangles stay.
  void moveOrigin(const rzVector<2>& delta);

  /// `key` itself when its instance is specified and not taken by a key of the same code;
  /// otherwise `key` with another instance: the instances of that code are sorted, and the first
  /// position that does not hold its own number is taken. That is the smallest free instance when
  /// no two of them are equal and none is negative.
  static rzOCCharKey makeUniqueInstanceKey(const rzOCCharKey& key,
                                           const std::vector<rzOCCharKey>& keys);
  static rzOCCharKey makeUniqueInstanceKey(const rzOCCharKey& key,
                                           const std::vector<rzOCChar>& characters);
  /// Gives each key an instance of its own, the earlier ones first. True when a key after the
  /// first was changed.
  static bool makeUniqueInstanceKeys(std::vector<rzOCCharKey>& keys);

  /// Exchange everything with the C-level record, which must be constructed. With `copyImages`
  /// the receiver gets pels of its own, whole roots; otherwise both sides share them. The record
  /// owns the strings that it is given; those that it held before are released. setCharacter
  /// throws rzOCDefs::BadParams for a polarity that is none; the fields taken until then stay.
  void setCharacter(const roc_char& record, bool copyImages);
  void getCharacter(roc_char& record, bool copyImages) const;

 private:
  friend RZ_API rzArchive& operator||(rzArchive& archive, rzOCChar& character);

  void assign_(const rzOCChar& other);
  void cacheBinarizedImage_() const;
  void uncacheBinarizedImage_();
  void undetectMarkRect_();
  void checkHasThresholdAndInvert_() const;
  void checkHasBinarizedImage_() const;
  Image windowedImage_(const Image& buffer, bool windowToImageArea) const;
  Image markRectWindow_(const Image& buffer) const;

  rzOCCharKey key_;
  rzOCDefs::Polarity polarity_ = rzOCDefs::ePolarityUnknown;
  Image image_;
  Image mask_;
  Image normalizedImage_;
  mutable bool binarizedCached_ = false;  // binarizedImage_ follows from the three it is made of
  mutable Image binarizedImage_;
  bool hasThresholdAndInvert_ = false;
  rzLong threshold_ = 128;
  bool invert_ = false;
  rzPelRect imageArea_;
  rzOCCharMetrics metrics_ = rzOCCharMetrics::blankMetrics();
  rzString32 name32_;
  rzString32 description32_;
  std::string name_;
  std::string description_;
};

/// Archive form: version byte 1 and the fields in their order.
RZ_API rzArchive& operator||(rzArchive& archive, rzOCChar& character);
