// SPDX-License-Identifier: Apache-2.0
//
// Where the characters of a line should stand. The first and the last matched character stay where
// they are; those between, matched or not, are spread so that the free space between neighbouring
// boxes is the same everywhere. Boxes count in model units: a character's scale does not enter.
#pragma once

#include <vector>

#include "oc/arrange/arrange_records.h"
#include "rz/angle.h"
#include "rz/circle.h"
#include "rz/line.h"
#include "rz/types.h"
#include "rz/vector.h"

/// How far the box of a character, turned by some rotation, reaches along x and along y.
struct rz_BoxExtent {
  double width;
  double height;
};
rz_BoxExtent rf_BoxExtent(const rz_CharData& character, const rzRadian& rotation);

// In both layouts `points` and `angles` are those of the matched positions of the line; `average`
// is the line's average orientation, measured against the line if `isRelative`, else in the client
// frame; `choices` are those of the whole path; `first` and `last` are the positions, both
// included, of the first and the last matched character, and must differ. `coords` gets one
// coordinate for each position from `first` to `last`.

/// Coordinates along `line`, as rzLine::offset gives them.
void rf_LayOutStraightLine(const rzLine& line, const std::vector<rzVector<2>>& points,
                           const std::vector<rzRadian>& angles, bool isRelative,
                           const rzRadian& average, const std::vector<rz_CharData>& charData,
                           const std::vector<rzLong>& choices, rzLong first, rzLong last,
                           std::vector<double>& coords);

/// Directions from the centre of `circle` in radians, from `startAngle` through `sweep`, not
/// brought into a turn. The radius must be above 0.
void rf_LayOutCircularLine(const rzCircle& circle, const rzRadian& startAngle,
                           const rzRadian& sweep, const std::vector<rzVector<2>>& points,
                           const std::vector<rzRadian>& angles, bool isRelative,
                           const rzRadian& average, const std::vector<rz_CharData>& charData,
                           const std::vector<rzLong>& choices, rzLong first, rzLong last,
                           std::vector<double>& coords);
