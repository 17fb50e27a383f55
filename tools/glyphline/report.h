// SPDX-License-Identifier: Apache-2.0
//
// What the command says of one picture, as plain values: made from the library's results once,
// then written as a table, as JSON, or drawn.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "line_shape.h"
#include "oc/oc.h"

namespace glyphline {

/// Where a character stands: pels of the picture, degrees from the x axis towards the y axis.
struct Place {
  rzVector<2> origin;
  double angle = 0.0;  // above -180, up to 180
  double scale = 1.0;
  rzVector<2> center;              // of the trained area
  std::array<rzVector<2>, 4> box;  // the trained area's upper left, upper right, lower right, lower
                                   // left corner
};

/// The place of a character whose pose in the picture is `pose`.
Place placeOf(const rzOCModel& model, const rzXform<2>& pose);

/// How far a place may be off, either way.
struct Uncertainty {
  double translation = 0.0;  // pels
  double angle = 0.0;        // degrees
  double scale = 0.0;        // share of the scale
};

struct PositionReport {
  rzLong key = 0;
  std::string character;
  bool isBlank = false;
  rzOCArrangeDefs::CharStatus status = rzOCArrangeDefs::eUnknown;
  double score = 0.0;
  rzLong line = 0;
  std::optional<Place> place;  // none for an unknown position
  std::optional<Uncertainty> uncertainty;
};

struct LineReport {
  LineShape shape;  // of its matched characters
  std::vector<rzLong> positions;
  std::optional<Place> pose;  // that of its first position
};

struct ArrangeReport {
  std::string image;
  bool isFound = false;
  bool isTruncated = false;
  rzLong matched = 0;   // positions that are not blank
  rzLong expected = 0;  // the same, all of them
  std::vector<LineReport> lines;
  std::vector<PositionReport> positions;
  double milliseconds = 0.0;

  bool passes() const { return matched == expected; }
};

/// What was looked for, and where.
struct ArrangeRequest {
  std::string image;
  const rzOCAlphabet& alphabet;
  const std::vector<rzLong>& keys;
  bool wantsUncertainties = false;
};

/// The report of an arrangement in a picture whose client coordinates are its pels. `milliseconds`
/// is what the library's call took.
ArrangeReport reportOf(const ArrangeRequest& request, const rzOCArrangeResults& results,
                       double milliseconds);

struct FoundInstance {
  double score = 0.0;
  Place place;
};

struct FoundCharacter {
  rzLong key = 0;
  std::string character;
  rz_OCExtractDefs::Symmetry symmetry = rz_OCExtractDefs::eNoSymmetry;
  std::string obstacle;  // why it is not searched; empty when it is
  std::vector<FoundInstance> instances;
  double milliseconds = 0.0;
};

struct FindReport {
  std::string image;
  std::vector<FoundCharacter> characters;
  double trainMilliseconds = 0.0;
  double searchMilliseconds = 0.0;
  bool isComplete = true;

  bool passes() const;
};

const char* nameOf(rzOCArrangeDefs::CharStatus status);
const char* nameOf(rz_OCExtractDefs::Symmetry symmetry);

}  // namespace glyphline
