// SPDX-License-Identifier: Apache-2.0
//
// The shape of one line of text: a straight line or a circle through the places of its characters,
// and the average of their orientations. A fit answers false when the characters do not run along
// the shape in the order of the text; its outputs are then of no use.
#pragma once

#include <vector>

#include "oc/extract_defs.h"
#include "rz/angle.h"
#include "rz/circle.h"
#include "rz/line.h"
#include "rz/vector.h"

/// The straight line through the points, directed from the first to the last. False when it does
/// not exist or does not meet the points one after the other.
bool rf_FitStraightLine(const std::vector<rzVector<2>>& points, rzLine& line);

/// The circle through the points, the direction of each point from its centre, and the signed turn
/// from the first point to the last. False when there is no such circle, when the points do not
/// follow each other round it by less than half a turn each and less than a turn in all, and for
/// an arc of less than 5 degrees, which is left to the straight fit.
bool rf_FitCircularLine(const std::vector<rzVector<2>>& points, rzCircle& circle,
                        std::vector<rzRadian>& pointAngles, rzRadian& sweep);

/// The average orientation of characters. One that looks the same after half a turn counts either
/// way, whichever agrees better with those before it; one that looks the same at any angle does not
/// count. 0 when none counts.
rzRadian rf_AverageOrientation(const std::vector<rzRadian>& angles,
                               const std::vector<rz_OCExtractDefs::Symmetry>& symmetries);
