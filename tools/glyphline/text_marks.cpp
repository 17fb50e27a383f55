// SPDX-License-Identifier: Apache-2.0
#include "text_marks.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "char_list.h"
#include "failure.h"
#include "text_division.h"

namespace glyphline {
namespace {

/// What is tried: how far apart pieces of one blob may be, in pels, and what is dirt, as a share of
/// the print's height.
struct Attempt {
  rzLong reach = 0;
  double dirt = 0.0;
};

bool isBlank(char32_t c) { return c == U' ' || c == U'\t' || c == U'\u00A0' || c == U'\u3000'; }

// The text's lines without blanks; lines of blanks alone are none.
std::vector<Row> rowsOf(const std::u32string& text) {
  std::vector<Row> rows(1);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == U'\n') {
      rows.emplace_back();
    } else if (!isBlank(text[i]) && text[i] != U'\r') {
      rows.back().push_back({text[i], i});
    }
  }
  std::erase_if(rows, [](const Row& row) { return row.empty(); });
  return rows;
}

void addMarks(const Print& print, const Row& row, const std::vector<std::size_t>& ends,
              std::vector<Mark>& marks) {
  std::size_t from = 0;
  for (std::size_t c = 0; c < row.size(); ++c) {
    Mark mark;
    mark.character = row[c].character;
    mark.place = row[c].place;
    mark.line = print.lineOf[from];
    mark.box = print.blobs[from].box;
    for (; from < ends[c]; ++from) {
      const Blob& blob = print.blobs[from];
      mark.box = mark.box.enclose(blob.box);
      mark.pieces.insert(mark.pieces.end(), blob.pieces.begin(), blob.pieces.end());
    }
    marks.push_back(std::move(mark));
  }
}

// --- The whole text ------------------------------------------------------------------------------

/// What came of an attempt: the marks, or what does not fit.
struct Outcome {
  std::vector<Mark> marks;
  std::string misfit;
  std::size_t numOff = 0;  // marks too many or too few
};

std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::size_t difference(std::size_t a, std::size_t b) { return a > b ? a - b : b - a; }

std::string textOf(const Row& row) {
  std::string text;
  for (const Expected& one : row) text += utf8Of(one.character);
  return text;
}

// The widest mark is the likeliest to be several that touch.
std::string widestOf(const Print& print) {
  const auto widest = std::max_element(
      print.stacks.begin(), print.stacks.end(),
      [](const Stack& a, const Stack& b) { return a.level.width() < b.level.width(); });
  rzPelRect box = print.blobs[widest->first].box;
  for (std::size_t i = 1; i < widest->count; ++i) {
    box = box.enclose(print.blobs[widest->first + i].box);
  }
  return "; the widest mark reaches from x " + std::to_string(box.x()) + " to " +
         std::to_string(box.ur().x()) + ", y " + std::to_string(box.y()) + " to " +
         std::to_string(box.ll().y());
}

std::string misfitOf(const Print& print, const Row& row, const std::string& where) {
  std::string text = where + counted(print.stacks.size(), "mark") + " for the " +
                     counted(row.size(), "character") + " \"" + textOf(row) + "\"";
  if (print.stacks.size() < row.size() && !print.stacks.empty()) text += widestOf(print);
  if (print.stacks.size() == row.size()) text += ", which they do not fit";
  return text;
}

std::string wholeTextPlace(const std::vector<BlobLine>& lines) {
  return lines.size() < 2 ? "" : "on " + counted(lines.size(), "line") + ": ";
}

// Adds the row's marks, or says what does not fit.
void read(const Print& print, const Row& row, const std::string& where, Outcome& outcome) {
  const auto ends = division(print, row);
  if (ends) {
    addMarks(print, row, *ends, outcome.marks);
    return;
  }
  outcome.numOff += std::max<std::size_t>(1, difference(print.stacks.size(), row.size()));
  if (outcome.misfit.empty()) outcome.misfit = misfitOf(print, row, where);
}

