// SPDX-License-Identifier: Apache-2.0
//
// glyphline train: make an alphabet.
#include <iostream>
#include <memory>

#include "alphabet_file.h"
#include "box_train.h"
#include "char_list.h"
#include "failure.h"
#include "font_train.h"
#include "oc/extract_model.h"
#include "options.h"
#include "picture.h"

namespace glyphline {
namespace {

constexpr double kConfusionThreshold = 0.5;
constexpr rzLong kMostMargin = 1000;    // pels
constexpr double kMostSize = 4000.0;    // pels of the em square
constexpr double kMostBlank = 30000.0;  // pels

struct TrainOptions {
  std::string font;
  double size = 0.0;
  std::string chars;
  std::vector<std::string> images;
  std::vector<std::string> boxes;
  std::string polarity = "auto";
  rzLong margin = 3;
  double blank = 0.0;
  std::string name;
  std::string add;
  std::string output;
  bool compile = false;
  Voice voice;
};

Polarity polarityOf(const std::string& text) {
  if (text == "dark") return Polarity::kDark;
  if (text == "light") return Polarity::kLight;
  return Polarity::kAuto;
}

void requireOneSource(const TrainOptions& options) {
  const bool fromFont = !options.font.empty();
  const bool fromBoxes = !options.images.empty() || !options.boxes.empty();
  if (fromFont == fromBoxes) {
    throw Failure("train: give either --font with --size and --chars, or --image with --boxes");
  }
  if (fromFont && (options.chars.empty() || options.size <= 0.0)) {
    throw Failure("train: --font needs --size and --chars");
  }
  if (fromBoxes && options.images.size() != options.boxes.size()) {
    throw Failure("train: every --image needs its --boxes");
  }
}

FontTraining fontTraining(const TrainOptions& options) {
  FontTraining training;
  training.file = options.font;
  training.size = options.size;
  training.chars = expandedChars(options.chars, "--chars");
  training.margin = options.margin;
  training.polarity = polarityOf(options.polarity);
  return training;
}

BoxTraining boxTraining(const TrainOptions& options) {
  BoxTraining training;
  training.margin = options.margin;
  training.polarity = polarityOf(options.polarity);
  for (std::size_t i = 0; i < options.images.size(); ++i) {
    BoxedPicture boxed;
    boxed.name = options.images[i];
    boxed.picture = readPicture(boxed.name, "--image");
    boxed.boxes = readBoxes(options.boxes[i], boxed.picture.width(), boxed.picture.height());
    training.pictures.push_back(std::move(boxed));
  }
  return training;
}

// Replaces the blank among the characters, or adds it.
void setBlank(std::vector<TrainedChar>& trained, double width, const BlankFrame& frame) {
  std::erase_if(trained, [](const TrainedChar& one) { return one.character == U' '; });
  trained.push_back(blankOf(U' ', width, frame, "--blank"));
}

std::vector<TrainedChar> trainedChars(const TrainOptions& options) {
  std::vector<TrainedChar> trained;
  BlankFrame frame;
  if (options.font.empty()) {
    const BoxTraining training = boxTraining(options);
    trained = trainFromBoxes(training);
    frame = blankFrameOf(training);
  } else {
    const FontTraining training = fontTraining(options);
    trained = trainFromFont(training);
    frame = blankFrameOf(training);
  }
  if (options.blank > 0.0) setBlank(trained, options.blank, frame);
  return trained;
}

rzOCAlphabet startingAlphabet(const TrainOptions& options) {
  if (!options.add.empty()) return readAlphabet(options.add, "--add");
  return rzOCAlphabet(std::vector<rzPtrHandle_const<rzOCModel>>{}, kConfusionThreshold, false,
                      options.name);
}

void extend(rzOCAlphabet& alphabet, const std::vector<TrainedChar>& trained,
            const TrainOptions& options) {
  for (const TrainedChar& one : trained) {
    if (alphabet.hasCharacter(static_cast<rzLong>(one.character))) {
      throw Failure(options.add + ": --add: the alphabet already has the character \"" +
                    utf8Of(one.character) + "\"");
    }
  }
  alphabet.add(modelsOf(trained), false);
  if (!options.name.empty()) alphabet.name(options.name);
}

void tellEach(const std::vector<TrainedChar>& trained) {
  for (const TrainedChar& one : trained) {
    std::cerr << utf8Of(one.character) << "  " << one.area.width() << "x" << one.area.height()
              << " pels, " << one.source << '\n';
  }
}

// Such characters are never matched: better known now than when the first picture fails.
void tellUnsearched(const std::vector<TrainedChar>& trained) {
  for (const TrainedChar& one : trained) {
    if (!one.image.isBound()) continue;
    const rz_OCExtractObstacle obstacle = rfOCExtractObstacle(*modelOf(one));
    if (obstacle == eNoObstacle) continue;
    std::cerr << "warning: \"" << utf8Of(one.character)
              << "\" will not be searched for: " << rfOCExtractObstacleText(obstacle) << '\n';
  }
}

int train(const TrainOptions& options) {
  requireOneSource(options);
  rzOCAlphabet alphabet = startingAlphabet(options);
  const std::vector<TrainedChar> trained = trainedChars(options);
  extend(alphabet, trained, options);
  if (options.compile) alphabet.compile(nullptr, 0);
  writeAlphabet(options.output, alphabet);
  if (options.voice.verbose) tellEach(trained);
  if (!options.voice.quiet) {
    std::cerr << options.output << ": " << alphabet.numChars() << " characters\n";
    tellUnsearched(trained);
  }
  return kAllMatched;
}

}  // namespace

void addTrain(CLI::App& app, Action& action) {
  auto options = std::make_shared<TrainOptions>();
  CLI::App& command = *app.add_subcommand("train", "Make an alphabet from a font or from pictures");
  command.add_option("--font", options->font, "Font file");
  command.add_option("--size", options->size, "Pels of the font's em square")
      ->check(CLI::Range(1.0, kMostSize));
  command.add_option("--chars", options->chars, "Characters, with ranges such as A-Z");
  command.add_option("--image", options->images, "Picture with print; may be repeated")
      ->expected(1)
      ->take_all();
  command.add_option("--boxes", options->boxes, "Box file of the picture before it")
      ->expected(1)
      ->take_all();
  command.add_option("--polarity", options->polarity, "dark, light, or auto (default)")
      ->check(CLI::IsMember({"dark", "light", "auto"}));
  command.add_option("--margin", options->margin, "Pels of background round the ink (default 3)")
      ->check(CLI::Range(0, kMostMargin));
  command.add_option("--blank", options->blank, "Width in pels of a space to add")
      ->check(CLI::Range(1.0, kMostBlank));
  command.add_option("--name", options->name, "The alphabet's name");
  command.add_option("--add", options->add, "Extend this alphabet");
  command.add_flag("--compile", options->compile, "Measure the confusions and store them");
  command.add_option("-o,--output", options->output, "Alphabet file to write")->required();
  addVoice(command, options->voice);
  command.footer(
      "Example:\n"
      "  glyphline train --font DejaVuSans-Bold.ttf --size 36 --chars 'A-Z0-9 ' -o label.oca\n"
      "  glyphline train --image print.png --boxes print.box --blank 12 -o print.oca");
  command.callback([options, &action] { action = [options] { return train(*options); }; });
}

}  // namespace glyphline
