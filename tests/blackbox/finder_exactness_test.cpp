// SPDX-License-Identifier: Apache-2.0
//
// What the pattern finder promises, held against pictures of print with known truth: some trials of
// each kind, always the same ones. bench/finder measures the same with many.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "rz/angle.h"
#include "tests/support/print/trials.h"

namespace {

using scene::Font;
using scene::Look;
using scene::Picture;
using scene::Placement;
using scene::Trained;
using Image = rzPelBuffer<unsigned char>;

const std::string kFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

Font fontOf(double height) { return {kFont, Font::sizeForCapHeight(kFont, height)}; }

constexpr double kAny = 1e9;  // is not asked for

struct Bar {
  const char* name;
  double height;  // of the capitals, pels
  Look look;
  double covered;  // share of each character's ink
  double found;    // share, at least
  double below7;   // share that scores so, at most
  double below8;
  double falseOnes;  // for each search, at most
  double place;      // root mean squares, at most: pels
  double angle;      // degrees
  double scale;      // relative
};

constexpr Look kPlain;
constexpr Look kQuiet{40.0, 210.0, 0.7, 0.0, 30.0};
constexpr Look kFaint{110.0, 130.0, 0.7, 3.0, 10.0};

class Exactness : public testing::TestWithParam<Bar> {};

TEST_P(Exactness, ReachesItsBar) {
  const Bar& bar = GetParam();
  scene::Trials trials;
  trials.look = bar.look;
  trials.covered = bar.covered;
  trials.pictures = 10;
  const scene::Tally tally = scene::runTrials(fontOf(bar.height), scene::kCapitals, trials);
  EXPECT_GE(tally.share(tally.found), bar.found);
  EXPECT_LE(tally.share(tally.below7), bar.below7);
  EXPECT_LE(tally.share(tally.below8), bar.below8);
  EXPECT_LE(tally.share(tally.falseOnes), bar.falseOnes);
  EXPECT_LE(tally.placeRms(), bar.place);
  EXPECT_LE(tally.angleRms(), bar.angle);
  EXPECT_LE(tally.scaleRms(), bar.scale);
}

INSTANTIATE_TEST_SUITE_P(
    Pictures, Exactness,
    testing::Values(
        Bar{"11_pels", 11, kPlain, 0.0, 0.95, 0.005, 0.03, kAny, 0.05, kAny, kAny},
        Bar{"15_pels", 15, kPlain, 0.0, 0.995, 0.005, 0.03, 0.01, 0.05, kAny, kAny},
        Bar{"28_pels", 28, kPlain, 0.0, 0.995, 0.005, 0.03, 0.01, 0.05, kAny, kAny},
        Bar{"40_pels", 40, kPlain, 0.0, 0.995, 0.005, 0.03, 0.01, 0.05, 0.15, 0.0025},
        Bar{"60_pels", 60, kPlain, 0.0, 0.995, 0.005, 0.03, 0.01, 0.05, 0.15, 0.0025},
        Bar{"without_noise", 28, kQuiet, 0.0, 0.995, 0.005, 0.03, 0.01, 0.03, kAny, kAny},
        Bar{"a_quarter_covered", 28, kPlain, 0.25, 0.9, kAny, kAny, 0.02, kAny, kAny, kAny},
        Bar{"contrast_of_20_greys", 28, kFaint, 0.0, 0.97, 0.005, 0.03, 0.01, kAny, kAny, kAny}),
    [](const auto& test) { return std::string("Of_") + test.param.name; });

double bestScore(const rzCXAlignPattern& pattern, const Image& image,
                 const rzCXAlignRunParams& params) {
  rzCXAlignResultSet set;
  pattern.run(image, params, set);
  return set.results().empty() ? 0.0 : set.results().front().score();
}

TEST(PatternFinder, OtherCharactersSeldomReachSevenTenths) {
  constexpr double kSize = 15.0;
  const Font font = fontOf(kSize);
  std::vector<Trained> trained;
  for (const char32_t code : scene::kCapitals) trained.push_back(trainGlyph(font, code, 0.0));
  std::mt19937 random(99);
  const rzCXAlignRunParams params = scene::searchParams(0.5, 1);
  int pairs = 0;
  int high = 0;
  for (const char32_t shown : scene::kCapitals) {
    const Picture picture = makePicture(font, std::u32string(1, shown), Look(), random, 90, 90);
    for (const Trained& t : trained) {
      if (t.code == shown) continue;
      rzCXAlignResultSet set;
      t.pattern.run(picture.image, params, set);
      ++pairs;
      if (set.results().empty() || set.results().front().score() < 0.7) continue;
      if (containedShare(font, t, set.results().front(), picture.canvas) < scene::kContained)
        ++high;
    }
  }
  EXPECT_LT(high, 0.005 * pairs);
}

Image changed(const Image& image, double gain, double offset) {
  Image result(image.window(), 32);
  for (rzLong y = 0; y < image.height(); ++y) {
    for (rzLong x = 0; x < image.width(); ++x) {
      const double grey = gain * *image.pointToPel(x, y) + offset;
      *result.pointToPel(x, y) =
          static_cast<unsigned char>(std::lround(std::clamp(grey, 0.0, 255.0)));
    }
  }
  return result;
}

// Characters of different kinds, one in each picture.
struct Single {
  Trained glyph;
  Picture picture;
};

std::vector<Single> singles(const Look& look) {
  const Font font = fontOf(24.0);
  std::mt19937 random(3);
  std::vector<Single> all;
  for (const char32_t code : std::u32string(U"AGKRSW258")) {
    all.push_back({trainGlyph(font, code, 0.0),
                   makePicture(font, std::u32string(1, code), look, random, 80, 80)});
  }
  return all;
}

TEST(PatternFinder, GainAndOffsetHardlyChangeAScore) {
  struct Light {
    double gain, offset;
  };
  const Look middling{95.0, 150.0, 0.7, 0.0, 0.0};
  for (const Single& s : singles(middling)) {
    const rzCXAlignRunParams params = scene::searchParams(0.4, 1);
    const double plain = bestScore(s.glyph.pattern, s.picture.image, params);
    for (const Light& light :
         {Light{0.3, 0.0}, {0.3, 150.0}, {0.6, 40.0}, {1.0, 80.0}, {2.0, -90.0}}) {
      const Image other = changed(s.picture.image, light.gain, light.offset);
      EXPECT_NEAR(bestScore(s.glyph.pattern, other, params), plain, 0.03)
          << scene::name(s.glyph.code) << " gain " << light.gain;
    }
  }
}

TEST(PatternFinder, LightOnDarkIsNeverDarkOnLight) {
  for (const Single& s : singles(Look())) {
    const Image negative = changed(s.picture.image, -1.0, 255.0);
    const rzCXAlignRunParams params = scene::searchParams(0.4, 1);
    EXPECT_GT(bestScore(s.glyph.pattern, s.picture.image, params), 0.8);
    EXPECT_LT(bestScore(s.glyph.pattern, negative, params), 0.5) << scene::name(s.glyph.code);
  }
}

// The values of a search as one thing is changed evenly.
struct Seen {
  double score;
  double awayX, awayY;  // from the true place
  double turned;        // from the true angle, degrees
};

Seen seenAt(const Font& font, const Trained& t, const Placement& place) {
  constexpr int kSide = 90;
  scene::Canvas canvas{kSide, kSide, std::vector<float>(kSide * kSide, 0.0F)};
  font.draw(t.code, place, canvas);
  std::mt19937 random;
  const Look quiet{40.0, 210.0, 0.7, 0.0, 0.0};
  rzCXAlignResultSet set;
  t.pattern.run(scene::photograph(canvas, quiet, random), scene::searchParams(0.4, 1), set);
  if (set.results().empty()) return {};
  const rzCXAlignResult& best = set.results().front();
  const rzXform<2> truth = truthOf(t, place);
  const rzVector<2> away = best.pose() * t.centre - truth * t.centre;
  const double turn = rzDegree(best.pose().xRot() - truth.xRot()).toDouble();
  return {best.score(), away.x(), away.y(), std::remainder(turn, 360.0)};
}

// How far the values jump from one picture to the next, at most.
Seen greatestSteps(const Font& font, const Trained& t, const std::vector<Placement>& places) {
  Seen steps{};
  Seen last = seenAt(font, t, places.front());
  for (const Placement& place : places) {
    const Seen seen = seenAt(font, t, place);
    steps.score = std::max(steps.score, std::abs(seen.score - last.score));
    steps.awayX = std::max(steps.awayX, std::abs(seen.awayX - last.awayX));
    steps.awayY = std::max(steps.awayY, std::abs(seen.awayY - last.awayY));
    steps.turned = std::max(steps.turned, std::abs(seen.turned - last.turned));
    last = seen;
  }
  return steps;
}

struct Sweep {
  const char* name;
  double height;
  double dx, dy, degrees;  // of one step
  int steps;
  double place, angle;  // how far they may jump: pels, degrees
};

class Smoothness : public testing::TestWithParam<Sweep> {};

// Grey levels are whole numbers, so values move in small steps even where nothing jumps.
TEST_P(Smoothness, HasNoSteps) {
  const Sweep& sweep = GetParam();
  const Font font = fontOf(sweep.height);
  for (const char32_t code : std::u32string(U"KS")) {
    const Trained t = trainGlyph(font, code, 0.0);
    std::vector<Placement> places;
    for (int i = 0; i <= sweep.steps; ++i) {
      places.push_back({37.3 + i * sweep.dx, 55.6 + i * sweep.dy, 7.3 + i * sweep.degrees, 1.0});
    }
    const Seen steps = greatestSteps(font, t, places);
    EXPECT_LT(steps.score, 0.01) << scene::name(code);
    EXPECT_LT(steps.awayX, sweep.place) << scene::name(code);
    EXPECT_LT(steps.awayY, sweep.place) << scene::name(code);
    EXPECT_LT(steps.turned, sweep.angle) << scene::name(code);
  }
}

INSTANTIATE_TEST_SUITE_P(Of, Smoothness,
                         testing::Values(Sweep{"x", 24, 0.01, 0.0, 0.0, 210, 0.01, 0.1},
                                         Sweep{"both", 24, 0.007, -0.01, 0.0, 210, 0.01, 0.1},
                                         Sweep{"small", 13, 0.01, 0.003, 0.0, 210, 0.015, 0.25},
                                         Sweep{"turn", 24, 0.0, 0.0, 0.03, 300, 0.01, 0.1},
                                         Sweep{"large", 40, 0.01, 0.0, 0.01, 150, 0.01, 0.05}),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
