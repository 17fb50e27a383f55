// SPDX-License-Identifier: Apache-2.0
#include "tests/support/print/trials.h"

#include <algorithm>
#include <cmath>

#include "rz/angle.h"

namespace scene {

namespace {

constexpr std::size_t kGlyphs = 31;   // one and its clutter
constexpr std::size_t kSearches = 8;  // of each picture
constexpr double kSure = 0.7;         // scores of what is not there that are counted

Canvas emptyCanvas(int width, int height) {
  Canvas canvas{width, height, {}};
  canvas.ink.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0.0F);
  return canvas;
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

}  // namespace

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

Picture makePicture(const Font& font, const std::u32string& codes, const Look& look,
                    std::mt19937& random, int width, int height, double covered) {
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
      picture.glyphs.push_back({code, place});
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

namespace {

// The share of the glyph's ink, when it is drawn at `place`, that is ink of the picture as well.
double commonShare(const Font& font, char32_t code, const Placement& place, const Canvas& shown) {
  Canvas own = emptyCanvas(shown.width, shown.height);
  font.draw(code, place, own);
  double all = 0.0;
  double common = 0.0;
  for (std::size_t i = 0; i < own.ink.size(); ++i) {
    all += static_cast<double>(own.ink[i]);
    common += static_cast<double>(std::min(own.ink[i], shown.ink[i]));
  }
  return common / all;
}

}  // namespace

double containedShare(const Font& font, const Trained& t, const rzCXAlignResult& result,
                      const Canvas& shown) {
  const rzVector<2> origin = result.pose() * t.origin;
  const double degrees = rzDegree(result.pose().xRot()).toDouble();
  double best = 0.0;
  // What is there may lie a little beside the place that was found.
  for (const double dx : {-0.3, 0.0, 0.3}) {
    for (const double dy : {-0.3, 0.0, 0.3}) {
      const Placement place{origin.x() + dx, origin.y() + dy, degrees, result.xScale()};
      best = std::max(best, commonShare(font, t.code, place, shown));
    }
  }
  return best;
}

namespace {

void judgeRight(const Trained& t, const Placement& place, const rzCXAlignResult& right,
                Tally& tally) {
  const rzXform<2> truth = truthOf(t, place);
  ++tally.found;
  const double away = (right.pose() * t.centre - truth * t.centre).len();
  const double turned = rzDegree(right.pose().xRot() - truth.xRot()).toDouble();
  double turn = std::remainder(turned, isHalfTurned(t.code) ? 180.0 : 360.0);
  if (t.code == U'O') turn = 0.0;  // nearly a circle in most faces
  const double growth = right.xScale() / place.scale - 1.0;
  const bool isExact = away <= 0.25 && std::abs(turn) <= 0.5;
  tally.scores.push_back(right.score());
  if (right.score() < 0.7) ++tally.below7;
  if (right.score() < 0.8) ++tally.below8;
  if (isExact) ++tally.exact;
  if (!isExact || right.score() < 0.8) ++tally.missed[t.code];
  if (away > 1.0 || std::abs(turn) > 5.0) return;
  ++tally.close;
  tally.sumPlace += away * away;
  tally.sumAngle += turn * turn;
  tally.sumScale += growth * growth;
}

// What `result` was seen in.
std::string seenIn(const Trained& t, const rzCXAlignResult& result, const Picture& picture) {
  const rzVector<2> at = result.pose() * t.centre;
  const Picture::Shown* nearest = nullptr;
  double least = 1.3 * t.height;
  for (const Picture::Shown& shown : picture.glyphs) {
    const double away = (at - rzVector<2>(shown.place.x, shown.place.y)).len();
    if (away >= least) continue;
    least = away;
    nearest = &shown;
  }
  return nearest ? name(nearest->code) : "-";
}

}  // namespace

void judge(const Font& font, const Trained& t, const Placement& place,
           const std::vector<rzCXAlignResult>& results, const Picture& picture, Tally& tally) {
  const rzVector<2> at = truthOf(t, place) * t.centre;
  ++tally.trials;
  bool isFound = false;
  for (const rzCXAlignResult& r : results) {
    if ((r.pose() * t.centre - at).len() < 0.25 * t.height) {
      if (!isFound) judgeRight(t, place, r, tally);
      isFound = true;
      continue;
    }
    if (r.score() < kSure || containedShare(font, t, r, picture.canvas) > kContained) continue;
    ++tally.falseOnes;
    ++tally.confusions[name(t.code) + "<" + seenIn(t, r, picture)];
  }
  if (isFound) return;
  ++tally.missed[t.code];
  ++tally.below7;
  ++tally.below8;
  tally.scores.push_back(0.0);
}

namespace {

double rms(double sum, int count) { return std::sqrt(sum / std::max(1, count)); }

}  // namespace

double Tally::placeRms() const { return rms(sumPlace, close); }
double Tally::angleRms() const { return rms(sumAngle, close); }
double Tally::scaleRms() const { return rms(sumScale, close); }

double Tally::score(double quantile) {
  if (scores.empty()) return 0.0;
  std::sort(scores.begin(), scores.end());
  const auto last = static_cast<double>(scores.size() - 1);
  return scores[static_cast<std::size_t>(quantile * last)];
}

Tally runTrials(const Font& font, const std::u32string& alphabet, const Trials& trials) {
  std::vector<Trained> trained;
  for (const char32_t code : alphabet) trained.push_back(trainGlyph(font, code, trials.trainBlur));
  std::mt19937 random(trials.seed);
  Tally tally;
  for (int p = 0; p < trials.pictures; ++p) {
    std::u32string codes = alphabet;
    std::shuffle(codes.begin(), codes.end(), random);
    codes.resize(std::min(kGlyphs, codes.size()));
    const Picture picture =
        makePicture(font, codes, trials.look, random, kWidth, kHeight, trials.covered);
    const rzCXAlignRunParams params = searchParams(trials.accept, 3);
    const std::size_t searches = std::min(kSearches, picture.glyphs.size());
    for (std::size_t k = 0; k < searches; ++k) {
      const Picture::Shown& shown = picture.glyphs[k];
      const Trained& t = trained[alphabet.find(shown.code)];
      rzCXAlignResultSet set;
      t.pattern.run(picture.image, params, set);
      judge(font, t, shown.place, set.results(), picture, tally);
    }
  }
  return tally;
}

}  // namespace scene
