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
#include "text_train.h"

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
  std::vector<std::string> texts;
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
  const bool fromBoxes = !options.boxes.empty();
  const bool fromTexts = !options.texts.empty();
  if (fromBoxes && fromTexts) throw Failure("train: give either --boxes or --text");
  if (fromFont == (fromBoxes || fromTexts || !options.images.empty())) {
    throw Failure(
        "train: give either --font with --size and --chars, or --image with --boxes or --text");
  }
  if (fromFont && (options.chars.empty() || options.size <= 0.0)) {
    throw Failure("train: --font needs --size and --chars");
  }
  const std::size_t numPartners = fromTexts ? options.texts.size() : options.boxes.size();
  if (!fromFont && options.images.size() != numPartners) {
    throw Failure(fromTexts ? "train: every --image needs its --text"
                            : "train: every --image needs its --boxes or --text");
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
  for (std::size_t i = 0; i < options.images.size(); ++i) {
    BoxedPicture boxed;
    boxed.name = options.images[i];
    boxed.picture = readPicture(boxed.name, "--image");
    boxed.polarity = polarityOf(options.polarity);
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

std::vector<TextPicture> textPictures(const TrainOptions& options) {
  std::vector<TextPicture> pictures;
  for (std::size_t i = 0; i < options.texts.size(); ++i) {
    pictures.push_back(
        readTextPicture(options.images[i], options.texts[i], polarityOf(options.polarity)));
  }
  return pictures;
}

void tellLeftOut(const TextPicture& picture) {
  if (picture.numLeftOut == 0) return;
  std::cerr << "warning: " << picture.boxed.name << ": left out as dirt: " << picture.numLeftOut
            << (picture.numLeftOut == 1 ? " speck\n" : " specks\n");
}

/// What the characters were trained from, for those who want to know.
struct Trained {
  std::vector<TrainedChar> chars;
  std::vector<TextPicture> pictures;  // with --text
};

Trained trainedFrom(const BoxTraining& training, double blank) {
  Trained trained{trainFromBoxes(training), {}};
  if (blank > 0.0) setBlank(trained.chars, blank, blankFrameOf(training));
  return trained;
}

Trained trainedFromTexts(const TrainOptions& options) {
  std::vector<TextPicture> pictures = textPictures(options);
  BoxTraining training;
  training.margin = options.margin;
  for (const TextPicture& picture : pictures) training.pictures.push_back(picture.boxed);
  const double blank = options.blank > 0.0 ? options.blank : blankWidthOf(pictures);
  Trained trained = trainedFrom(training, blank);
  trained.pictures = std::move(pictures);
  return trained;
}

Trained trainedFromFont(const TrainOptions& options) {
  const FontTraining training = fontTraining(options);
  Trained trained{trainFromFont(training), {}};
  if (options.blank > 0.0) setBlank(trained.chars, options.blank, blankFrameOf(training));
  return trained;
}

Trained trainedOf(const TrainOptions& options) {
  if (!options.font.empty()) return trainedFromFont(options);
  if (!options.texts.empty()) return trainedFromTexts(options);
  return trainedFrom(boxTraining(options), options.blank);
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
  const Trained trained = trainedOf(options);
  extend(alphabet, trained.chars, options);
  if (options.compile) alphabet.compile(nullptr, 0);
  writeAlphabet(options.output, alphabet);
  for (const TextPicture& picture : trained.pictures) printMarks(picture, std::cout);
  if (options.voice.verbose) tellEach(trained.chars);
  if (!options.voice.quiet) {
    for (const TextPicture& picture : trained.pictures) tellLeftOut(picture);
    std::cerr << options.output << ": " << alphabet.numChars() << " characters\n";
    tellUnsearched(trained.chars);
  }
  return kAllMatched;
}

}  // namespace

void addTrain(CLI::App& app, Action& action) {
  auto options = std::make_shared<TrainOptions>();
  CLI::App& command = *app.add_subcommand("train", "Make an alphabet from a font or from pictures");
  command.add_option("--font", options->font, "Font file");
  command.add_option("--size", options->size, "Pels of the font's em square")
      ->check(between(1.0, kMostSize));
  command.add_option("--chars", options->chars, "Characters, with ranges such as A-Z");
  command.add_option("--image", options->images, "Picture with print; may be repeated")
      ->expected(1)
      ->take_all();
  command.add_option("--boxes", options->boxes, "Box file of the picture before it")
      ->expected(1)
      ->take_all();
  command
      .add_option("--text", options->texts,
                  "The text, all of it, that the picture before it shows; \\n ends a line")
      ->expected(1)
      ->take_all();
  command.add_option("--polarity", options->polarity, "dark, light, or auto (default)")
      ->check(CLI::IsMember({"dark", "light", "auto"}));
  command.add_option("--margin", options->margin, "Pels of background round the ink (default 3)")
      ->check(CLI::Range(0, kMostMargin));
  command
      .add_option("--blank", options->blank,
                  "Width in pels of a space to add; with --text measured, if it has one")
      ->check(between(1.0, kMostBlank));
  command.add_option("--name", options->name, "The alphabet's name");
  command.add_option("--add", options->add, "Extend this alphabet");
  command.add_flag("--compile", options->compile, "Measure the confusions and store them");
  command.add_option("-o,--output", options->output, "Alphabet file to write")->required();
  addVoice(command, options->voice);
  command.footer(
      "Example:\n"
      "  glyphline train --font DejaVuSans-Bold.ttf --size 36 --chars 'A-Z0-9 ' -o label.oca\n"
      "  glyphline train --image print.png --boxes print.box --blank 12 -o print.oca\n"
      "  glyphline train --image label.png --text 'LOT 4471B\\nEXP 2027' -o label.oca");
  command.callback([options, &action] { action = [options] { return train(*options); }; });
}

}  // namespace glyphline
