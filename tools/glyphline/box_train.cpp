// SPDX-License-Identifier: Apache-2.0
#include "box_train.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "base_line.h"
#include "cut_out.h"
#include "likeness.h"

namespace glyphline {
namespace {

constexpr double kWidestSpacing = 0.6;     // of the print's height
constexpr std::size_t kMostCompared = 60;  // prints of one character; each is compared with each

/// All prints of one character.
struct Prints {
  char32_t character = 0;
  std::vector<TrainedChar> prints;
};

// Characters that in most faces do not stand on the base line: they hang below it or float above.
bool stands(char32_t character) {
  constexpr std::u32string_view kNotStanding =
      U"gjpqyJQ,;()[]{}|/"
      U"\\@$_'\"`^~*+-=<>\u00B0\u00B5\u00DF\u00E7\u2013\u2014\u2018\u2019\u201C\u201D";
  return kNotStanding.find(character) == std::u32string_view::npos;
}

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

Prints& printsOf(std::vector<Prints>& all, char32_t character) {
  const auto known = std::find_if(all.begin(), all.end(), [character](const Prints& prints) {
    return prints.character == character;
  });
  if (known != all.end()) return *known;
  all.push_back({character, {}});
  return all.back();
}

void addPicture(const BoxedPicture& boxed, const BoxTraining& training, std::vector<Prints>& all) {
  std::vector<CutOut> cuts;
  std::vector<rzRect> inks;
  for (const Box& box : boxed.boxes) {
    cuts.push_back(cutOut(boxed.picture, box.rect, training.margin, boxed.polarity));
    inks.push_back(cuts.back().ink);
  }
  const std::vector<double> depths = baseLines(inks, boxed.boxes);
  for (std::size_t i = 0; i < cuts.size(); ++i) {
    TrainedChar trained;
    trained.character = boxed.boxes[i].character;
    trained.image = cuts[i].image;
    trained.area = cuts[i].image.window();
    trained.origin = rzVector<2>(0.5 * trained.area.width(), depths[i] - cuts[i].corner.y());
    trained.source = std::filesystem::path(boxed.name).filename().string();
    printsOf(all, trained.character).prints.push_back(trained);
  }
}

// How far the base line runs above the lower side of the trained area.
double rise(const TrainedChar& print) { return print.area.height() - print.origin.y(); }

// The most typical print. Its base line is the usual one of all prints, which is surer than the one
// of its own line where paper is warped.
TrainedChar typicalOf(const Prints& prints) {
  std::vector<rzPelBuffer<unsigned char>> images;
  std::vector<double> rises;
  for (const TrainedChar& print : prints.prints) {
    if (images.size() < kMostCompared) images.push_back(print.image);
    rises.push_back(rise(print));
  }
  const std::size_t chosen = mostTypical(images);
  TrainedChar typical = prints.prints[chosen];
  if (rises.size() > 1) {
    typical.source += ", print " + std::to_string(chosen + 1) + " of " +
                      std::to_string(rises.size()) + " of this character";
  }
  typical.origin.y(typical.area.height() - medianOf(rises));
  return typical;
}

}  // namespace

std::vector<double> baseLines(const std::vector<rzRect>& inks, const std::vector<Box>& boxes) {
  std::vector<double> depths(inks.size(), 0.0);
  for (const std::vector<std::size_t>& line : printedLines(inks)) {
    std::vector<rzRect> members;
    for (const std::size_t i : line) {
      if (stands(boxes[i].character)) members.push_back(inks[i]);
    }
    if (members.empty()) {
      for (const std::size_t i : line) members.push_back(inks[i]);
    }
    const BaseLine base = fitBaseLine(members);
    for (const std::size_t i : line) depths[i] = base.at(inks[i].center().x());
  }
  return depths;
}

std::vector<TrainedChar> trainFromBoxes(const BoxTraining& training) {
  std::vector<Prints> all;
  for (const BoxedPicture& boxed : training.pictures) addPicture(boxed, training, all);
  std::vector<TrainedChar> trained;
  for (const Prints& prints : all) trained.push_back(typicalOf(prints));
  return trained;
}

BlankFrame blankFrameOf(const BoxTraining& training) {
  std::vector<double> heights;
  std::vector<double> gaps;
  for (const BoxedPicture& boxed : training.pictures) {
    std::vector<rzRect> rects;
    for (const Box& box : boxed.boxes) rects.emplace_back(box.rect);
    for (const rzRect& rect : rects) heights.push_back(rect.height());
    for (const std::vector<std::size_t>& line : printedLines(rects)) {
      for (std::size_t k = 1; k < line.size(); ++k) {
        gaps.push_back(rects[line[k]].x() - rects[line[k - 1]].ur().x());
      }
    }
  }
  BlankFrame frame;
  frame.margin = training.margin;
  frame.height = static_cast<rzLong>(medianOf(heights));
  // A wide gap is a blank or a picture of single characters, not the spacing of print.
  std::erase_if(gaps, [&](double gap) { return gap > kWidestSpacing * frame.height; });
  frame.spacing = gaps.empty() ? 0.0 : std::max(0.0, medianOf(gaps));
  return frame;
}

}  // namespace glyphline
