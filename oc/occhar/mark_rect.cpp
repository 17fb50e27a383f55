// SPDX-License-Identifier: Apache-2.0
#include "oc/mark_rect.h"

#include <algorithm>
#include <cmath>

#include "oc/occhar/border_vote.h"
#include "oc/occhar/mark_corners.h"
#include "rz/threshold.h"

namespace {

using Image = rzPelBuffer_const<unsigned char>;

MarkTable markTable(rzOCDefs::Polarity polarity, rzLong threshold) {
  MarkTable table;
  const bool lightMarks = polarity == rzOCDefs::eLightOnDark;
  for (rzLong grey = 0; grey < 256; ++grey) {
    table[static_cast<std::size_t>(grey)] = (grey >= threshold) == lightMarks ? 1 : 0;
  }
  return table;
}

rzRect uprightRect(const rzVector<2>& a, const rzVector<2>& b) {
  return {std::min(a.x(), b.x()), std::min(a.y(), b.y()), std::fabs(a.x() - b.x()),
          std::fabs(a.y() - b.y())};
}

rzVector<2> clientPoint(const Image& image, const rzVector<2>& point) {
  return image.clientFromImageXformBase()->mapPoint(point);
}

}  // namespace

bool rf_DetectMarkRect_(const Image& image, const rzPelRect& imageArea, const Image& mask,
                        bool isBlank, rzOCDefs::Polarity polarity, rzRect& markRect) {
  markRect = rzRect();
  if (isBlank) return false;
  Image area = image;
  Image care = mask;
  area.window(imageArea, false);
  if (care.isBound()) care.window(imageArea, false);
  rzThresholdResult result;
  rfThresholdWGV(area, care, result);
  const rzPelRect& searched = area.window();
  rzOCDefs::Polarity effective = polarity;
  if (polarity == rzOCDefs::ePolarityUnknown && result.score() > 0.0) {
    effective = borderVote(area, care, searched, result.threshold());
  }
  if (effective == rzOCDefs::ePolarityUnknown) return false;
  const auto corners = markCorners(area, care, searched, markTable(effective, result.threshold()));
  if (!corners) return false;
  markRect =
      uprightRect(clientPoint(image, corners->lowerLeft), clientPoint(image, corners->upperRight));
  return true;
}

bool rf_computeOriginImageCenter_(const Image& image, const rzPelRect& imageArea, const Image&,
                                  rzVector<2>& origin) {
  origin = clientPoint(image, rzVector<2>(imageArea.x() + 0.5 * imageArea.width(),
                                          imageArea.y() + 0.5 * imageArea.height()));
  return true;
}

bool rf_computeOriginImageLowerLeft_(const Image& image, const rzPelRect& imageArea, const Image&,
                                     rzVector<2>& origin) {
  origin = clientPoint(image, imageArea.ll());
  return true;
}

bool rf_computeOriginDetectedMarkLowerLeft_(const Image& image, const rzPelRect& imageArea,
                                            const Image& mask, bool isBlank,
                                            bool hasDetectedMarkRect,
                                            const rzRect& detectedMarkRect,
                                            rzOCDefs::Polarity polarity, rzVector<2>& origin) {
  rzRect found = detectedMarkRect;
  bool isFound = false;
  if (image.isBound() && !isBlank) {
    isFound = hasDetectedMarkRect
                  ? !detectedMarkRect.degen()
                  : rf_DetectMarkRect_(image, imageArea, mask, isBlank, polarity, found);
  }
  if (isFound) {
    origin = found.ll();
  } else {
    rf_computeOriginImageLowerLeft_(image, imageArea, mask, origin);
  }
  return isFound;
}

bool rf_computeOriginSpecifiedMarkLowerLeft_(const Image& image, const rzPelRect& imageArea,
                                             const Image& mask, bool isBlank,
                                             bool isMarkRectSpecified, const rzRect& markRect,
                                             bool hasDetectedMarkRect,
                                             const rzRect& detectedMarkRect,
                                             rzOCDefs::Polarity polarity, rzVector<2>& origin) {
  if (image.isBound() && !isBlank && isMarkRectSpecified) {
    origin = markRect.ll();
    return true;
  }
  rf_computeOriginDetectedMarkLowerLeft_(image, imageArea, mask, isBlank, hasDetectedMarkRect,
                                         detectedMarkRect, polarity, origin);
  return false;
}
