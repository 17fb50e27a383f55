// SPDX-License-Identifier: Apache-2.0
#include "box_train.h"

#include <algorithm>

#include "base_line.h"
#include "cut_out.h"
#include "likeness.h"

namespace glyphline {
namespace {

constexpr double kWidestSpacing = 0.6;  // of the print's height

/// All prints of one character.
struct Prints {
  char32_t character = 0;
  std::vector<TrainedChar> prints;
};

// Each box's distance of the base line from the top of the picture, at the box's middle.
std::vector<double> baseLines(const std::vector<rzPelRect>& boxes) {
  std::vector<double> heights(boxes.size(), 0.0);
  for (const std::vector<std::size_t>& line : printedLines(boxes)) {
    std::vector<rzPelRect> members;
    for (const std::size_t i : line) members.push_back(boxes[i]);
    const BaseLine base = fitBaseLine(members);
    for (const std::size_t i : line) {
      heights[i] = base.at(boxes[i].x() + 0.5 * boxes[i].width());
    }
  }
  return heights;
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
  std::vector<rzPelRect> inks;
  for (const Box& box : boxed.boxes) {
    cuts.push_back(cutOut(boxed.picture, box.rect, training.margin, training.polarity));
    inks.push_back(cuts.back().ink);
  }
  const std::vector<double> heights = baseLines(inks);
  for (std::size_t i = 0; i < cuts.size(); ++i) {
    TrainedChar trained;
    trained.character = boxed.boxes[i].character;
    trained.image = cuts[i].image;
    trained.area = cuts[i].image.window();
    trained.origin = rzVector<2>(0.5 * trained.area.width(),
                                 heights[i] - inks[i].y() + training.margin);
    trained.source = boxed.name;
    printsOf(all, trained.character).prints.push_back(trained);
  }
}

const TrainedChar& typicalOf(const Prints& prints) {
  std::vector<rzPelBuffer<unsigned char>> images;
  for (const TrainedChar& print : prints.prints) images.push_back(print.image);
  return prints.prints[mostTypical(images)];
}

}  // namespace

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
    std::vector<rzPelRect> rects;
    for (const Box& box : boxed.boxes) rects.push_back(box.rect);
    for (const rzPelRect& rect : rects) heights.push_back(rect.height());
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
