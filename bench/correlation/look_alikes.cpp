// SPDX-License-Identifier: Apache-2.0
//
// What compilation says of pairs that people mix up, beside what it says of all others, in faces
// that marking uses. Each pair both ways: how far the first passes for the second, and back.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "oc/alphabet.h"
#include "support/font.h"

namespace {

const std::string kCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789l";
const std::vector<std::string> kPairs = {"0O", "1I", "1l", "Il", "5S", "8B", "2Z"};
constexpr unsigned kSize = 32;  // pels of the em square

struct Face {
  const char* name;
  const char* file;
};
constexpr Face kFaces[] = {
    {"DejaVuSansMono", "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"},
    {"LiberationMono", "/usr/share/fonts/truetype/liberation/LiberationMono-Regular.ttf"},
    {"FreeMonoBold", "/usr/share/fonts/truetype/freefont/FreeMonoBold.ttf"},
    {"OCRB", "/usr/share/fonts/opentype/ocr-b/OCRB.otf"},
    {"DejaVuSansBold", "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"}};

rzOCAlphabet compiledAlphabet(const Face& face) {
  const Font font(face.file, kSize);
  std::vector<rzPtrHandle_const<rzOCModel>> models;
  for (const char c : kCharacters) models.push_back(font.character(c));
  rzOCAlphabet alphabet(models);
  alphabet.compile();
  return alphabet;
}

bool isLookAlike(char a, char b) {
  return std::any_of(kPairs.begin(), kPairs.end(), [&](const std::string& pair) {
    return pair.find(a) != std::string::npos && pair.find(b) != std::string::npos;
  });
}

// Of all ordered pairs that nobody calls look-alikes, ascending.
std::vector<double> otherConfusions(const rzOCAlphabet& alphabet) {
  std::vector<double> others;
  for (const char a : kCharacters) {
    for (const char b : kCharacters) {
      if (a != b && !isLookAlike(a, b)) others.push_back(alphabet.confusion(a, b));
    }
  }
  std::sort(others.begin(), others.end());
  return others;
}

}  // namespace

int main() {
  std::printf("%-15s", "");
  for (const std::string& pair : kPairs) std::printf("  %c for %c ", pair[0], pair[1]);
  std::printf("  others: median, 3/4, 95 %%\n");
  for (const Face& face : kFaces) {
    const rzOCAlphabet alphabet = compiledAlphabet(face);
    std::printf("%-15s", face.name);
    for (const std::string& pair : kPairs) {
      std::printf("  %.2f/%.2f", alphabet.confusion(pair[0], pair[1]),
                  alphabet.confusion(pair[1], pair[0]));
    }
    const std::vector<double> others = otherConfusions(alphabet);
    const auto at = [&](std::size_t percent) { return others[others.size() * percent / 100]; };
    std::printf("  %.2f %.2f %.2f\n", at(50), at(75), at(95));
  }
}
