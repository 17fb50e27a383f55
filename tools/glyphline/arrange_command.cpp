// SPDX-License-Identifier: Apache-2.0
//
// glyphline arrange: is the expected text there?
#include <chrono>
#include <iostream>
#include <memory>
#include <sstream>

#include "alphabet_file.h"
#include "char_list.h"
#include "failure.h"
#include "input_file.h"
#include "options.h"
#include "output_file.h"
#include "overlay.h"
#include "page/page_heads.h"
#include "picture.h"
#include "report_json.h"
#include "report_table.h"
#include "standard_error.h"

namespace glyphline {
namespace {

struct ArrangeOptions {
  std::string alphabet;
  std::string text;
  std::string textFile;
  std::string mask;
  std::string scale;
  std::string line;
  std::string direction;
  std::string orientation;
  std::string overlay;
  std::string report;
  std::vector<std::string> images;
  rzOCArrangeParams params;
  int jobs = 1;
  bool json = false;
  Voice voice;
};

rzOCArrangeDefs::LineType lineTypeOf(const std::string& text) {
  if (text == "straight") return rzOCArrangeDefs::eStraight;
  if (text == "circular") return rzOCArrangeDefs::eCircular;
  return rzOCArrangeDefs::eDontCare;
}

void setDirection(rzOCArrangeParams& params, const std::string& text) {
  params.isTextDirectionSpecified(true);
  if (text == "clockwise" || text == "counter-clockwise") {
    params.isCircularTextDirectionClockwise(text == "clockwise");
  } else {
    params.straightTextDirection(rzDegree(numberOf(text, "--direction")));
  }
}

// average | relative[:DEG] | absolute[:DEG]; without degrees the average of the line is expected.
void setOrientation(rzOCArrangeParams& params, const std::string& text) {
  const std::size_t colon = text.find(':');
  const std::string reference = text.substr(0, colon);
  if (reference != "relative" && reference != "absolute" && text != "average") {
    throw Failure("--orientation: \"" + text +
                  "\" is none of average, relative, absolute, relative:DEG, absolute:DEG");
  }
  if (text == "average") return;
  params.orientationReference(reference == "relative" ? rzOCArrangeDefs::eRelative
                                                      : rzOCArrangeDefs::eAbsolute);
  if (colon == std::string::npos) return;
  params.orientationMode(rzOCArrangeDefs::eSpecified);
  params.expectedOrientation(rzDegree(numberOf(text.substr(colon + 1), "--orientation")));
}

void applyWords(ArrangeOptions& options) {
  rzOCArrangeParams& params = options.params;
  if (!options.scale.empty()) {
    const rzRange scale = rangeOf(options.scale, "--scale");
    setting("--scale", [&] { params.scaleRange(scale); });
  }
  if (!options.line.empty()) params.lineType(lineTypeOf(options.line));
  if (!options.direction.empty()) setDirection(params, options.direction);
  if (!options.orientation.empty()) setOrientation(params, options.orientation);
}

// The expected text of each picture.
std::vector<std::u32string> textsOf(const ArrangeOptions& options) {
  const std::size_t count = options.images.size();
  if (options.textFile.empty()) {
    return std::vector<std::u32string>(count, codePointsOf(options.text, "--text"));
  }
  std::istringstream content(readInput(options.textFile, "--text-file"));
  std::vector<std::u32string> texts;
  std::string line;
  while (std::getline(content, line)) {
    if (line.ends_with('\r')) line.pop_back();
    texts.push_back(codePointsOf(line, options.textFile + ": --text-file"));
  }
  if (texts.size() != count) {
    throw Failure(options.textFile + ": --text-file: " + std::to_string(texts.size()) +
                  " texts for " + std::to_string(count) + " pictures");
  }
  return texts;
}

/// What became of one picture.
struct Outcome {
  std::string output;  // for standard output
  std::string error;   // one line, empty when all was well
  bool passes = false;
};

/// Everything that the pictures of a run share.
struct Job {
  const ArrangeOptions& options;
  rzOCAlphabet alphabet;
  std::vector<std::vector<rzLong>> keys;
  rzPelBuffer_const<unsigned char> mask;
};

ArrangeReport arrangePicture(const Job& job, std::size_t i,
                             const rzPelBuffer<unsigned char>& picture, rzDiagObject* diag) {
  constexpr rzULong kAll = rzDiagDefs::eInputs | rzDiagDefs::eResults | rzDiagDefs::eDetails;
  requireFit(job.mask, job.options.mask, picture, job.options.images[i]);
  rzOCArrangeResults results;
  const auto start = std::chrono::steady_clock::now();
  rfOCArrange_(picture, job.mask, job.alphabet, job.keys[i], job.options.params, results, diag,
               kAll);
  const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - start;
  const ArrangeRequest request{job.options.images[i], job.alphabet, job.keys[i],
                               job.options.params.compPoseUncertainties()};
  return reportOf(request, results, spent.count());
}

Outcome outcomeOf(const Job& job, std::size_t i) {
  const ArrangeOptions& options = job.options;
  const std::string& image = options.images[i];
  Outcome outcome;
  try {
    const rzPelBuffer<unsigned char> picture = readPicture(image);
    rzDiagObject diag;
    const ArrangeReport report =
        arrangePicture(job, i, picture, options.report.empty() ? nullptr : &diag);
    if (!options.overlay.empty()) {
      writeOverlay(outputPath(options.overlay, image), picture, report);
    }
    if (!options.report.empty()) {
      writeWhole(outputPath(options.report, image),
                 diagPage(diag, headOfArrangement(report, options.alphabet)));
    }
    std::ostringstream out;
    if (options.json) {
      out << jsonOf(report) << '\n';
    } else {
      writeTable(out, report);
    }
    outcome.output = out.str();
    outcome.passes = report.passes();
  } catch (const Failure& failure) {
    outcome.error = failure.what();
  } catch (const std::exception& error) {
    outcome.error = image + ": " + error.what();
  }
  if (!outcome.error.empty() && options.json) {
    outcome.output = jsonOfFailure(image, outcome.error) + "\n";
  }
  return outcome;
}

int arrange(ArrangeOptions& options) {
  applyWords(options);
  if (!options.overlay.empty()) checkOverlays(options.overlay, options.images);
  if (!options.report.empty()) checkOutputs(options.report, "--report", options.images);
  Job job{options, readAlphabet(options.alphabet, "--alphabet"), {}, {}};
  const std::string option = options.textFile.empty() ? "--text" : "--text-file";
  for (const std::u32string& text : textsOf(options)) {
    job.keys.push_back(keysOf(text, job.alphabet, options.alphabet, option));
  }
  job.mask = readMask(options.mask);

  if (options.voice.verbose) {
    std::cerr << options.alphabet << ": " << job.alphabet.numChars() << " characters\n"
              << options.images.size() << " pictures, " << options.jobs << " at a time\n";
  }
  std::vector<Outcome> outcomes(options.images.size());
  int status = kAllMatched;
  forEachPicture(
      outcomes.size(), options.jobs, options.voice,
      [&](std::size_t i) { outcomes[i] = outcomeOf(job, i); },
      [&](std::size_t i) {
        std::cout << outcomes[i].output << std::flush;
        if (!outcomes[i].error.empty()) {
          writeToStandardError("glyphline: " + outcomes[i].error + "\n");
          status = kBadInput;
        } else if (!outcomes[i].passes) {
          status = std::max<int>(status, kSomeMissing);
        }
      });
  return status;
}

// An option whose value goes through a setter of the parameters, which refuses bad ones.
template <class T>
void addSetting(CLI::App& command, const std::shared_ptr<ArrangeOptions>& options,
                const std::string& name, void (rzOCArrangeParams::*set)(T),
                const std::string& help) {
  command.add_option_function<T>(
      name,
      [options, name, set](const T& value) {
        setting(name, [&] { (options->params.*set)(value); });
      },
      help);
}

void addSettings(CLI::App& command, const std::shared_ptr<ArrangeOptions>& options) {
  using Params = rzOCArrangeParams;
  addSetting<double>(command, options, "--min-score", &Params::minMatchScore,
                     "Smallest score of a found character, 0 to 1 (default 0.4)");
  addSetting<rzLong>(command, options, "--max-lines", &Params::maxLines, "Most lines");
  addSetting<rzLong>(command, options, "--max-unmatched", &Params::maxUnmatchedChars,
                     "Most characters that may stay unmatched");
  addSetting<double>(command, options, "--line-break-cost", &Params::lineBreakCost,
                     "Cost of each further line (default 2)");
  addSetting<double>(command, options, "--unmatched-cost", &Params::unmatchedCharCost,
                     "Cost of a character that is not matched (default 1)");
  addSetting<double>(command, options, "--normal-cost", &Params::normalTransCost,
                     "Weight of errors across the line (default 1)");
  addSetting<double>(command, options, "--tangential-cost", &Params::tangentialTransCost,
                     "Weight of errors along the line and of gaps (default 1)");
  addSetting<double>(command, options, "--orientation-cost", &Params::orientationCost,
                     "Weight of orientation errors (default 1)");
  addSetting<double>(command, options, "--scale-cost", &Params::scaleCost,
                     "Weight of scale errors (default 1)");
  addSetting<rzLong>(command, options, "--max-candidates", &Params::maxCandidates,
                     "Paths that may wait before the search gives up (default 500000)");
  addSetting<double>(command, options, "--timeout", &Params::timeout,
                     "Seconds for the search of each character (default 10)");
  command.add_flag_function(
      "--uncertainties", [options](std::int64_t) { options->params.compPoseUncertainties(true); },
      "Also work out how far each character lies from where its line wants it");
}

}  // namespace

void addArrange(CLI::App& app, Action& action) {
  auto options = std::make_shared<ArrangeOptions>();
  CLI::App& command = *app.add_subcommand("arrange", "Verify the expected text in pictures");
  command.add_option("--alphabet", options->alphabet, "Alphabet file")->required();
  CLI::Option* text =
      command.add_option("--text", options->text, "Expected text; a space is a blank position");
  command.add_option("--text-file", options->textFile, "One expected text a line for each picture")
      ->excludes(text);
  command.add_option("--mask", options->mask, "Picture of the same size: look where it is bright");
  command.add_option("--scale", options->scale, "Scales to search, LO:HI (default 0.9:1.1)");
  command.add_option("--line", options->line, "straight, circular, or any (default)")
      ->check(CLI::IsMember({"straight", "circular", "any"}));
  command.add_option("--direction", options->direction,
                     "Reading direction: degrees, clockwise or counter-clockwise");
  command.add_option("--orientation", options->orientation,
                     "How characters stand: average (default), relative, absolute, relative:DEG, "
                     "absolute:DEG");
  addSettings(command, options);
  command.add_option("--jobs", options->jobs, "Pictures looked at in parallel (default 1)")
      ->check(CLI::Range(1, 256));
  command.add_flag("--json", options->json, "One JSON object on one line for each picture");
  command.add_option("--overlay", options->overlay,
                     "Draw the result: .png, .svg or .pdf; % stands for the picture's name");
  command.add_option("--report", options->report,
                     "Write all that the run records as one page of HTML; % as for --overlay");
  addVoice(command, options->voice);
  command.add_option("IMAGES", options->images, "Pictures; - is standard input")->required();
  command.footer(
      "Example:\n"
      "  glyphline arrange --alphabet label.oca --text 'LOT 4471B' --overlay seen.png label.png\n"
      "  glyphline arrange --alphabet label.oca --text 'LOT 4471B' --report why.html label.png\n"
      "Exit status: 0 all matched, 1 something was not, 2 a bad input.");
  command.callback([options, text, &action] {
    if (text->count() == 0 && options->textFile.empty()) {
      throw Failure("arrange: --text or --text-file is needed");
    }
    action = [options] { return arrange(*options); };
  });
}

}  // namespace glyphline
