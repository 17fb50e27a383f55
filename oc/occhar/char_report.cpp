// SPDX-License-Identifier: Apache-2.0
#include "oc/char_report.h"

#include <array>

#include "oc/char.h"
#include "rz/char_code.h"
#include "rz/diag.h"
#include "rz/graphics.h"
#include "rz/text.h"

namespace {

using Metrics = rzOCCharMetrics;

// One of the rectangles of a character, with its colour.
struct Drawn {
  Metrics::RectType type;
  rzColor color;
};

std::string nameText(const rzOCChar& character) {
  try {
    return "Name : " + character.name() + "\n";
  } catch (const rzCharCodeDefs::NotRepresentable&) {
    return "";
  }
}

rzGraphicList drawRects(const Metrics& metrics, const std::array<Drawn, 2>& rects) {
  rzGraphicList list;
  for (const auto& [type, color] : rects) {
    if (!metrics.isRectSpecified(type)) continue;
    list.append(new rzGraphicWithFill<rzRect, rzGenRect>(metrics.rect(type), color, false), true);
  }
  return list;
}

}  // namespace

rzDiagRecord* rf_AddOCChar(rzDiagObject* diag, const rzOCChar& character,
                           const std::string& label) {
  rzDiagRecord* record = rf_AddImage(diag, character.image(false), label, false);
  record->text(nameText(character) + rf_OCCharKeyText(character.key()) +
                   "Polarity : " + rfStr(static_cast<rzLong>(character.polarity())) + "\n",
               "Key");

  const rzGraphicList imageRects =
      drawRects(character.metrics(), {{{Metrics::eMarkRectImage, rzColor::greenColor()},
                                       {Metrics::eCellRectImage, rzColor::orangeColor()}}});
  const rzGraphicList clientRects =
      drawRects(character.metrics(), {{{Metrics::eMarkRect, rzColor::greenColor()},
                                       {Metrics::eCellRect, rzColor::orangeColor()}}});
  if (imageRects.items().size() < clientRects.items().size()) {
    record->graphics(clientRects, rzDiagDefs::eClientCoordinates, "rect(s)");
  } else {
    record->graphics(imageRects, rzDiagDefs::ePelCoordinates, "rect(s)");
  }
  return record;
}
