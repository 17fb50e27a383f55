// SPDX-License-Identifier: Apache-2.0
//
// glyphline compile, show and edit: measure an alphabet, look at it, change it.
#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "alphabet_file.h"
#include "char_list.h"
#include "confusion_table.h"
#include "failure.h"
#include "oc/oc.h"
#include "options.h"
#include "output_file.h"
#include "page/page_heads.h"
#include "rz/text.h"

namespace glyphline {
namespace {

using Json = nlohmann::ordered_json;

struct ShowOptions {
  std::string alphabet;
  std::string report;
  bool json = false;
};

struct EditOptions {
  std::string alphabet;
  std::string remove;
  std::string name;
  double threshold = -1.0;
  std::string output;
};

std::string obstacleOf(const rzOCModel& model) {
  const rz_OCExtractObstacle obstacle = rfOCExtractObstacle(model);
  return obstacle == eNoObstacle ? "" : rfOCExtractObstacleText(obstacle);
}

Json jsonOf(const rzOCModel& model) {
  Json json{{"char", model.name()},
            {"key", model.key()},
            {"type", model.charType() == rzOCModel::eBlank ? "blank" : "normal"},
            {"width", model.imageArea().width()},
            {"height", model.imageArea().height()},
            {"source", model.description()}};
  const std::string obstacle = obstacleOf(model);
  if (!obstacle.empty()) json["reason"] = obstacle;
  return json;
}

struct Pair {
  std::string a;
  std::string b;
  double confusion;
};

// Ordered pairs of different characters that count as confusable, the worst first.
std::vector<Pair> confusingPairs(const rzOCAlphabet& alphabet) {
  std::vector<Pair> pairs;
  if (!alphabet.isCompiled()) return pairs;
  for (const auto& a : alphabet.characters()) {
    for (const auto& b : alphabet.characters()) {
      if (a->key() == b->key() || !alphabet.areConfusable(a->key(), b->key())) continue;
      pairs.push_back({a->name(), b->name(), alphabet.confusion(a->key(), b->key())});
    }
  }
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const Pair& p, const Pair& q) { return p.confusion > q.confusion; });
  return pairs;
}

void showAsJson(const rzOCAlphabet& alphabet) {
  Json json{{"name", alphabet.name()},
            {"compiled", alphabet.isCompiled()},
            {"threshold", alphabet.confusionThreshold()}};
  json["characters"] = Json::array();
  for (const auto& model : alphabet.characters()) json["characters"].push_back(jsonOf(*model));
  if (alphabet.isCompiled()) json["confusions"] = confusionTable(alphabet);
  json["confusing"] = Json::array();
  for (const Pair& pair : confusingPairs(alphabet)) {
    json["confusing"].push_back(
        {{"char", pair.a}, {"with", pair.b}, {"confusion", pair.confusion}});
  }
  std::cout << json.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

void showAsText(const rzOCAlphabet& alphabet) {
  std::cout << "name: " << alphabet.name() << "\ncharacters: " << alphabet.numChars()
            << "\ncompiled: " << (alphabet.isCompiled() ? "yes" : "no")
            << "\nconfusion threshold: " << rfStr(alphabet.confusionThreshold()) << '\n';
  for (const auto& model : alphabet.characters()) {
    const std::string obstacle = obstacleOf(*model);
    std::cout << "  " << shownName(model->name()) << "  key " << model->key() << "  "
              << model->imageArea().width() << "x" << model->imageArea().height() << " pels"
              << (obstacle.empty() ? "" : "  not searched: " + obstacle) << '\n';
  }
  std::cout << confusionText(alphabet);
  for (const Pair& pair : confusingPairs(alphabet)) {
    std::cout << "  " << shownName(pair.a) << " can pass for " << shownName(pair.b) << ": "
              << rfDbl(pair.confusion, 2, false) << '\n';
  }
}

void writeReport(const rzOCAlphabet& alphabet, const ShowOptions& options) {
  rzDiagObject diag;
  const PageHead head = headOfAlphabet(alphabet, options.alphabet);
  rf_AddAlphabet(&diag, &alphabet, head.title, true);
  writeWhole(options.report, diagPage(diag, head));
}

int show(const ShowOptions& options) {
  const rzOCAlphabet alphabet = readAlphabet(options.alphabet);
  if (!options.report.empty()) writeReport(alphabet, options);
  if (options.json) {
    showAsJson(alphabet);
  } else {
    showAsText(alphabet);
  }
  return kAllMatched;
}

int compile(const std::string& path) {
  rzOCAlphabet alphabet = readAlphabet(path);
  alphabet.compile(nullptr, 0);
  writeAlphabet(path, alphabet);
  return kAllMatched;
}

int edit(const EditOptions& options) {
  rzOCAlphabet alphabet = readAlphabet(options.alphabet);
  if (!options.remove.empty()) {
    alphabet.remove(
        keysOf(expandedChars(options.remove, "--remove"), alphabet, options.alphabet, "--remove"));
  }
  if (options.threshold >= 0.0) {
    setting("--threshold", [&] { alphabet.confusionThreshold(options.threshold); });
  }
  if (!options.name.empty()) alphabet.name(options.name);
  writeAlphabet(options.output, alphabet);
  return kAllMatched;
}

}  // namespace

void addCompile(CLI::App& app, Action& action) {
  auto path = std::make_shared<std::string>();
  CLI::App& command =
      *app.add_subcommand("compile", "Measure how far characters can pass for one another");
  command.add_option("ALPHABET", *path, "Alphabet file; the result is stored in it")->required();
  command.footer("Example:\n  glyphline compile label.oca && glyphline show label.oca");
  command.callback([path, &action] { action = [path] { return compile(*path); }; });
}

void addShow(CLI::App& app, Action& action) {
  auto options = std::make_shared<ShowOptions>();
  CLI::App& command = *app.add_subcommand("show", "Print what an alphabet holds");
  command.add_option("ALPHABET", options->alphabet, "Alphabet file")->required();
  command.add_flag("--json", options->json, "One JSON object");
  command.add_option("--report", options->report,
                     "Write the alphabet with its pictures as one page of HTML");
  command.footer(
      "Example:\n  glyphline show label.oca\n  glyphline show --report label.html label.oca");
  command.callback([options, &action] { action = [options] { return show(*options); }; });
}

void addEdit(CLI::App& app, Action& action) {
  auto options = std::make_shared<EditOptions>();
  CLI::App& command = *app.add_subcommand("edit", "Change an alphabet");
  command.add_option("ALPHABET", options->alphabet, "Alphabet file")->required();
  command.add_option("--remove", options->remove, "Characters to take out, with ranges");
  command.add_option("--threshold", options->threshold, "Confusion threshold, 0 to 1")
      ->check(between(0.0, 1.0));
  command.add_option("--name", options->name, "The alphabet's name");
  command.add_option("-o,--output", options->output, "Alphabet file to write")->required();
  command.footer("Example:\n  glyphline edit label.oca --remove 'Q' -o smaller.oca");
  command.callback([options, &action] { action = [options] { return edit(*options); }; });
}

}  // namespace glyphline
