// SPDX-License-Identifier: Apache-2.0
#include "box_file.h"

#include <sstream>

#include "char_list.h"
#include "failure.h"
#include "input_file.h"

namespace glyphline {
namespace {

Box parseBox(const std::string& line, const std::string& where, rzLong width, rzLong height) {
  std::istringstream fields(line);
  std::string character;
  rzLong left = 0;
  rzLong bottom = 0;
  rzLong right = 0;
  rzLong top = 0;
  rzLong page = 0;
  std::string rest;
  if (!(fields >> character >> left >> bottom >> right >> top >> page) || fields >> rest) {
    throw Failure(where + ": not a box (<char> <left> <bottom> <right> <top> <page>)");
  }
  const std::u32string text = codePointsOf(character, where);
  if (text.size() != 1) throw Failure(where + ": \"" + character + "\" is not one character");
  if (page != 0) throw Failure(where + ": only page 0 is read");
  if (left < 0 || bottom < 0 || right > width || top > height) {
    throw Failure(where + ": the box leaves the picture of " + std::to_string(width) + "x" +
                  std::to_string(height) + " pels");
  }
  if (left >= right || bottom >= top) throw Failure(where + ": the box is empty");
  return {text.front(), rzPelRect(left, height - top, right - left, top - bottom)};
}

}  // namespace

std::vector<Box> parseBoxes(std::istream& in, const std::string& name, rzLong width,
                            rzLong height) {
  std::vector<Box> boxes;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    boxes.push_back(
        parseBox(line, name + ":" + std::to_string(number) + ": --boxes", width, height));
  }
  if (boxes.empty()) throw Failure(name + ": --boxes: holds no box");
  return boxes;
}

std::vector<Box> readBoxes(const std::string& path, rzLong width, rzLong height) {
  std::istringstream content(readInput(path, "--boxes"));
  return parseBoxes(content, path, width, height);
}

}  // namespace glyphline
