// SPDX-License-Identifier: Apache-2.0
#include "report.h"

#include <algorithm>

namespace glyphline {
namespace {

rzXform<2> posed(const rzXform<2>& rigid, double scale) {
  return rigid * rzXform<2>(rzMatrix<2>(scale, 0.0, 0.0, scale), rzVector<2>());
}

// Position k of a line, which is the next one of the text.
PositionReport positionOf(const ArrangeRequest& request, const rzOCArrangeResults& results,
                          const rzOCLine& line, const rzXform<2>& linePose, std::size_t i,
                          std::size_t k) {
  const rzOCModel& model = *request.alphabet.character(request.keys[i]);
  PositionReport position;
  position.key = request.keys[i];
  position.character = model.name();
  position.isBlank = model.charType() == rzOCModel::eBlank;
  position.status = results.statusFlags()[i];
  position.score = results.scores()[i];
  if (position.status == rzOCArrangeDefs::eUnknown) return position;
  position.place =
      placeOf(model, posed(linePose * line.charPoses()[k].linear(), line.charScales()[k]));
  if (request.wantsUncertainties) {
    position.uncertainty = {line.translationUncertainties()[k],
                            rzDegree(line.rotationUncertainties()[k]).toDouble(),
                            line.scaleUncertainties()[k]};
  }
  return position;
}

void addLine(ArrangeReport& report, const ArrangeRequest& request,
             const rzOCArrangeResults& results, std::size_t l) {
  const rzOCLine& line = *results.arrangement()->lines()[l];
  const rzXform<2> linePose =
      results.clientFromArrangementXform() * results.arrangement()->linePoses()[l].linear();
  LineReport lineReport;
  std::vector<rzVector<2>> matched;
  for (std::size_t k = 0; k < line.charPoses().size(); ++k) {
    const std::size_t i = report.positions.size();
    PositionReport position = positionOf(request, results, line, linePose, i, k);
    position.line = static_cast<rzLong>(l);
    if (k == 0) lineReport.pose = position.place;
    if (position.status == rzOCArrangeDefs::eMatched) matched.push_back(position.place->origin);
    lineReport.positions.push_back(static_cast<rzLong>(i));
    report.positions.push_back(std::move(position));
  }
  lineReport.shape = shapeOf(matched);
  report.lines.push_back(std::move(lineReport));
}

}  // namespace

Place placeOf(const rzOCModel& model, const rzXform<2>& pose) {
  const rzXform<2> placed = pose * model.image().clientFromImageXform();
  const rzPelRect& area = model.imageArea();
  Place place;
  place.origin = pose.trans();
  place.angle = rzDegree(pose.xRot().signedNorm()).toDouble();
  place.scale = pose.xScale();
  place.box = {placed * rzVector<2>(area.ul()), placed * rzVector<2>(area.ur()),
               placed * rzVector<2>(area.lr()), placed * rzVector<2>(area.ll())};
  place.center = (place.box[0] + place.box[2]) * 0.5;
  return place;
}

ArrangeReport reportOf(const ArrangeRequest& request, const rzOCArrangeResults& results,
                       double milliseconds) {
  ArrangeReport report;
  report.image = request.image;
  report.isFound = results.isFound();
  report.isTruncated = results.isSearchTruncated();
  report.milliseconds = milliseconds;
  const rzOCLineArrangement& arrangement = *results.arrangement();
  for (std::size_t l = 0; l < arrangement.lines().size(); ++l) {
    addLine(report, request, results, l);
  }
  for (const PositionReport& position : report.positions) {
    if (position.isBlank) continue;
    ++report.expected;
    report.matched += position.status == rzOCArrangeDefs::eMatched ? 1 : 0;
  }
  return report;
}

bool FindReport::passes() const {
  return std::none_of(characters.begin(), characters.end(),
                      [](const FoundCharacter& found) { return found.instances.empty(); });
}

const char* nameOf(rzOCArrangeDefs::CharStatus status) {
  switch (status) {
    case rzOCArrangeDefs::eMatched:
      return "matched";
    case rzOCArrangeDefs::eInferred:
      return "inferred";
    default:
      return "unknown";
  }
}

const char* nameOf(rz_OCExtractDefs::Symmetry symmetry) {
  switch (symmetry) {
    case rz_OCExtractDefs::eRot180Symmetry:
      return "half-turn";
    case rz_OCExtractDefs::eAnyAngleSymmetry:
      return "any";
    default:
      return "none";
  }
}

}  // namespace glyphline
