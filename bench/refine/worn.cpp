// SPDX-License-Identifier: Apache-2.0
//
// How much does the second look give back on worn print? The picture cases of a folder are worn
// character by character, in known ways, until the pattern finder misses some; of the positions
// that the line then infers, it is counted how many the second look confirms, and how many of
// those rightly: where the character is printed, as near to its true place as the cases ask.
//
//   worn CASES            the table
//   worn CASES --list     every confirmed position besides
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "char_list.h"
#include "font_train.h"
#include "oc/arrange/assign_positions.h"
#include "oc/arrange/evaluate_path.h"
#include "oc/arrange/search_characters.h"
#include "oc/arrange/search_paths.h"
#include "oc/refine_arrangement.h"
#include "picture.h"
#include "rz/pel_functions.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using Image = rzPelBuffer<unsigned char>;

constexpr int kEvery = 3;            // every third character is worn
constexpr double kNearest = 3.0;     // pels from the true place that are right,
constexpr double kNearShare = 0.15;  // or this share of the height, where that is more

/// How much of the print is gone, 0 to 1, at a place of the ink box, 0 to 1 each way.
using Loss = std::function<double(double u, double v)>;

struct Wear {
  const char* name;
  Loss loss;
};

double step(bool isGone) { return isGone ? 1.0 : 0.0; }

// Spots of some fifth of the height that cover about two fifths.
double spots(double u, double v) {
  return step(std::sin(17.0 * u + 3.0 * v) + std::sin(19.0 * v - 7.0 * u) +
                  std::sin(11.0 * (u + v) + 1.0) >
              0.4);
}

const std::vector<Wear>& wears() {
  static const std::vector<Wear> kWears = {
      {"as printed", [](double, double) { return 0.0; }},
      {"lower quarter gone", [](double, double v) { return step(v > 0.75); }},
      {"lower third gone", [](double, double v) { return step(v > 0.667); }},
      {"upper third gone", [](double, double v) { return step(v < 0.333); }},
      {"left third gone", [](double u, double) { return step(u < 0.333); }},
      {"lower half gone", [](double, double v) { return step(v > 0.5); }},
      {"worn in spots", spots},
      {"scratched", [](double u, double v) { return step(std::fmod(3.0 * (u + v), 1.0) < 0.4); }},
      {"faded to a quarter", [](double, double) { return 0.75; }}};
  return kWears;
}

struct Truth {
  rzVector<2> centre;
  double angle;  // radians
  double width;
  double height;
  bool isBlank;
  bool isPresent;
};

struct Case {
  std::string name;
  Image image;
  rzPelBuffer_const<unsigned char> mask;
  rzPtrHandle_const<rzOCAlphabet> alphabet;
  std::vector<rzLong> keys;
  rzOCArrangeParams params;
  std::vector<Truth> truth;
};

std::string fontFile(const std::string& name) {
  for (const auto& entry : fs::recursive_directory_iterator("/usr/share/fonts")) {
    if (entry.path().filename() == name) return entry.path();
  }
  throw std::runtime_error("font " + name + " is not installed");
}

Truth truthOf(const Json& json) {
  Truth truth{};
  truth.isBlank = json.value("blank", false);
  truth.isPresent = json.value("present", true);
  if (truth.isBlank) return truth;
  truth.centre = rzVector<2>(json["cx"].get<double>(), json["cy"].get<double>());
  truth.angle = json["angle"].get<double>() * M_PI / 180.0;
  truth.width = json["w"].get<double>();
  truth.height = json["h"].get<double>();
  return truth;
}

Json descriptionIn(const fs::path& folder) {
  std::ifstream file(folder / "case.json");
  return Json::parse(file);
}

Case readCase(const fs::path& folder, const Json& json) {
  glyphline::FontTraining training;
  training.file = fontFile(json["train"]["font"]["file"]);
  training.size = json["train"]["size_px"].get<double>();
  training.chars = glyphline::expandedChars(json["train"]["chars"], "chars");
  Case result;
  result.name = json["name"];
  result.image = glyphline::readPicture(folder / json["image"].get<std::string>());
  if (json["mask"].is_string()) {
    result.mask = glyphline::readMask(folder / json["mask"].get<std::string>());
  }
  result.alphabet = new rzOCAlphabet(glyphline::modelsOf(glyphline::trainFromFont(training)));
  for (const char32_t c : glyphline::codePointsOf(json["text"], "text")) {
    result.keys.push_back(static_cast<rzLong>(c));
  }
  const Json& scale = json["params"]["scale"];
  result.params.scaleRange(rzRange(scale[0].get<double>(), scale[1].get<double>()));
  for (const Json& truth : json["truth"]) result.truth.push_back(truthOf(truth));
  return result;
}

