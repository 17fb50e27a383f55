// SPDX-License-Identifier: Apache-2.0
#include "oc/model.h"

#include <typeinfo>

#include "oc/oc/enclose.h"
#include "oc/oc_defs.h"
#include "rz/exception.h"
#include "rz/pel_functions.h"
#include "rz/polygon.h"
#include "rz/real_eq.h"

namespace {

constexpr unsigned char kModelVersion = 1;  // 0 had no description

using Image = rzPelBuffer_const<unsigned char>;

template <class SameXform>
bool sameImage(const Image& a, const Image& b, SameXform sameXform) {
  if (!a.isBound() || !b.isBound()) return a.isBound() == b.isBound();
  return a.window() == b.window() &&
         sameXform(a.clientFromImageXform(), b.clientFromImageXform()) && rfPelEqual(a, b);
}

template <class SameXform>
bool sameModel(const rzOCModel& a, const rzOCModel& b, SameXform sameXform) {
  return a.key() == b.key() && a.charType() == b.charType() && a.name() == b.name() &&
         a.description() == b.description() && a.imageArea() == b.imageArea() &&
         sameImage(a.image(), b.image(), sameXform) && sameImage(a.mask(), b.mask(), sameXform);
}

}  // namespace

const rz_Instantiator rzOCModel::sExemplar(typeid(rzOCModel), &rzOCModel::make);

rzPersistent* rzOCModel::make() { return new rzOCModel; }

rzOCModel::rzOCModel() = default;

rzOCModel::rzOCModel(rzLong key, const Image& image, const Image& mask, const rzPelRect& imageArea,
                     CharType charType, const std::string& name, const std::string& description)
    : key_(key),
      charType_(charType),
      name_(name),
      description_(description),
      imageArea_(imageArea) {
  model_(image, mask);
}

rzOCModel::rzOCModel(rzLong key, const Image& image, const rzPelRect& imageArea, CharType charType,
                     const std::string& name, const std::string& description)
    : rzOCModel(key, image, Image(), imageArea, charType, name, description) {}

void rzOCModel::key(rzLong key) {
  key_ = key;
  mutating();
}

void rzOCModel::name(const std::string& name) {
  name_ = name;
  mutating();
}

void rzOCModel::description(const std::string& description) {
  description_ = description;
  mutating();
}

void rzOCModel::image(const Image& image) { model(image, mask_); }

void rzOCModel::mask(const Image& mask) { model(image_, mask); }

void rzOCModel::model(const Image& image, const Image& mask) {
  mutating();
  model_(image, mask);
}

void rzOCModel::imageArea(const rzPelRect& area) {
  mutating();
  checkArea_(image_, mask_, area);
  imageArea_ = area;
}

void rzOCModel::model_(const Image& image, const Image& mask) {
  if (charType_ == eNormal && !image.isBound()) {
    throw rzOCDefs::BadImage("Image models must be bound for normal characters.");
  }
  if (charType_ == eBlank && image.isBound()) {
    throw rzOCDefs::NotImplemented("Bound images are not supported for blank characters");
  }
  if (mask.isBound() && image.isBound() && mask.window() != image.window()) {
    throw rzOCDefs::BadParams(
        "Character mask window must be equal to the image character model window.");
  }
  checkArea_(image, mask, imageArea_);
  // The arguments may be the members themselves; copies first.
  const Image newMask = mask;
  image_ = image;
  mask_ = newMask;
}

void rzOCModel::checkArea_(const Image& image, const Image& mask, const rzPelRect& area) {
  try {
    for (Image view : {image, mask}) {
      if (view.isBound()) view.window(area, false);
    }
  } catch (const rzException&) {
    throw rzOCDefs::BadParams("The image area must fit within the mask and image windows.");
  }
}

rzRect rzOCModel::encloseRect(const rzXform<2>& pose, const rzXform<2>& originXform,
                              const rzXform<2>& targetXform, double translationUncertainty,
                              const rzRadian& rotationUncertainty, double scaleUncertainty) const {
  const rz_EnclosePlacement placement{pose,
                                      originXform,
                                      targetXform,
                                      translationUncertainty,
                                      rotationUncertainty,
                                      scaleUncertainty};
  rf_CheckUncertainties(placement);
  const rzXform<2> toOrigin = originXform.inverse() * image_.clientFromImageXform();
  return rf_ReachOf(rf_CornersOf(imageArea_).map(toOrigin), placement);
}

bool rzOCModel::operator==(const rzOCModel& other) const {
  return sameModel(*this, other, [](const rzXform<2>& a, const rzXform<2>& b) { return a == b; });
}

bool rfRealEq(const rzOCModel& a, const rzOCModel& b, double epsilon) {
  return sameModel(a, b, [epsilon](const rzXform<2>& x, const rzXform<2>& y) {
    return rfRealEq(x, y, epsilon);
  });
}

rzArchive& operator||(rzArchive& archive, rzOCModel::CharType& type) {
  rzULong value = static_cast<rzULong>(type);
  if (archive.isStoring()) return archive || value;
  archive >> value;
  type = static_cast<rzOCModel::CharType>(value);
  return archive;
}

void rzOCModel::dispatchSerialize(rzArchive& archive) {
  if (haveVisited(archive, this, sizeof(*this))) return;
  unsigned char version = kModelVersion;
  archive || version;
  serialize_(archive, version);
  setVisited(archive, this, sizeof(*this));
}

void rzOCModel::serialize_(rzArchive& archive, unsigned char version) {
  if (version > kModelVersion) throw rzArchive::UnknownVersion("rzOCModel", 0);
  rzPersistent::dispatchSerialize(archive);
  rzOCModel fields(*this);
  archive || fields.key_;
  archive || fields.image_;
  archive || fields.mask_;
  archive || fields.charType_;
  archive || fields.name_;
  if (version >= 1) archive || fields.description_;
  rf_PersistenceHelper<rzLong>(archive, fields.imageArea_);
  if (version == 0) fields.description_.clear();
  if (archive.isLoading()) *this = fields;
}
