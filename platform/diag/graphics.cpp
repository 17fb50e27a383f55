// SPDX-License-Identifier: Apache-2.0
#include "rz/graphics.h"

rzGraphic::~rzGraphic() = default;
rzGraphicPointIcon::~rzGraphicPointIcon() = default;

void rzGraphicList::append(const rzPtrHandle_const<rzGraphic>& graphic, bool) {
  if (graphic.isNull()) rf_ThrowBadPointer();
  items_.push_back(graphic);
}