// Visits the pels within `reach` times the ink box, with their places in the box.
void visitBox(const Image& image, const Truth& truth, double reach,
              const std::function<void(unsigned char&, double u, double v)>& visit) {
  const double radius = 0.5 * reach * std::hypot(truth.width, truth.height);
  const rzPelRect window = image.window();
  for (auto y = static_cast<rzLong>(truth.centre.y() - radius); y < truth.centre.y() + radius;
       ++y) {
    for (auto x = static_cast<rzLong>(truth.centre.x() - radius); x < truth.centre.x() + radius;
         ++x) {
      if (!window.contains(rzPelRect(x, y, 1, 1))) continue;
      const double dx = x + 0.5 - truth.centre.x();
      const double dy = y + 0.5 - truth.centre.y();
      const double c = std::cos(truth.angle);
      const double s = std::sin(truth.angle);
      const double u = (c * dx + s * dy) / truth.width + 0.5;
      const double v = (c * dy - s * dx) / truth.height + 0.5;
      if (std::max(std::abs(u - 0.5), std::abs(v - 0.5)) <= 0.5 * reach) {
        visit(*image.pointToPel(x, y), u, v);
      }
    }
  }
}

// The grey of the paper: the median around the ink.
double paperAround(const Image& image, const Truth& truth) {
  std::vector<unsigned char> greys;
  visitBox(image, truth, 1.4, [&](unsigned char& pel, double u, double v) {
    if (u < -0.05 || u > 1.05 || v < -0.05 || v > 1.05) greys.push_back(pel);
  });
  if (greys.empty()) return 128.0;
  std::nth_element(greys.begin(), greys.begin() + static_cast<std::ptrdiff_t>(greys.size() / 2),
                   greys.end());
  return greys[greys.size() / 2];
}

// The loss takes the print away, not the noise of the paper's edge: a little more than the box.
Image worn(const Case& wanted, const Wear& wear, std::size_t first) {
  Image image = rfPelCopy(wanted.image);
  for (std::size_t i = first; i < wanted.truth.size(); i += kEvery) {
    const Truth& truth = wanted.truth[i];
    if (truth.isBlank) continue;
    const double paper = paperAround(wanted.image, truth);
    visitBox(image, truth, 1.12, [&](unsigned char& pel, double u, double v) {
      const double loss = wear.loss(u, v);
      pel = static_cast<unsigned char>(std::lround(pel + loss * (paper - pel)));
    });
  }
  return image;
}

// The stages of the arranger up to the second look.
struct Arranged {
  std::vector<rz_Pose> poses;
  std::vector<double> scores;
  std::vector<rzOCArrangeDefs::CharStatus> statuses;
};

Arranged arranged(const Case& wanted, const Image& image) {
  std::vector<rz_CharData> charData;
  for (const rzLong key : wanted.keys) {
    const rzOCModel& model = *wanted.alphabet->character(key);
    const rzXform<2> client = model.image().clientFromImageXform();
    const rzPelRect area = model.imageArea();
    charData.emplace_back();
    charData.back().isBlank = model.charType() == rzOCModel::eBlank;
    charData.back().imageArea(
        {client.mapPoint(area.ul()), client.mapPoint(area.ur()), client.mapPoint(area.ll())});
  }
  rz_PoseTable poses;
  rz_ScoreTable scores;
  double milliseconds = 0.0;
  rf_SearchCharacters(image, wanted.mask, wanted.alphabet, wanted.keys, wanted.params, poses,
                      scores, charData, milliseconds, nullptr, 0);
  rz_ArrangePath path;
  rf_SearchPaths(image, wanted.keys, charData, poses, scores, wanted.params, path);
  rz_ArrangeCost cost;
  rf_EvaluatePath(path, wanted.keys, charData, poses, scores, wanted.params, false, true, cost);
  Arranged result;
  rf_AssignPositions(poses, scores, path, cost, charData, wanted.params, result.poses,
                     result.scores, result.statuses);
  return result;
}

