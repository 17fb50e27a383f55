// SPDX-License-Identifier: Apache-2.0
//
// glyphline find: where do these characters stand? What the character search alone delivers.
#include <iostream>
#include <memory>

#include "alphabet_file.h"
#include "char_list.h"
#include "failure.h"
#include "options.h"
#include "overlay.h"
#include "picture.h"
#include "report_json.h"
#include "report_table.h"

namespace glyphline {
namespace {

constexpr rzLong kMostCount = 100000;

struct FindOptions {
  std::string alphabet;
  std::string chars;
  rzLong count = 1;
  std::string scale = "0.9:1.1";
  std::string angle = "-180:180";
  double minScore = 0.4;
  std::string mask;
  double timeout = 10.0;
  std::string overlay;
  std::vector<std::string> images;
  bool json = false;
  Voice voice;
};

/// Everything that the pictures of a run share.
struct Job {
  const FindOptions& options;
  rzPtrHandle_const<rzOCAlphabet> alphabet;
  std::vector<rzLong> keys;  // distinct
  std::vector<rzLong> text;  // each key as often as it is expected
  rz_OCExtractModelParams modelParams;
  rz_OCExtractRunParams runParams;
  rzPelBuffer_const<unsigned char> mask;
};

FoundCharacter foundCharacter(const rzOCModel& model, const rz_OCExtractCharResult& result) {
  FoundCharacter found;
  found.key = model.key();
  found.character = model.name();
  found.symmetry = result.symmetry();
  found.milliseconds = result.time();
  const rz_OCExtractObstacle obstacle = rfOCExtractObstacle(model);
  if (obstacle != eNoObstacle) found.obstacle = rfOCExtractObstacleText(obstacle);
  for (rzLong i = 0; i < result.numInstances(); ++i) {
    found.instances.push_back({result.score(i), placeOf(model, result.pose(i))});
  }
  return found;
}

FindReport findIn(const Job& job, const std::string& image,
                  const rzPelBuffer<unsigned char>& picture) {
  requireFit(job.mask, job.options.mask, picture, image);
  rz_OCExtractModel model;
  rz_OCExtractStringResult result;
  FindReport report;
  report.image = image;
  report.isComplete = model.search(job.alphabet, job.text, picture, job.mask, job.modelParams,
                                   job.runParams, result, nullptr, 0);
  report.trainMilliseconds = result.trainTime();
  report.searchMilliseconds = result.searchTime();
  for (const rzLong key : job.keys) {
    const auto at = std::find(job.text.begin(), job.text.end(), key) - job.text.begin();
    report.characters.push_back(foundCharacter(*job.alphabet->character(key),
                                               *result.results()[static_cast<std::size_t>(at)]));
  }
  return report;
}

int sayFailure(const FindOptions& options, const std::string& image, const std::string& message) {
  std::cerr << "glyphline: " << message << '\n';
  if (options.json) std::cout << jsonOfFailure(image, message) << std::endl;
  return kBadInput;
}

int findInOne(const Job& job, const std::string& image) {
  const FindOptions& options = job.options;
  try {
    const rzPelBuffer<unsigned char> picture = readPicture(image);
    const FindReport report = findIn(job, image, picture);
    if (!options.overlay.empty()) {
      writeOverlay(outputPath(options.overlay, image), picture, report);
    }
    if (options.json) {
      std::cout << jsonOf(report) << std::endl;
    } else {
      writeTable(std::cout, report);
    }
    return report.passes() ? kAllMatched : kSomeMissing;
  } catch (const Failure& failure) {
    return sayFailure(options, image, failure.what());
  } catch (const std::exception& error) {
    return sayFailure(options, image, image + ": " + error.what());
  }
}

int find(const FindOptions& options) {
  if (!options.overlay.empty()) checkOverlays(options.overlay, options.images);
  Job job{options, new rzOCAlphabet(readAlphabet(options.alphabet, "--alphabet")), {}, {}, {}, {},
          {}};
  job.keys =
      keysOf(expandedChars(options.chars, "--chars"), *job.alphabet, options.alphabet, "--chars");
  for (const rzLong key : job.keys) {
    job.text.insert(job.text.end(), static_cast<std::size_t>(options.count), key);
  }
  job.modelParams.scaleRange = rangeOf(options.scale, "--scale");
  if (!(job.modelParams.scaleRange.start() > 0.0)) {
    throw Failure("--scale: scales must be above 0");
  }
  job.modelParams.angleRange = rangeOf(options.angle, "--angle");
  job.runParams.acceptThresh = options.minScore;
  job.runParams.timeout = options.timeout;
  job.mask = readMask(options.mask);
  int status = kAllMatched;
  for (const std::string& image : options.images) {
    status = std::max(status, findInOne(job, image));
  }
  return status;
}

}  // namespace

void addFind(CLI::App& app, Action& action) {
  auto options = std::make_shared<FindOptions>();
  CLI::App& command =
      *app.add_subcommand("find", "Show where single characters are found, before any arranging");
  command.add_option("--alphabet", options->alphabet, "Alphabet file")->required();
  command.add_option("--chars", options->chars, "Characters, with ranges such as A-Z")->required();
  command.add_option("--count", options->count, "How often each is expected (default 1)")
      ->check(CLI::Range(1, kMostCount));
  command.add_option("--scale", options->scale, "Scales to search, LO:HI (default 0.9:1.1)");
  command.add_option("--angle", options->angle, "Angles to search, LO:HI (default -180:180)");
  command.add_option("--min-score", options->minScore, "Smallest score, 0 to 1 (default 0.4)")
      ->check(between(0.0, 1.0));
  command.add_option("--mask", options->mask, "Picture of the same size: look where it is bright");
  command.add_option("--timeout", options->timeout, "Seconds for each character (default 10)")
      ->check(CLI::NonNegativeNumber);
  command.add_flag("--json", options->json, "One JSON object on one line for each picture");
  command.add_option("--overlay", options->overlay,
                     "Draw the instances: .png, .svg or .pdf; % stands for the picture's name");
  addVoice(command, options->voice);
  command.add_option("IMAGES", options->images, "Pictures; - is standard input")->required();
  command.footer(
      "Example:\n"
      "  glyphline find --alphabet label.oca --chars 'L4' --count 2 label.png\n"
      "Exit status: 0 each character was found, 1 one was not, 2 a bad input.");
  command.callback([options, &action] { action = [options] { return find(*options); }; });
}

}  // namespace glyphline
