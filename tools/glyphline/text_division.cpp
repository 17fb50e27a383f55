// SPDX-License-Identifier: Apache-2.0
#include "text_division.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "char_parts.h"

namespace glyphline {
namespace {

constexpr int kImpossible = std::numeric_limits<int>::max();
constexpr std::size_t kMostParts = 12;  // blobs of one mark

rzRect around(const Print& print, std::size_t from, std::size_t to) {
  rzRect box = print.blobs[from].level;
  for (std::size_t i = from + 1; i < to; ++i) box = box.enclose(print.blobs[i].level);
  return box;
}

// Whether neighbouring stacks can be the parts of one character: close, and either side by side
// or, as the dot of a slanted i, above each other.
bool canBeParts(const Print& print, std::size_t from, std::size_t to, bool sideBySide) {
  constexpr double kWidest = 0.5;  // of the parts' height
  const double height = around(print, from, to).height();
  for (std::size_t s = print.stackOf[from]; s < print.stackOf[to - 1]; ++s) {
    const rzRect& a = print.stacks[s].level;
    const rzRect& b = print.stacks[s + 1].level;
    if (b.x() - a.ur().x() > kWidest * std::max(height, a.width())) return false;
    const bool shareRows = std::min(a.ll().y(), b.ll().y()) > std::max(a.y(), b.y());
    if (shareRows && !sideBySide) return false;
  }
  return true;
}

// Whether a mark of this extent can be the character, for which letters and digits are held
// against the print of their line. The print of the tallest line is the measure for small ones:
// there may be lines of dashes.
bool canBe(char32_t character, const rzRect& box, double lineHeight, double tallest) {
  constexpr double kLeastOfLetter = 0.45;
  constexpr double kMostOfSmall = 0.65;
  constexpr double kWidestDigit = 1.5;  // of its height
  constexpr double kWidestLetter = 2.2;
  if (isSmall(character)) return box.height() <= kMostOfSmall * tallest;
  if (!isLetterOrDigit(character)) return true;
  const bool isDigit = character >= U'0' && character <= U'9';
  const double widest = isDigit ? kWidestDigit : kWidestLetter;
  return box.height() >= kLeastOfLetter * lineHeight && box.width() <= widest * box.height();
}

// Whether these parts of a mark stand beside its other parts, not above or below all of them: only
// marks that lean over each other come apart, not a colon or an i.
bool standBeside(const Print& print, const Stack& stack, std::size_t from, std::size_t to) {
  const rzRect own = around(print, from, to);
  for (std::size_t i = stack.first; i < stack.first + stack.count; ++i) {
    const rzRect& other = print.blobs[i].level;
    const bool isOwn = i >= from && i < to;
    if (!isOwn && std::min(own.ll().y(), other.ll().y()) > std::max(own.y(), other.y()))
      return true;
  }
  return false;
}

// What it costs to take the blobs from `from` up to before `to` for this character: nothing for a
// mark of as many parts as expected.
int costOf(const Print& print, double tallest, std::size_t from, std::size_t to,
           char32_t character) {
  constexpr int kOtherPartCount = 8;
  constexpr int kSeveralMarks = 3;
  constexpr int kPartOfMark = 5;
  if (print.lineOf[from] != print.lineOf[to - 1]) return kImpossible;
  const Stack& first = print.stacks[print.stackOf[from]];
  const Stack& last = print.stacks[print.stackOf[to - 1]];
  if (!canBe(character, around(print, from, to), first.lineHeight, tallest)) return kImpossible;
  const CharParts parts = partsOf(character);
  const auto count = static_cast<int>(to - from);
  const bool isWhole = first.first == from && last.first + last.count == to;
  const bool isOneStack = print.stackOf[from] == print.stackOf[to - 1];
  if (isWhole && isOneStack) return kOtherPartCount * std::abs(count - parts.count);
  if (isOneStack) {
    const bool canPart = count == parts.count && standBeside(print, first, from, to);
    return canPart ? kPartOfMark : kImpossible;
  }
  if (count > parts.count || (!isWhole && count < parts.count)) return kImpossible;
  if (!canBeParts(print, from, to, parts.sideBySide)) return kImpossible;
  return kSeveralMarks + (isWhole ? 0 : kPartOfMark);
}

}  // namespace

std::optional<std::vector<std::size_t>> division(const Print& print, const Row& row) {
  const std::size_t n = print.blobs.size();
  const std::size_t m = row.size();
  if (n < m) return std::nullopt;
  const std::size_t width = n + 1;
  double tallest = 0.0;
  for (const Stack& stack : print.stacks) tallest = std::max(tallest, stack.lineHeight);
  std::vector<int> cost((m + 1) * width, kImpossible);
  std::vector<std::size_t> start((m + 1) * width, 0);
  cost[0] = 0;
  for (std::size_t c = 0; c < m; ++c) {
    for (std::size_t from = 0; from < n; ++from) {
      const int before = cost[c * width + from];
      if (before == kImpossible) continue;
      for (std::size_t to = from + 1; to <= std::min(n, from + kMostParts); ++to) {
        const int own = costOf(print, tallest, from, to, row[c].character);
        int& known = cost[(c + 1) * width + to];
        if (own == kImpossible || before + own >= known) continue;
        known = before + own;
        start[(c + 1) * width + to] = from;
      }
    }
  }
  if (cost[m * width + n] == kImpossible) return std::nullopt;
  std::vector<std::size_t> ends(m, n);
  for (std::size_t c = m; c > 1; --c) ends[c - 2] = start[c * width + ends[c - 1]];
  return ends;
}

}  // namespace glyphline
