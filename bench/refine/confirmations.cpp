// SPDX-License-Identifier: Apache-2.0
//
// How rightly does the second look confirm inferred positions? Every capital and digit is looked
// for, at a slightly wrong inferred pose, where every capital and digit is printed: confirmed
// where it stands itself, well printed, worn or half covered, is right, where another one stands
// is wrong. Prints the shares for each face, and the pairs that were confirmed wrongly. The last
// face has strokes of one and a half pels: blur takes it hardest.
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "oc/alphabet.h"
#include "oc/refine_arrangement.h"
#include "rz/rect.h"
#include "tests/support/print/scene.h"

namespace {

const std::string kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr int kColumns = 6;
constexpr double kStep = 70.0;       // pels between the letters
constexpr double kCapHeight = 24.0;  // pels
// Pels from the true place: right up to the first, and only roughly from the second on.
constexpr double kNear = 0.15 * kCapHeight;
constexpr double kPrecise = 1.5;

/// What is done to the print.
struct Wear {
  const char* name;
  double noise;
  double blur;
  double covered;  // share of each letter's height that is wiped out, from below
};
constexpr Wear kWears[] = {{"well printed", 4.0, 0.7, 0.0},
                           {"noise sigma 20", 20.0, 0.7, 0.0},
                           {"blur sigma 1.5", 4.0, 1.5, 0.0},
                           {"a quarter wiped out", 4.0, 0.7, 0.25},
                           {"half wiped out", 4.0, 0.7, 0.5}};

rzVector<2> placeOf(std::size_t i) {
  return {60.0 + kStep * static_cast<double>(i % kColumns),
          60.0 + kStep * static_cast<double>(i / kColumns)};
}

rzPtrHandle_const<rzOCAlphabet> alphabetOf(const scene::Font& font) {
  std::vector<rzPtrHandle_const<rzOCModel>> models;
  for (const char letter : kLetters) {
    rzVector<2> origin;
    rzPelBuffer<unsigned char> image =
        scene::trainingImage(font, static_cast<char32_t>(letter), 0.7, origin);
    image.clientFromImageXform(rzXform<2>(rzMatrix<2>(), -origin));
    models.push_back(
        new rzOCModel(letter, image, image.window(), rzOCModel::eNormal, std::string(1, letter)));
  }
  return new rzOCAlphabet(models);
}

void wipe(scene::Canvas& canvas, const rzVector<2>& place, double share) {
  for (int y = static_cast<int>(place.y() - share * kCapHeight); y < place.y() + 8; ++y) {
    for (int x = static_cast<int>(place.x()) - 25; x < place.x() + 25; ++x) {
      canvas.ink[static_cast<std::size_t>(y * canvas.width + x)] = 0.0F;
    }
  }
}

rzPelBuffer<unsigned char> printed(const scene::Font& font, const Wear& wear) {
  constexpr int kSide = 480;
  scene::Canvas canvas{kSide, kSide, std::vector<float>(kSide * kSide, 0.0F)};
  for (std::size_t i = 0; i < kLetters.size(); ++i) {
    const rzVector<2> place = placeOf(i);
    font.draw(static_cast<char32_t>(kLetters[i]), {place.x(), place.y(), 0.0, 1.0}, canvas);
    if (wear.covered > 0.0) wipe(canvas, place, wear.covered);
  }
  scene::Look look;
  look.noise = wear.noise;
  look.blur = wear.blur;
  std::mt19937 random(3);
  return scene::photograph(canvas, look, random);
}

void measure(const char* file, const Wear& wear) {
  const scene::Font font(file, scene::Font::sizeForCapHeight(file, kCapHeight));
  const rzPtrHandle_const<rzOCAlphabet> alphabet = alphabetOf(font);
  const rzPelBuffer<unsigned char> image = printed(font, wear);
  std::mt19937 random(5);
  std::uniform_real_distribution<double> off(-1.0, 1.0);
  int right = 0;
  int roughly = 0;
  int misplaced = 0;
  int wrong = 0;
  std::string pairs;
  for (std::size_t k = 0; k < kLetters.size(); ++k) {
    const rzOCModel& model = *alphabet->character(kLetters[k]);
    const rzVector<2> middle =
        model.image().clientFromImageXform() * rzRect(model.imageArea()).center();
    std::vector<rz_Pose> poses;
    for (std::size_t i = 0; i < kLetters.size(); ++i) {
      poses.emplace_back(placeOf(i) + rzVector<2>(off(random), off(random)), rzDegree(off(random)),
                         1.0 + 0.02 * off(random));
    }
    const std::vector<rzLong> keys(kLetters.size(), kLetters[k]);
    std::vector<rzOCArrangeDefs::CharStatus> statuses(kLetters.size(), rzOCArrangeDefs::eInferred);
    std::vector<double> scores(kLetters.size(), 0.0);
    rf_RefineArrangement(image, alphabet, keys, poses, statuses, scores, nullptr, 0);
    for (std::size_t i = 0; i < kLetters.size(); ++i) {
      if (statuses[i] != rzOCArrangeDefs::eMatched) continue;
      if (i != k) {
        ++wrong;
        pairs += std::string(" ") + kLetters[k] + kLetters[i];
      } else {
        const double distance = (rzXform<2>(poses[i]) * middle - placeOf(i) - middle).len();
        ++(distance < kNear ? right : misplaced);
        roughly += distance >= kPrecise && distance < kNear ? 1 : 0;
      }
    }
  }
  const int all = static_cast<int>(kLetters.size());
  std::printf(
      "  %-20s right %5.1f %% (roughly %4.1f %%)  misplaced %4.1f %%  others %4.1f %% :%s\n",
      wear.name, 100.0 * right / all, 100.0 * roughly / all, 100.0 * misplaced / all,
      100.0 * wrong / (all * (all - 1)), pairs.c_str());
}

}  // namespace

int main() {
  for (const char* file : {"/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf",
                           "/usr/share/fonts/truetype/liberation/LiberationMono-Regular.ttf",
                           "/usr/share/fonts/truetype/freefont/FreeMono.ttf"}) {
    std::printf("%s\n", file);
    for (const Wear& wear : kWears) measure(file, wear);
  }
}
