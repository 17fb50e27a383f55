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

#include "bench/finder/scene.h"
#include "platform/vision/finder/cpu_variants.h"
#include "rz/angle.h"
#include "rz/attention.h"
#include "rz/cx_align.h"
#include "rz/timeout.h"

namespace {

using scene::Canvas;
using scene::Font;
using scene::Look;
using scene::Placement;

constexpr int kWidth = 640;
constexpr int kHeight = 480;
constexpr double kContained = 0.94;  // share of ink from which a glyph counts as part of another
const std::u32string kCapitals = U"ABCDEFGHJKLMNOPQRSTUVWXYZ0123456789";
const std::u32string kMixed = U"ABDEGHKNRSTabdefghkmnpqrstuwxyz234579";

Canvas emptyCanvas(int width, int height) {
  Canvas canvas{width, height, {}};
  canvas.ink.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0.0F);
  return canvas;
}

double seconds() {
  timespec t;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

rzPelBuffer<unsigned char> doubled(const rzPelBuffer_const<unsigned char>& image) {
  rzPelBuffer<unsigned char> out(rzPelRect(0, 0, 2 * image.width(), 2 * image.height()), 32);
  for (int y = 0; y < out.height(); ++y) {
    for (int x = 0; x < out.width(); ++x) {
      const double u = std::clamp((x + 0.5) / 2 - 0.5, 0.0, image.width() - 1.0);
      const double v = std::clamp((y + 0.5) / 2 - 0.5, 0.0, image.height() - 1.0);
      const int i = std::min(static_cast<int>(u), image.width() - 2);
      const int j = std::min(static_cast<int>(v), image.height() - 2);
      const double a = u - i, b = v - j;
      const auto at = [&](int p, int q) { return static_cast<double>(*image.pointToPel(p, q)); };
      *out.pointToPel(x, y) = static_cast<unsigned char>(
          std::floor((1 - b) * ((1 - a) * at(i, j) + a * at(i + 1, j)) +
                     b * ((1 - a) * at(i, j + 1) + a * at(i + 1, j + 1)) + 0.5));
    }
  }
  out.clientFromImageXform(rzXform<2>(rzMatrix<2>(0.5, 0, 0, 0.5), rzVector<2>(0, 0)));
  return out;
}

struct Trained {
  char32_t code;
  rzVector<2> origin;
  rzVector<2> centre;  // of the ink box, client
  double height;
  double width;
  rzPelBuffer<unsigned char> image;
  rzCXAlignPattern pattern;
};

Trained trainGlyph(const Font& font, char32_t code, double blur) {
  Trained t;
  t.code = code;
  t.image = scene::trainingImage(font, code, blur, t.origin);
  const scene::InkBox box = font.inkBox(code);
  t.centre = t.origin + rzVector<2>((box.left + box.right) / 2, (box.top + box.bottom) / 2);
  t.height = box.bottom - box.top;
  t.width = box.right - box.left;
  if (t.image.width() < 15 || t.image.height() < 15) t.image = doubled(t.image);
  t.pattern.train(t.image, 3);
  return t;
}

rzCXAlignRunParams searchParams(double accept, int count) {
  rzCXAlignRunParams params;
  params.acceptThreshold(accept);
  params.zoneEnable(3);
  params.zone(rz_CXDefs::eAngle, -179.0, 180.0);
  params.zone(rz_CXDefs::eScale, 0.9, 1.1);
  params.xyOverlap(0.2);
  params.numToFind(count);
  return params;
}

rzXform<2> truthOf(const Trained& t, const Placement& place) {
  const rzXform<2> turn(rzVector<2>(place.x, place.y), place.scale, 1.0, rzRadian(0.0),
                        rzRadian(rzDegree(place.degrees)));
  return turn * rzXform<2>(rzMatrix<2>(), -t.origin);
}

struct Tally {
  int trials = 0;
  int found = 0;  // in the right place
  int exact = 0;  // within 0.25 pel and 0.5 degree
  int below7 = 0;
  int below8 = 0;
  int falseOnes = 0;  // at 0.7 and elsewhere
  int ontoOther = 0;
  double sumPlace = 0, sumAngle = 0, sumScale = 0, sumScore = 0;
  std::vector<double> scores;
  std::map<char32_t, int> missed;
  std::map<std::string, int> confusions;
};

// A picture with one of each of `codes` at random poses, apart from one another.
struct Picture {
  Canvas canvas;
  rzPelBuffer<unsigned char> image;
  std::vector<std::pair<char32_t, Placement>> glyphs;
};

// Takes the share `share` of the ink within `radius` of (x, y) away, from one side.
void cover(Canvas& canvas, double x, double y, double radius, double degrees, double share) {
  const rzVector<2> side(1.0, rzDegree(degrees));
  std::vector<std::pair<double, std::size_t>> pels;
  double all = 0.0;
  for (std::size_t i = 0; i < canvas.ink.size(); ++i) {
    const rzVector<2> d(static_cast<double>(i % static_cast<std::size_t>(canvas.width)) - x,
                        static_cast<double>(i / static_cast<std::size_t>(canvas.width)) - y);
    if (canvas.ink[i] <= 0.0F || d.len() > radius) continue;
    pels.emplace_back(d.dot(side), i);
    all += static_cast<double>(canvas.ink[i]);
  }
  std::sort(pels.begin(), pels.end());
  double gone = 0.0;
  for (const auto& [along, i] : pels) {
    if (gone >= share * all) break;
    gone += static_cast<double>(canvas.ink[i]);
    canvas.ink[i] = 0.0F;
  }
}

Picture makePicture(const Font& font, const std::u32string& codes, const Look& look,
                    std::mt19937& random, int width = kWidth, int height = kHeight,
                    double covered = 0.0) {
  Canvas canvas = emptyCanvas(width, height);
  Picture picture;
  struct Disk {
    double x, y, r;
  };
  std::vector<Disk> disks;
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  for (const char32_t code : codes) {
    const scene::InkBox box = font.inkBox(code);
    Placement place;
    place.degrees = 360.0 * unit(random) - 180.0;
    place.scale = 0.9 + 0.2 * unit(random);
    const double r =
        0.5 * place.scale * std::hypot(box.right - box.left, box.bottom - box.top) + 1.5;
    for (int attempt = 0; attempt < 200; ++attempt) {
      const double x = r + 3 + (width - 2 * r - 6) * unit(random);
      const double y = r + 3 + (height - 2 * r - 6) * unit(random);
      const bool isFree = std::none_of(disks.begin(), disks.end(), [&](const Disk& d) {
        return std::hypot(d.x - x, d.y - y) < d.r + r;
      });
      if (!isFree) continue;
      disks.push_back({x, y, r});
      const rzXform<2> turn(rzVector<2>(), place.scale, 1.0, rzRadian(0.0),
                            rzRadian(rzDegree(place.degrees)));
      const rzVector<2> middle((box.left + box.right) / 2, (box.top + box.bottom) / 2);
      const rzVector<2> origin = rzVector<2>(x, y) - turn * middle;
      place.x = origin.x();
      place.y = origin.y();
      font.draw(code, place, canvas);
      if (covered > 0.0) cover(canvas, x, y, r, 360.0 * unit(random), covered);
      picture.glyphs.emplace_back(code, place);
      break;
    }
  }
  picture.image = scene::photograph(canvas, look, random);
  picture.canvas = canvas;
  return picture;
}

std::string name(char32_t code) { return std::string(1, static_cast<char>(code)); }

// Looks the same, or nearly so, after half a turn.
bool isHalfTurned(char32_t code) {
  return std::u32string(U"HINOSXZ08sxzo").find(code) != std::u32string::npos;
}

// The share of the trained glyph's ink, where it was found, that is ink of the picture as well.
double containedShare(const Font& font, const Trained& t, const rzCXAlignResult& result,
                      const Canvas& shown) {
  Canvas own = emptyCanvas(shown.width, shown.height);
  const rzVector<2> origin = result.pose() * t.origin;
  const double degrees = rzDegree(result.pose().xRot()).toDouble();
  font.draw(t.code, {origin.x(), origin.y(), degrees, result.xScale()}, own);
  double all = 0.0;
  double common = 0.0;
  for (std::size_t i = 0; i < own.ink.size(); ++i) {
    all += static_cast<double>(own.ink[i]);
    common += static_cast<double>(std::min(own.ink[i], shown.ink[i]));
  }
  return common / all;
}

void judge(const Font& font, const Trained& t, const Placement& place,
           const std::vector<rzCXAlignResult>& results, const Picture& picture, Tally& tally,
           bool verbose) {
  const rzXform<2> truth = truthOf(t, place);
  const rzVector<2> at = truth * t.centre;
  ++tally.trials;
  const rzCXAlignResult* right = nullptr;
  for (const rzCXAlignResult& r : results) {
    const double away = (r.pose() * t.centre - at).len();
    if (away < 0.25 * t.height) {
      if (!right) right = &r;
      continue;
    }
    if (r.score() < 0.7) continue;
    if (containedShare(font, t, r, picture.canvas) > kContained) continue;
    ++tally.falseOnes;
    for (const auto& [code, other] : picture.glyphs) {
      const rzVector<2> d = r.pose() * t.centre - rzVector<2>(other.x, other.y);
      if (d.len() < 1.3 * t.height) {
        ++tally.confusions[name(t.code) + "<" + name(code)];
        break;
      }
    }
  }
  if (!right) {
    if (verbose) {
      std::printf("  %s: missed at %.1f %.1f, %.1f degrees, scale %.3f\n", name(t.code).c_str(),
                  at.x(), at.y(), place.degrees, place.scale);
      for (const rzCXAlignResult& r : results) {
        const rzVector<2> p = r.pose() * t.centre;
        std::printf("      %.1f %.1f score %.3f\n", p.x(), p.y(), r.score());
      }
    }
    ++tally.missed[t.code];
    ++tally.below7;
    ++tally.below8;
    tally.scores.push_back(0);
    return;
  }
  ++tally.found;
  const double dPlace = (right->pose() * t.centre - at).len();
  double dAngle = (right->pose().xRot() - truth.xRot()).toDouble() * 180.0 / 3.14159265358979323846;
  dAngle = std::remainder(dAngle, isHalfTurned(t.code) ? 180.0 : 360.0);
  if (t.code == U'O') dAngle = 0.0;  // nearly a circle in most faces
  const double dScale = right->xScale() / place.scale - 1.0;
  const bool isExact = dPlace <= 0.25 && std::abs(dAngle) <= 0.5;
  tally.scores.push_back(right->score());
  if (right->score() < 0.7) ++tally.below7;
  if (right->score() < 0.8) ++tally.below8;
  if (isExact) ++tally.exact;
  if (!isExact || right->score() < 0.8) {
    ++tally.missed[t.code];
    if (verbose) {
      std::printf("  %s: place %.2f angle %.2f scale %.3f score %.3f\n", name(t.code).c_str(),
                  dPlace, dAngle, dScale, right->score());
    }
  }
  if (dPlace < 1.0 && std::abs(dAngle) < 5.0) {
    tally.sumPlace += dPlace * dPlace;
    tally.sumAngle += dAngle * dAngle;
    tally.sumScale += dScale * dScale;
    tally.sumScore += 1;
  }
}

struct Setting {
  const char* name;
  double height;
  Look look;
  double covered = 0.0;
};

bool verbose = false;
double trainBlur = 0.0;

void runFind(const std::string& file, const Setting& setting, int pictures,
             const std::u32string& alphabet) {
  const Font font(file, Font::sizeForCapHeight(file, setting.height));
  std::vector<Trained> trained;
  for (const char32_t code : alphabet) trained.push_back(trainGlyph(font, code, trainBlur));
  std::mt19937 random(4711);
  Tally tally;
  double time = 0.0;
  int runs = 0;
  for (int p = 0; p < pictures; ++p) {
    std::u32string codes = alphabet;
    std::shuffle(codes.begin(), codes.end(), random);
    codes.resize(std::min<std::size_t>(31, codes.size()));
    const Picture picture =
        makePicture(font, codes, setting.look, random, kWidth, kHeight, setting.covered);
    const rzCXAlignRunParams params = searchParams(0.4, 3);
    for (std::size_t k = 0; k < std::min<std::size_t>(8, picture.glyphs.size()); ++k) {
      const auto& [code, place] = picture.glyphs[k];
      const char32_t wanted = code;
      const auto t = std::find_if(trained.begin(), trained.end(),
                                  [&](const Trained& x) { return x.code == wanted; });
      rzCXAlignResultSet set;
      const double before = seconds();
      t->pattern.run(picture.image, params, set);
      if (k > 0) {
        time += seconds() - before;
        ++runs;
      }
      judge(font, *t, place, set.results(), picture, tally, verbose);
    }
  }
  std::sort(tally.scores.begin(), tally.scores.end());
  const double n = tally.trials;
  const double m = std::max(1.0, tally.sumScore);
  std::printf(
      "%-26s h%3.0f n%4d found %6.2f%% exact %6.2f%% <.7 %5.2f%% <.8 %5.2f%% p5 %.3f med %.3f "
      "false %.3f/run place %.3f angle %.3f scale %.2f%% %.2f ms\n",
      setting.name, setting.height, tally.trials, 100 * tally.found / n, 100 * tally.exact / n,
      100 * tally.below7 / n, 100 * tally.below8 / n, tally.scores[tally.scores.size() / 20],
      tally.scores[tally.scores.size() / 2], tally.falseOnes / n, std::sqrt(tally.sumPlace / m),
      std::sqrt(tally.sumAngle / m), 100 * std::sqrt(tally.sumScale / m), 1e3 * time / runs);
  std::string line;
  for (const auto& [code, count] : tally.missed) line += " " + name(code) + std::to_string(count);
  for (const auto& [pair, count] : tally.confusions) {
    line += " [" + pair + " " + std::to_string(count) + "]";
  }
  if (!line.empty()) std::printf("    %s\n", line.c_str());
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

double millisecondsOf(int times, const auto& work) {
  const double before = seconds();
  for (int i = 0; i < times; ++i) work();
  return 1e3 * (seconds() - before) / times;
}

// One search, its parts, and the effect of closed or narrow zones.
void runSpeed(const std::string& file, double height, int width, int depth) {
  const Font font(file, Font::sizeForCapHeight(file, height));
  std::mt19937 random(11);
  const Picture picture = makePicture(font, kCapitals.substr(0, 31), Look(), random, width, depth);
  const std::u32string wanted = U"ABKR5";
  std::vector<Trained> trained;
  const double training = millisecondsOf(1, [&] {
    for (const char32_t code : wanted) trained.push_back(trainGlyph(font, code, 0.0));
  });
  for (const bool wide : {true, false}) {
    finder::wideVectorsAllowed = wide;
    const auto searchAll = [&](const rzCXAlignRunParams& params) {
      rzCXAlignResultSet set;
      for (const Trained& t : trained) t.pattern.run(picture.image, params, set);
    };
    constexpr int kTimes = 5;
    const double fresh = millisecondsOf(kTimes, [&] { searchAll(searchParams(0.4, 3)); });
    const rzCXAlignRunParams warm = searchParams(0.4, 3);
    searchAll(warm);
    const double full = millisecondsOf(kTimes, [&] { searchAll(warm); });
    rzCXAlignRunParams closed = searchParams(0.4, 3);
    closed.zoneEnable(1);
    searchAll(closed);
    const double oneScale = millisecondsOf(kTimes, [&] { searchAll(closed); });
    closed.zone(rz_CXDefs::eAngle, -18.0, 18.0);
    const double narrow = millisecondsOf(kTimes, [&] { searchAll(closed); });
    const auto count = static_cast<double>(wanted.size());
    std::printf(
        "speed %dx%d h%.0f %s: training %.2f ms, picture %.2f ms, search %.2f ms, one scale %.2f "
        "ms, one scale and a tenth of the turn %.2f ms\n",
        width, depth, height, wide ? "wide" : "plain", training / count, fresh - full, full / count,
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
  int pictures = 12;
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
  const std::u32string& alphabet = mixed ? kMixed : kCapitals;
  const Look plain;
  if (what == "all" || what == "find") {
    for (const double h : {11.0, 13.0, 15.0, 20.0, 28.0, 40.0, 60.0}) {
      if (height > 0 && h != height) continue;
      runFind(file, {"plain", h, plain}, pictures, alphabet);
    }
  }
  if (what == "all" || what == "looks") {
    const double h = height > 0 ? height : 28;
    Look look;
    look.noise = 0;
    runFind(file, {"no noise", h, look}, pictures, alphabet);
    look = plain;
    look.noise = 8;
    runFind(file, {"noise 8", h, look}, pictures, alphabet);
    runFind(file, {"a quarter covered", h, plain, 0.25}, pictures, alphabet);
    look = plain;
    look.blur = 1.4;
    runFind(file, {"blur 1.4", h, look}, pictures, alphabet);
    look = plain;
    look.ink = 110;
    look.paper = 130;
    look.noise = 3;
    look.ramp = 10;
    runFind(file, {"contrast 20", h, look}, pictures, alphabet);
  }
  if (what == "all" || what == "pairs") {
    for (const double h : {15.0, 28.0, 50.0}) {
      if (height > 0 && h != height) continue;
      runPairs(file, h, alphabet);
    }
  }
  if (what == "all" || what == "speed") {
    for (const double h : {14.0, 28.0, 40.0, 60.0}) runSpeed(file, h, kWidth, kHeight);
    runSpeed(file, 40.0, 2 * kWidth, 2 * kHeight);
    runLimits(file);
  }
  return 0;
}
