// SPDX-License-Identifier: Apache-2.0
#include "text_train.h"

#include <algorithm>
#include <iomanip>

#include "char_list.h"
#include "failure.h"
#include "oc/mark_rect.h"
#include "picture.h"
#include "rz/pel_functions.h"
#include "rz/text.h"

namespace glyphline {
namespace {

constexpr rzLong kRim = 2;  // pels around a mark's pieces in which its paler rim may lie

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// All pels of the area but those of other marks' ink and their rim.
rzPelBuffer<unsigned char> ownPels(const InkPieces& ink, const Mark& mark, const rzPelRect& area) {
  rzPelBuffer<unsigned char> mask(area, 32);
  rfPelSet(mask, 255);
  const auto isForeign = [&](rzLong x, rzLong y) {
    const int piece = ink.at(x, y);
    return piece != InkPieces::kNone &&
           std::find(mark.pieces.begin(), mark.pieces.end(), piece) == mark.pieces.end();
  };
  const rzPelRect seen = area.trim(-1, -1, -1, -1).intersect(ink.window);
  for (rzLong y = seen.y(); y < seen.ll().y(); ++y) {
    for (rzLong x = seen.x(); x < seen.ur().x(); ++x) {
      if (!isForeign(x, y)) continue;
      const rzPelRect rim = rzPelRect(x - 1, y - 1, 3, 3).intersect(area);
      for (rzLong v = rim.y(); v < rim.ll().y(); ++v) {
        for (rzLong u = rim.x(); u < rim.ur().x(); ++u) {
          if (ink.at(u, v) == InkPieces::kNone || isForeign(u, v)) *mask.pointToPel(u, v) = 0;
        }
      }
    }
  }
  return mask;
}

// The mark's box with the greys around it divided anew: sharper than by one level for all the
// picture. Never less than the box of its pieces.
rzPelRect sharpBox(const rzPelBuffer<unsigned char>& picture, const InkPieces& ink,
                   const Mark& mark) {
  const rzPelRect area = mark.box.trim(-kRim, -kRim, -kRim, -kRim).intersect(ink.window);
  const rzPelBuffer<unsigned char> mask = ownPels(ink, mark, area);
  const auto polarity = ink.isLight ? rzOCDefs::eLightOnDark : rzOCDefs::eDarkOnLight;
  rzRect found;
  if (!rf_DetectMarkRect_(picture, area, mask, false, polarity, found)) return mark.box;
  const rzPelRect box(static_cast<rzLong>(found.x()), static_cast<rzLong>(found.y()),
                      static_cast<rzLong>(found.width()), static_cast<rzLong>(found.height()));
  return box.enclose(mark.box);
}

std::size_t numPiecesOf(const std::vector<Mark>& marks) {
  std::size_t count = 0;
  for (const Mark& mark : marks) count += mark.pieces.size();
  return count;
}

// Of each two neighbours with spaces between them in the text: the room between the two, beyond
// the usual room between neighbours, for one space.
std::vector<double> blankWidths(const std::vector<Mark>& marks) {
  std::vector<double> spacings;
  std::vector<std::pair<double, double>> spaces;  // room, and how many spaces are in it
  for (std::size_t i = 1; i < marks.size(); ++i) {
    if (marks[i].line != marks[i - 1].line) continue;
    const double room = marks[i].box.x() - marks[i - 1].box.ur().x();
    const auto apart = static_cast<double>(marks[i].place - marks[i - 1].place);
    if (apart > 1) {
      spaces.emplace_back(room, apart - 1);
    } else {
      spacings.push_back(room);
    }
  }
  const double spacing = spacings.empty() ? 0.0 : medianOf(std::move(spacings));
  std::vector<double> widths;
  for (const auto& [room, count] : spaces) {
    if (room > spacing) widths.push_back((room - spacing) / count);
  }
  return widths;
}

}  // namespace

std::u32string textOfOption(const std::string& text, const std::string& where) {
  const std::u32string given = codePointsOf(text, where);
  std::u32string result;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const char32_t next = i + 1 < given.size() ? given[i + 1] : U'\0';
    const bool isEscape = given[i] == U'\\' && (next == U'n' || next == U'\\');
    result.push_back(!isEscape ? given[i] : next == U'n' ? U'\n' : U'\\');
    if (isEscape) ++i;
  }
  return result;
}

TextPicture readTextPicture(const std::string& path, const std::string& text, Polarity polarity) {
  TextPicture read;
  read.boxed.name = path;
  read.boxed.picture = readPicture(path, "--image");
  const InkPieces ink = findInkPieces(read.boxed.picture, polarity);
  read.boxed.polarity = ink.isLight ? Polarity::kLight : Polarity::kDark;
  read.marks = marksOfText(ink, textOfOption(text, "--text"), path);
  read.blankWidths = blankWidths(read.marks);
  for (Mark& mark : read.marks) {
    mark.box = sharpBox(read.boxed.picture, ink, mark);
    read.boxed.boxes.push_back({mark.character, mark.box});
  }
  read.numLeftOut = ink.pieces.size() - numPiecesOf(read.marks);
  return read;
}

void printMarks(const TextPicture& picture, std::ostream& out) {
  std::vector<rzRect> inks;
  for (const Mark& mark : picture.marks) inks.emplace_back(mark.box);
  const std::vector<double> depths = baseLines(inks, picture.boxed.boxes);
  out << picture.boxed.name << '\n' << "char  line  left   top  width  height  base line\n";
  for (std::size_t i = 0; i < picture.marks.size(); ++i) {
    const Mark& mark = picture.marks[i];
    // A code point may take several bytes, so that a field width would not do.
    out << utf8Of(mark.character) << std::setw(9) << mark.line + 1 << std::setw(6) << mark.box.x()
        << std::setw(6) << mark.box.y() << std::setw(7) << mark.box.width() << std::setw(8)
        << mark.box.height() << std::setw(11) << rfDbl(depths[i], 1, false) << '\n';
  }
}

double blankWidthOf(const std::vector<TextPicture>& pictures) {
  std::vector<double> widths;
  for (const TextPicture& picture : pictures) {
    widths.insert(widths.end(), picture.blankWidths.begin(), picture.blankWidths.end());
  }
  return widths.empty() ? 0.0 : medianOf(std::move(widths));
}

}  // namespace glyphline
