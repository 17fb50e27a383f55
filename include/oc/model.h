// SPDX-License-Identifier: Apache-2.0
//
// One trained character of an alphabet: the key by which the rest of the system names it, a grey
// image of it, an optional care mask, the rectangle of the image that the character occupies, and
// two strings for people. A model holds no search state; whoever searches builds that from it.
//
// Models are usually held by handle, so that several alphabets, lines and arrangements share one:
//
//     rzPtrHandle_const<rzOCModel> a(
//         new rzOCModel(65, image, image.window(), rzOCModel::eNormal, "A"));
//
// Rectangles are in the pel coordinates of image and mask: the pel in column x and row y covers
// [x, x + 1) by [y, y + 1). The image's client transform places the character's origin. A model
// must not be changed while another thread reads it.
#pragma once

#include <string>

#include "rz/angle.h"
#include "rz/archive.h"
#include "rz/export.h"
#include "rz/pel_buffer.h"
#include "rz/pel_rect.h"
#include "rz/persistent.h"
#include "rz/ptr_handle.h"
#include "rz/rect.h"
#include "rz/rep_base.h"
#include "rz/types.h"
#include "rz/xform.h"

class RZ_API rzOCModel : public rzPersistent, public rzRepBase {
 public:
  /// A normal character has an image; a blank is a position that shows nothing, a space.
  enum CharType : rzLong { eNormal = 0, eBlank = 1 };

  /// Key -1, type eBlank, nothing bound, empty strings, the null rectangle.
  rzOCModel();

  /// A character with a care mask (pels from 128 count); an unbound mask stands for none.
  /// Throws what model() and imageArea() throw.
  rzOCModel(rzLong key, const rzPelBuffer_const<unsigned char>& image,
            const rzPelBuffer_const<unsigned char>& mask, const rzPelRect& imageArea,
            CharType charType = eNormal, const std::string& name = std::string(),
            const std::string& description = std::string());

  /// The same without a mask.
  rzOCModel(rzLong key, const rzPelBuffer_const<unsigned char>& image, const rzPelRect& imageArea,
            CharType charType = eNormal, const std::string& name = std::string(),
            const std::string& description = std::string());

  /// The identity of the character inside an alphabet. Any value; no alphabet that already holds
  /// the model is asked.
  rzLong key() const { return key_; }
  void key(rzLong key);

  /// A short name for people. Several characters may share one.
  const std::string& name() const { return name_; }
  void name(const std::string& name);

  /// Free text for people.
  const std::string& description() const { return description_; }
  void description(const std::string& description);

  CharType charType() const { return charType_; }

  const rzPelBuffer_const<unsigned char>& image() const { return image_; }
  const rzPelBuffer_const<unsigned char>& mask() const { return mask_; }

  /// Exchange the image, the mask, or both at once (the way when their windows change together).
  /// Each changes nothing when it throws:
  /// - rzOCDefs::BadImage: an unbound image for a normal character;
  /// - rzOCDefs::NotImplemented: a bound image for a blank character;
  /// - rzOCDefs::BadParams: windows of image and mask differ, or imageArea() does not fit.
  void image(const rzPelBuffer_const<unsigned char>& image);
  void mask(const rzPelBuffer_const<unsigned char>& mask);
  void model(const rzPelBuffer_const<unsigned char>& image,
             const rzPelBuffer_const<unsigned char>& mask);

  /// The character's rectangle. It must lie in the window of whichever of image and mask is
  /// bound, else rzOCDefs::BadParams; with neither bound any rectangle is taken.
  const rzPelRect& imageArea() const { return imageArea_; }
  void imageArea(const rzPelRect& area);

  /// The rectangle of target space that the character can reach when placed by `pose` (client
  /// from model client coordinates), with errors of place (client units), angle and scale up to
  /// the uncertainties. Angle and scale errors act about the origin of the frame that
  /// `originXform` maps to model client coordinates; `targetXform` gives client coordinates from
  /// target coordinates. Throws rzOCDefs::BadParams for an uncertainty that is negative or NaN.
  rzRect encloseRect(const rzXform<2>& pose, const rzXform<2>& originXform,
                     const rzXform<2>& targetXform, double translationUncertainty,
                     const rzRadian& rotationUncertainty, double scaleUncertainty) const;

  /// Equal in every field, in the pels and in the image transforms, exactly.
  bool operator==(const rzOCModel& other) const;
  bool operator!=(const rzOCModel& other) const { return !(*this == other); }

  static const rz_Instantiator sExemplar;

 protected:
  void dispatchSerialize(rzArchive& archive) override;

 private:
  static rzPersistent* make();
  void serialize_(rzArchive& archive, unsigned char version);
  void model_(const rzPelBuffer_const<unsigned char>& image,
              const rzPelBuffer_const<unsigned char>& mask);
  static void checkArea_(const rzPelBuffer_const<unsigned char>& image,
                         const rzPelBuffer_const<unsigned char>& mask, const rzPelRect& area);

  rzLong key_ = -1;
  rzPelBuffer_const<unsigned char> image_;
  rzPelBuffer_const<unsigned char> mask_;
  CharType charType_ = eBlank;
  std::string name_;
  std::string description_;
  rzPelRect imageArea_;
};

/// As operator==, but each number of the two client-from-image transforms may differ by epsilon.
RZ_API bool rfRealEq(const rzOCModel& a, const rzOCModel& b, double epsilon);

/// Moves the type as an unsigned 32-bit number.
RZ_API rzArchive& operator||(rzArchive& archive, rzOCModel::CharType& type);
