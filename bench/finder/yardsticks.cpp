// SPDX-License-Identifier: Apache-2.0
//
// The pattern finder beside other finders: the same characters in the same pictures, in one run on
// one core. Times are those of the search; preparing the templates is not counted.
//
//   finder_yardsticks [--searches N] [--font FILE] [--height PELS] [--fast]
//
// --fast leaves out the slowest one.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "bench/finder/rivals.h"
#include "rz/angle.h"

namespace {

using scene::Picture;
using scene::Trained;

// Characters that are not part of another one.
const std::u32string kOnlyThemselves = U"AGKMRSWXZ2457";

struct Case {
  Picture picture;
  Trained glyph;
  scene::Placement truth;
};

double seconds() {
  timespec t;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

std::vector<Case> casesOf(const std::string& file, double height, int count) {
  const scene::Font font(file, scene::Font::sizeForCapHeight(file, height));
  std::mt19937 random(4711);
  std::vector<Case> cases;
  for (int i = 0; i < count; ++i) {
    std::u32string codes = scene::kCapitals;
    std::shuffle(codes.begin(), codes.end(), random);
    codes.resize(31);
    Picture picture = scene::makePicture(font, codes, scene::Look(), random);
    const Picture::Shown shown =
        *std::find_if(picture.glyphs.begin(), picture.glyphs.end(), [](const Picture::Shown& g) {
          return kOnlyThemselves.find(g.code) != kOnlyThemselves.npos;
        });
    cases.push_back({std::move(picture), scene::trainGlyph(font, shown.code, 0.0), shown.place});
  }
  return cases;
}

struct Row {
  int found = 0;
  double squares = 0.0;  // of the distances of those found, pels
  double turns = 0.0;    // degrees
  double time = 0.0;
};

void judge(const Case& c, const rivals::Hit& hit, Row& row) {
  const double away = (hit.centre - scene::truthOf(c.glyph, c.truth) * c.glyph.centre).len();
  if (hit.score <= 0.0 || away > 0.25 * c.glyph.height) return;
  ++row.found;
  row.squares += away * away;
  const double turn = std::remainder(hit.degrees - c.truth.degrees,
                                     scene::isHalfTurned(c.glyph.code) ? 180.0 : 360.0);
  if (c.glyph.code != U'O') row.turns += turn * turn;
}

rivals::Hit ownHit(const Trained& glyph, const Picture& picture, const rzCXAlignRunParams& params) {
  rzCXAlignResultSet set;
  glyph.pattern.run(picture.image, params, set);
  if (set.results().empty()) return {};
  const rzCXAlignResult& best = set.results().front();
  return {best.pose() * glyph.centre, rzDegree(best.pose().xRot()).toDouble(), best.xScale(),
          best.score()};
}

void print(const char* title, const Row& row, std::size_t cases, double own) {
  const double n = std::max(1, row.found);
  std::printf(
      "  %-34s %9.2f ms  found %5.1f %%  place %.3f pel  angle %.2f  ours is %.1f times "
      "faster\n",
      title, 1e3 * row.time / static_cast<double>(cases),
      100.0 * row.found / static_cast<double>(cases), std::sqrt(row.squares / n),
      std::sqrt(row.turns / n), row.time / own);
  std::fflush(stdout);
}

void compare(const std::string& file, double height, int searches, bool isFast) {
  const std::vector<Case> cases = casesOf(file, height, searches);
  std::printf("characters %.0f pels high, %d searches in 640x480:\n", height, searches);
  Row fresh;
  Row warm;
  for (const Case& c : cases) {
    const rzCXAlignRunParams params = scene::searchParams(0.4, 1);
    double before = seconds();
    judge(c, ownHit(c.glyph, c.picture, params), fresh);
    fresh.time += seconds() - before;
    before = seconds();
    judge(c, ownHit(c.glyph, c.picture, params), warm);
    warm.time += seconds() - before;
  }
  print("ours with the picture's features", fresh, cases.size(), fresh.time);
  print("ours, features at hand", warm, cases.size(), fresh.time);
  std::vector<std::unique_ptr<rivals::Rival>> others;
  others.push_back(rivals::gradientResponses());
  others.push_back(rivals::pyramidCorrelation());
  if (!isFast) others.push_back(rivals::fullCorrelation());
  for (const auto& rival : others) {
    Row row;
    for (const Case& c : cases) {
      rival->train(c.glyph);
      const double before = seconds();
      const rivals::Hit hit = rival->find(c.picture.image);
      row.time += seconds() - before;
      judge(c, hit, row);
    }
    print(rival->title(), row, cases.size(), fresh.time);
  }
}

}  // namespace

int main(int argc, char** argv) {
  int searches = 12;
  double height = 0.0;
  bool isFast = false;
  std::string file = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--searches" && i + 1 < argc) searches = std::atoi(argv[++i]);
    if (arg == "--font" && i + 1 < argc) file = argv[++i];
    if (arg == "--height" && i + 1 < argc) height = std::atof(argv[++i]);
    if (arg == "--fast") isFast = true;
  }
  for (const double h : {20.0, 28.0, 40.0}) {
    if (height <= 0.0 || h == height) compare(file, h, searches, isFast);
  }
  return 0;
}
