// SPDX-License-Identifier: Apache-2.0
//
// Measures the pattern finder on synthetic pictures: how many characters it finds, how exactly, how
// they score, what it takes for a character that it is not, and how long it takes.
//
//   finder_sweep [--pictures N] [--font FILE] [--what all|find|looks|pairs|speed]
//                [--height PELS] [--mixed] [--train-blur SIGMA] [-v]
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "platform/vision/finder/cpu_variants.h"
#include "platform/vision/finder/picture_features.h"
#include "rz/angle.h"
#include "rz/attention.h"
#include "rz/cx_align.h"
#include "rz/timeout.h"
#include "tests/support/print/trials.h"

namespace {

using scene::Font;
using scene::kCapitals;
using scene::kContained;
using scene::kHeight;
using scene::kWidth;
using scene::Look;
using scene::name;
using scene::Picture;
using scene::searchParams;
using scene::Trained;

double seconds() {
  timespec t;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

bool verbose = false;
double trainBlur = 0.0;

void printCounts(const scene::Tally& tally) {
  for (const auto& [code, count] : tally.missed) {
    std::printf(" %s%d", scene::name(code).c_str(), count);
  }
  for (const auto& [pair, count] : tally.confusions) std::printf(" [%s %d]", pair.c_str(), count);
  std::printf("\n");
}

void runFind(const std::string& file, const char* title, double height, scene::Trials trials,
             const std::u32string& alphabet) {
  const Font font(file, Font::sizeForCapHeight(file, height));
  trials.trainBlur = trainBlur;
  scene::Tally tally = scene::runTrials(font, alphabet, trials);
  std::printf(
      "%-18s h%3.0f n%4d found %6.2f%% exact %6.2f%% <.7 %5.2f%% <.8 %5.2f%% p1 %.3f p5 %.3f "
      "median %.3f false %.3f place %.3f angle %.3f scale %.2f%%\n",
      title, height, tally.trials, 100 * tally.share(tally.found), 100 * tally.share(tally.exact),
      100 * tally.share(tally.below7), 100 * tally.share(tally.below8), tally.score(0.01),
      tally.score(0.05), tally.score(0.5), tally.share(tally.falseOnes), tally.placeRms(),
      tally.angleRms(), 100 * tally.scaleRms());
  if (verbose) printCounts(tally);
  std::fflush(stdout);
}

void runPairs(const std::string& file, double height, const std::u32string& alphabet) {
  const Font font(file, Font::sizeForCapHeight(file, height));
  Look look;
  std::mt19937 random(99);
  std::vector<Trained> trained;
  for (const char32_t code : alphabet) trained.push_back(trainGlyph(font, code, trainBlur));
  int pairs = 0;
  int high = 0;
  int contained = 0;
  std::string line;
  for (const char32_t shown : alphabet) {
    Look clean = look;
    const Picture picture = makePicture(font, std::u32string(1, shown), clean, random,
                                        static_cast<int>(4 * height), static_cast<int>(4 * height));
    const rzCXAlignRunParams params = searchParams(0.3, 1);
    for (const Trained& t : trained) {
      if (t.code == shown) continue;
      rzCXAlignResultSet set;
      t.pattern.run(picture.image, params, set);
      ++pairs;
      if (set.results().empty() || set.results()[0].score() < 0.7) continue;
      if (containedShare(font, t, set.results()[0], picture.canvas) > kContained) {
        ++contained;
        continue;
      }
      ++high;
      char text[64];
      std::snprintf(text, sizeof text, " %s<%s %.2f", name(t.code).c_str(), name(shown).c_str(),
                    set.results()[0].score());
      line += text;
    }
  }
  std::printf("pairs h%.0f: %d of %d at 0.7 (%.2f%%), %d contained:%s\n", height, high,
              pairs - contained, 100.0 * high / (pairs - contained), contained, line.c_str());
  line.clear();
  for (const Trained& t : trained) {
    for (const double degrees : {180.0}) {
      rzPelBuffer<unsigned char> turned(rzPelRect(0, 0, t.image.width(), t.image.height()), 32);
      for (int y = 0; y < turned.height(); ++y) {
        for (int x = 0; x < turned.width(); ++x) {
          *turned.pointToPel(x, y) =
              *t.image.pointToPel(turned.width() - 1 - x, turned.height() - 1 - y);
        }
      }
      const rzXform<2> client = t.image.clientFromImageXform();
      turned.clientFromImageXform(
          rzXform<2>(client.matrix() * rzMatrix<2>(-1, 0, 0, -1),
                     client * rzVector<2>(turned.width(), turned.height())));
      rzCXAlignRunParams params;
      params.acceptThreshold(0.3);
      params.nominal(rz_CXDefs::eAngle, degrees);
      params.xyOverlap(0.3);
      rzCXAlignResultSet set;
      t.pattern.run(turned, params, set);
      const double score = set.results().empty() ? 0.0 : set.results()[0].score();
      char text[64];
      if (score > 0.55) {
        std::snprintf(text, sizeof text, " %s %.2f", name(t.code).c_str(), score);
        line += text;
      }
    }
  }
  std::printf("half turns above 0.55 h%.0f:%s\n", height, line.c_str());
  std::fflush(stdout);
}

double millisecondsOf(const auto& work) {
  constexpr std::size_t kTimes = 15;
  std::vector<double> times;
  for (std::size_t i = 0; i < kTimes; ++i) {
    const double before = seconds();
    work();
    times.push_back(1e3 * (seconds() - before));
  }
  std::nth_element(times.begin(), times.begin() + kTimes / 2, times.end());
  return times[kTimes / 2];
}

// One search, its parts, and the effect of closed or narrow zones.
void runSpeed(const std::string& file, double height, int width, int depth) {
  const Font font(file, Font::sizeForCapHeight(file, height));
  std::mt19937 random(11);
  const Picture picture = makePicture(font, kCapitals.substr(0, 31), Look(), random, width, depth);
  const std::u32string wanted = U"ABKR5";
  std::vector<Trained> trained;
  for (const char32_t code : wanted) trained.push_back(trainGlyph(font, code, 0.0));
  const auto count = static_cast<double>(wanted.size());
  const double training = millisecondsOf([&] {
    for (const char32_t code : wanted) trainGlyph(font, code, 0.0);
  });
  const finder::PelView view{picture.image.pointToPel(0, 0), width,   depth,
                             picture.image.rowUpdate(),      nullptr, 0};
  for (const bool wide : {true, false}) {
    finder::wideVectorsAllowed = wide;
    rzCXAlignResultSet set;
    const auto searchAll = [&](const rzCXAlignRunParams& params) {
      for (const Trained& t : trained) t.pattern.run(picture.image, params, set);
    };
    const double features =
        millisecondsOf([&] { finder::PictureFeatures(view, 10.0).levelWithResponses(0); });
    // Parameters keep the features of the picture that they were last used with.
    const rzCXAlignRunParams open = searchParams(0.4, 3);
    searchAll(open);
    const double full = millisecondsOf([&] { searchAll(open); });
    rzCXAlignRunParams closed = searchParams(0.4, 3);
    closed.zoneEnable(1);
    const double oneScale = millisecondsOf([&] { searchAll(closed); });
    closed.zone(rz_CXDefs::eAngle, -18.0, 18.0);
    const double narrow = millisecondsOf([&] { searchAll(closed); });
    std::printf(
        "speed %dx%d h%.0f %s: training %.2f ms, features %.2f ms, search %.2f ms, one scale %.2f "
        "ms, one scale and a tenth of the turn %.2f ms\n",
        width, depth, height, wide ? "wide" : "plain", training / count, features, full / count,
        oneScale / count, narrow / count);
  }
  finder::wideVectorsAllowed = true;
}

// How much longer than its limit a run takes on a large picture.
void runLimits(const std::string& file) {
  const Font font(file, Font::sizeForCapHeight(file, 30.0));
  std::mt19937 random(5);
  const Picture picture = makePicture(font, kCapitals, Look(), random, 4000, 3000);
  const Trained t = trainGlyph(font, U'R', 0.0);
  for (const double limit : {0.0, 0.001, 0.005, 0.05, 0.1, 0.2}) {
    rzCXAlignResultSet set;
    const auto start = std::chrono::steady_clock::now();
    bool isStopped = false;
    try {
      rzAttentionTag tag(true);
      tag.attachTimeoutCustom(limit, 1);
      t.pattern.run(picture.image, searchParams(0.4, 3), set);
    } catch (const rzTimeout::InternalExpired&) {
      isStopped = true;
    }
    const std::chrono::duration<double, std::milli> passed =
        std::chrono::steady_clock::now() - start;
    std::printf("limit %.0f ms on 4000x3000: %s after %.1f ms, %zu results\n", 1e3 * limit,
                isStopped ? "stopped" : "ended", passed.count(), set.results().size());
  }
}

}  // namespace

int main(int argc, char** argv) {
  int pictures = 40;
  std::string file = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
  std::string what = "all";
  double height = 0;
  bool mixed = false;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--pictures" && i + 1 < argc) pictures = std::atoi(argv[++i]);
    if (arg == "--font" && i + 1 < argc) file = argv[++i];
    if (arg == "--what" && i + 1 < argc) what = argv[++i];
    if (arg == "--height" && i + 1 < argc) height = std::atof(argv[++i]);
    if (arg == "--train-blur" && i + 1 < argc) trainBlur = std::atof(argv[++i]);
    if (arg == "--mixed") mixed = true;
    if (arg == "-v") verbose = true;
  }
  const std::u32string& alphabet = mixed ? scene::kMixed : kCapitals;
  scene::Trials plain;
  plain.pictures = pictures;
  if (what == "all" || what == "find") {
    for (const double h : {11.0, 13.0, 15.0, 20.0, 28.0, 40.0, 60.0}) {
      if (height > 0 && h != height) continue;
      runFind(file, "plain", h, plain, alphabet);
    }
  }
  if (what == "all" || what == "looks") {
    const double h = height > 0 ? height : 28;
    scene::Trials trials = plain;
    trials.look.noise = 0;
    runFind(file, "no noise", h, trials, alphabet);
    trials.look.noise = 8;
    runFind(file, "noise 8", h, trials, alphabet);
    trials = plain;
    trials.covered = 0.25;
    runFind(file, "a quarter covered", h, trials, alphabet);
    trials = plain;
    trials.look.blur = 1.4;
    runFind(file, "blur 1.4", h, trials, alphabet);
    trials.look = {110.0, 130.0, 0.7, 3.0, 10.0};
    runFind(file, "contrast 20", h, trials, alphabet);
  }
  if (what == "all" || what == "pairs") {
    for (const double h : {15.0, 28.0, 50.0}) {
      if (height > 0 && h != height) continue;
      runPairs(file, h, alphabet);
    }
  }
  if (what == "all" || what == "speed") {
    for (const double h : {14.0, 20.0, 28.0, 40.0, 60.0}) runSpeed(file, h, kWidth, kHeight);
    for (const double h : {20.0, 40.0}) runSpeed(file, h, 2 * kWidth, 2 * kHeight);
    runLimits(file);
  }
  return 0;
}
