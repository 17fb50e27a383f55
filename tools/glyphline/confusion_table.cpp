// SPDX-License-Identifier: Apache-2.0
#include "confusion_table.h"

#include <algorithm>
#include <cmath>

namespace glyphline {
namespace {

constexpr std::size_t kLineWidth = 80;  // columns of a terminal that everybody has
constexpr std::size_t kCellWidth = 4;   // a blank and three digits

using Table = std::vector<std::vector<double>>;

// Columns of a terminal, each code point taken for one.
std::size_t widthOf(const std::string& text) {
  const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isFirstByte));
}

std::string rightAligned(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, widthOf(text)), ' ') + text;
}

// A dot for a pair that shares nothing, so that the others stand out.
std::string percent(double confusion) {
  const auto rounded = static_cast<int>(std::lround(100.0 * confusion));
  return rounded == 0 ? "." : std::to_string(rounded);
}

// One block: a head of the names from column `first` to before `end`, and a line for each row.
std::string blockText(const Table& table, const std::vector<std::string>& names,
                      std::size_t cellWidth, std::size_t first, std::size_t end) {
  std::string text(cellWidth, ' ');
  for (std::size_t column = first; column < end; ++column) {
    text += rightAligned(names[column], cellWidth);
  }
  text += '\n';
  for (std::size_t row = 0; row < table.size(); ++row) {
    text += rightAligned(names[row], cellWidth);
    for (std::size_t column = first; column < end; ++column) {
      text += rightAligned(row == column ? "-" : percent(table[row][column]), cellWidth);
    }
    text += '\n';
  }
  return text;
}

}  // namespace

std::vector<std::vector<double>> confusionTable(const rzOCAlphabet& alphabet) {
  Table table;
  if (!alphabet.isCompiled()) return table;
  for (const auto& a : alphabet.characters()) {
    table.emplace_back();
    for (const auto& b : alphabet.characters()) {
      table.back().push_back(alphabet.confusion(a->key(), b->key()));
    }
  }
  return table;
}

std::string confusionText(const rzOCAlphabet& alphabet) {
  const Table table = confusionTable(alphabet);
  if (table.empty()) return "";
  std::vector<std::string> names;
  std::size_t cellWidth = kCellWidth;
  for (const auto& model : alphabet.characters()) {
    names.push_back(shownName(model->name()));
    cellWidth = std::max(cellWidth, widthOf(names.back()) + 1);
  }
  const std::size_t perBlock = std::max<std::size_t>(kLineWidth / cellWidth, 2) - 1;
  std::string text = "confusions, % (how far the row's character can pass for the column's):\n";
  for (std::size_t first = 0; first < names.size(); first += perBlock) {
    text += first == 0 ? "" : "\n";
    text += blockText(table, names, cellWidth, first, std::min(first + perBlock, names.size()));
  }
  return text;
}

std::string shownName(const std::string& name) { return name == " " ? "␣" : name; }

}  // namespace glyphline
