// SPDX-License-Identifier: Apache-2.0
#include "report_table.h"

#include "rz/text.h"

namespace glyphline {
namespace {

std::string padded(const std::string& text, std::size_t width) {
  return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

std::string number(double value, rzLong places, std::size_t width) {
  return padded(rfDbl(value, places, false), width);
}

std::string shown(const std::string& character) { return character == " " ? "␣" : character; }

void writePlace(std::ostream& out, const Place& place) {
  out << number(place.center.x(), 2, 9) << number(place.center.y(), 2, 9)
      << number(place.angle, 2, 9) << number(place.scale, 3, 8);
}

void writePosition(std::ostream& out, const PositionReport& position, std::size_t index) {
  out << padded(std::to_string(index), 5) << "   " << shown(position.character) << "   ";
  const std::string status =
      position.isBlank && !position.place ? "blank" : nameOf(position.status);
  out << status << std::string(10 - status.size(), ' ');
  const bool isMatched = position.status == rzOCArrangeDefs::eMatched;
  out << (isMatched ? number(position.score, 2, 5) : "    -");
  if (position.place) writePlace(out, *position.place);
  out << '\n';
}

}  // namespace

void writeTable(std::ostream& out, const ArrangeReport& report) {
  out << report.image << ": " << (report.passes() ? "pass" : "fail") << ", " << report.matched
      << " of " << report.expected << " matched, " << report.lines.size()
      << (report.lines.size() == 1 ? " line, " : " lines, ") << rfDbl(report.milliseconds, 1, false)
      << " ms" << (report.isTruncated ? ", search cut short" : "") << '\n';
  out << "    #  char status    score        x        y    angle   scale\n";
  for (std::size_t l = 0; l < report.lines.size(); ++l) {
    const LineReport& line = report.lines[l];
    out << "line " << l << (line.shape.isCircular ? ", circular\n" : "\n");
    for (const rzLong i : line.positions) {
      const auto index = static_cast<std::size_t>(i);
      writePosition(out, report.positions[index], index);
    }
  }
}

void writeTable(std::ostream& out, const FindReport& report) {
  out << report.image << ": training " << rfDbl(report.trainMilliseconds, 1, false)
      << " ms, search " << rfDbl(report.searchMilliseconds, 1, false) << " ms"
      << (report.isComplete ? "" : ", cut short") << '\n';
  out << " char  score        x        y    angle   scale\n";
  for (const FoundCharacter& found : report.characters) {
    if (!found.obstacle.empty()) {
      out << "  " << shown(found.character) << "    not searched: " << found.obstacle << '\n';
    } else if (found.instances.empty()) {
      out << "  " << shown(found.character) << "    not found\n";
    }
    for (const FoundInstance& instance : found.instances) {
      out << "  " << shown(found.character) << "  " << number(instance.score, 2, 7);
      writePlace(out, instance.place);
      out << '\n';
    }
  }
}

}  // namespace glyphline
