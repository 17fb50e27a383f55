// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/arrange_records.h"

void rz_CharData::imageArea(const rzAffineRectangle& area) {
  imageArea_ = area;
  diagonalA_ = area.cornerPx() - area.cornerPy();
  diagonalB_ = area.cornerPx() + area.cornerPy() - 2.0 * area.cornerPo();
}

void rz_ArrangePath::append(rzLong choice, bool startsLine) {
  if (startsLine) lineStarts.push_back(size());
  choices.push_back(choice);
}

void rz_ArrangePath::removeLast() {
  if (lineStarts.back() == size() - 1) lineStarts.pop_back();
  choices.pop_back();
}

double rz_CostTerms::total() const {
  return matchCost + unmatchedCost + breakCost + normalCost + tangentialCost + rotationCost +
         logScaleCost + spacingCost;
}