Outcome readLines(const std::vector<BlobLine>& lines, const std::vector<Row>& rows) {
  Outcome outcome;
  if (rows.size() == 1) {
    Print all;
    for (std::size_t i = 0; i < lines.size(); ++i) append(all, lines[i], i);
    read(all, rows.front(), wholeTextPlace(lines), outcome);
    return outcome;
  }
  if (lines.size() != rows.size()) {
    outcome.misfit = counted(lines.size(), "line") + " of marks for the " +
                     counted(rows.size(), "line") + " of the text";
    outcome.numOff = std::numeric_limits<std::size_t>::max();
    return outcome;
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Print print;
    append(print, lines[i], i);
    read(print, rows[i], "line " + std::to_string(i + 1) + ": ", outcome);
  }
  return outcome;
}

Outcome attempted(const InkPieces& ink, const std::vector<Row>& rows, const Attempt& attempt,
                  std::size_t numChars) {
  constexpr double kSpeck = 0.08;  // of the print's height; a full stop has an eighth
  std::vector<Blob> blobs = joinedPieces(ink.pieces, attempt.reach);
  const double height = printHeight(blobs, numChars);
  std::erase_if(blobs, [&](const Blob& blob) {
    return std::max(blob.box.width(), blob.box.height()) <= kSpeck * height;
  });
  std::vector<BlobLine> lines = linesOf(std::move(blobs), height);
  for (BlobLine& line : lines) dropLoneSpecks(line, attempt.dirt * height);
  std::erase_if(lines, [](const BlobLine& line) { return line.empty(); });
  return readLines(lines, rows);
}

// How far apart the dots of dot print may be, in growing order; none for solid print.
std::vector<rzLong> reachesOf(const InkPieces& ink, std::size_t numChars) {
  constexpr std::size_t kFewestDots = 3;  // for each character
  std::vector<rzLong> reaches;
  if (ink.pieces.size() < kFewestDots * numChars) return reaches;
  std::vector<rzLong> sizes;
  for (const InkPiece& piece : ink.pieces) sizes.push_back(piece.size());
  const auto middle = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
  std::nth_element(sizes.begin(), middle, sizes.end());
  for (const double share : {0.2, 0.35, 0.5, 0.7, 1.0, 1.4, 2.0}) {
    const auto reach = static_cast<rzLong>(std::ceil(share * *middle));
    if (reaches.empty() || reach > reaches.back()) reaches.push_back(reach);
  }
  return reaches;
}

}  // namespace

std::vector<Mark> marksOfText(const InkPieces& ink, const std::u32string& text,
                              const std::string& name) {
  constexpr std::size_t kMostPieces = 200;  // for each character: dots and dirt
  const std::vector<Row> rows = rowsOf(text);
  std::size_t numChars = 0;
  for (const Row& row : rows) numChars += row.size();
  if (numChars == 0) throw Failure(name + ": --text: the text has no character but blanks");
  if (ink.pieces.empty()) throw Failure(name + ": --text: the picture shows no marks");
  if (ink.pieces.size() > kMostPieces * (numChars + kMostPieces)) {
    throw Failure(name + ": --text: " + counted(ink.pieces.size(), "piece") + " of ink for " +
                  counted(numChars, "character"));
  }
  std::vector<rzLong> reaches{0};
  for (const rzLong reach : reachesOf(ink, numChars)) reaches.push_back(reach);
  Outcome nearest;
  nearest.numOff = std::numeric_limits<std::size_t>::max();
  for (const rzLong reach : reaches) {
    for (const double dirt : {0.0, 0.12}) {
      Outcome outcome = attempted(ink, rows, {reach, dirt}, numChars);
      if (outcome.misfit.empty()) return outcome.marks;
      if (nearest.misfit.empty() || outcome.numOff < nearest.numOff) nearest = outcome;
    }
  }
  throw Failure(name + ": --text: " + nearest.misfit);
}

}  // namespace glyphline