struct Tally {
  int worn = 0;       // positions whose print was worn
  int inferred = 0;   // of those, positions that the line inferred
  int nowhere = 0;    // of the inferred, far from where the character is printed
  int right = 0;      // of the inferred, confirmed where the character is
  int misplaced = 0;  // confirmed somewhere else
  int absent = 0;     // of the inferred, where another character is printed, or none
  int wrong = 0;      // and confirmed

  Tally& operator+=(const Tally& more) {
    worn += more.worn;
    inferred += more.inferred;
    nowhere += more.nowhere;
    right += more.right;
    misplaced += more.misplaced;
    absent += more.absent;
    wrong += more.wrong;
    return *this;
  }
};

void print(const char* name, const Tally& tally) {
  std::printf("%-20s %6d %9d %8d %6d %10d %7d %6d\n", name, tally.worn, tally.inferred,
              tally.nowhere, tally.right, tally.misplaced, tally.absent, tally.wrong);
  std::fflush(stdout);
}

bool isNear(const Case& wanted, std::size_t i, const rz_Pose& pose) {
  const rzOCModel& model = *wanted.alphabet->character(wanted.keys[i]);
  const rzVector<2> middle =
      model.image().clientFromImageXform() * rzRect(model.imageArea()).center();
  const Truth& truth = wanted.truth[i];
  return (rzXform<2>(pose) * middle).distance(truth.centre) <=
         std::max(kNearest, kNearShare * truth.height);
}

void measure(const Case& wanted, const Wear& wear, std::size_t first, bool lists, Tally& tally) {
  const Image image = worn(wanted, wear, first);
  const Arranged before = arranged(wanted, image);
  Arranged after = before;
  rf_RefineArrangement(image, wanted.alphabet, wanted.keys, after.poses, after.statuses,
                       after.scores, nullptr, 0);
  for (std::size_t i = first; i < wanted.keys.size(); i += kEvery) {
    const Truth& truth = wanted.truth[i];
    if (truth.isBlank) continue;
    ++tally.worn;
    if (before.statuses[i] != rzOCArrangeDefs::eInferred) continue;
    const bool isConfirmed = after.statuses[i] == rzOCArrangeDefs::eMatched;
    const bool isRight = isNear(wanted, i, after.poses[i]);
    ++tally.inferred;
    tally.nowhere += truth.isPresent && !isNear(wanted, i, before.poses[i]) ? 1 : 0;
    tally.absent += truth.isPresent ? 0 : 1;
    if (!isConfirmed) continue;
    int& count = !truth.isPresent ? tally.wrong : isRight ? tally.right : tally.misplaced;
    ++count;
    if (!lists) continue;
    std::printf("    %s: %zu '%c' %s, score %.2f\n", wanted.name.c_str(), i,
                static_cast<char>(wanted.keys[i]),
                !truth.isPresent ? "not printed"
                : isRight        ? "right"
                                 : "in a wrong place",
                after.scores[i]);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::puts("usage: worn CASES [--list]");
    return 2;
  }
  const bool lists = argc > 2 && std::strcmp(argv[2], "--list") == 0;
  std::vector<Case> cases;
  for (const auto& entry : fs::directory_iterator(argv[1])) {
    const Json json = descriptionIn(entry.path());
    // Those that are trained from a picture are few, and left out.
    if (json["train"].contains("font")) cases.push_back(readCase(entry.path(), json));
  }
  std::sort(cases.begin(), cases.end(),
            [](const Case& a, const Case& b) { return a.name < b.name; });
  std::printf("%-20s %6s %9s %8s %6s %10s %7s %6s\n", "", "worn", "inferred", "(far off)", "right",
              "misplaced", "absent", "wrong");
  Tally all;
  for (const Wear& wear : wears()) {
    Tally tally;
    for (const Case& wanted : cases) {
      for (std::size_t first = 0; first < kEvery; ++first) {
        measure(wanted, wear, first, lists, tally);
      }
    }
    print(wear.name, tally);
    if (&wear != &wears().front()) all += tally;
  }
  print("all that are worn", all);
}
