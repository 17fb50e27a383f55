// SPDX-License-Identifier: Apache-2.0
#include "rz/diag.h"

#include "rz/pel_functions.h"

namespace {

rzDiagRecord* titledRecord(rzDiagObject& diag, const std::string& title) {
  rzDiagRecord* record = diag.newDiagRecord();
  record->recordAnnotation(title);
  return record;
}

// A window that shows nothing has no pels to copy.
bool hasPels(const rzPelBuffer_const<unsigned char>& image) {
  return image.isBound() && !image.window().isNull();
}

}  // namespace

void rzDiagRecord::text(const std::string& content, const std::string& label) {
  texts_.push_back({content, label});
}

void rzDiagRecord::graphics(const rzGraphicList& list, rzLong coordinateSystem,
                            const std::string& label) {
  graphics_.push_back({list, coordinateSystem, label});
}

void rzDiagRecord::image(const rzPelBuffer_const<unsigned char>& image, const std::string& name,
                         bool copy) {
  if (!hasPels(image)) return;
  images_.push_back({copy ? rfPelCopy(image) : image, name});
}

rzDiagRecord* rzDiagObject::newDiagRecord() {
  records_.push_back(std::make_unique<rzDiagRecord>(level_));
  return records_.back().get();
}

rzDiagRecord* rzDiagObject::diagRecord(rzLong index) {
  if (index < 0 || index >= numRecords()) return nullptr;
  return records_[static_cast<std::size_t>(index)].get();
}

const rzDiagRecord* rzDiagObject::diagRecord(rzLong index) const {
  return const_cast<rzDiagObject*>(this)->diagRecord(index);
}

rzDiagLevelScope::rzDiagLevelScope(rzDiagObject* diag, rzLong levels)
    : diag_(diag), before_(diag ? diag->level() : 0) {
  if (diag_) diag_->level(before_ + levels);
}

rzDiagLevelScope::~rzDiagLevelScope() {
  if (diag_) diag_->level(before_);
}

rzDiagRecord* rf_AddImage(rzDiagObject* diag, const rzPelBuffer_const<unsigned char>& image,
                          const std::string& name, bool copy) {
  if (!diag) return nullptr;
  rzDiagRecord* record = titledRecord(*diag, name);
  record->image(image, name, copy);
  return record;
}

rzDiagRecord* rf_AddText(rzDiagObject* diag, const std::string& text, const std::string& title) {
  if (!diag) return nullptr;
  rzDiagRecord* record = titledRecord(*diag, title);
  record->text(text, title);
  return record;
}

rzDiagRecord* rf_AddGraphics(rzDiagObject* diag, const rzGraphicList& list,
                             const std::string& title, rzLong coordinateSystem) {
  if (!diag) return nullptr;
  rzDiagRecord* record = titledRecord(*diag, title);
  record->graphics(list, coordinateSystem, title);
  return record;
}
