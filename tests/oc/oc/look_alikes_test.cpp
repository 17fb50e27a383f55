// SPDX-License-Identifier: Apache-2.0
//
// What compilation says of real faces: the pairs that people mix up stand out.
#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <string>

#include "oc/alphabet.h"
#include "support/font.h"

namespace {

struct Face {
  const char* name;
  const char* file;
};

std::ostream& operator<<(std::ostream& out, const Face& face) { return out << face.name; }

class LookAlikes : public testing::TestWithParam<Face> {};

// In faces of one width, as marking uses them. Where 0 is a narrow oval beside a round O the two
// are no look-alikes: a confusion of 0.2 is right there.
INSTANTIATE_TEST_SUITE_P(
    Faces, LookAlikes,
    testing::Values(Face{"DejaVuSansMono", "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"},
                    Face{"LiberationMono",
                         "/usr/share/fonts/truetype/liberation/LiberationMono-Regular.ttf"},
                    Face{"FreeMonoBold", "/usr/share/fonts/truetype/freefont/FreeMonoBold.ttf"},
                    Face{"OCRB", "/usr/share/fonts/opentype/ocr-b/OCRB.otf"}),
    [](const auto& face) { return std::string(face.param.name); });

TEST_P(LookAlikes, ComeOutClearlyHigherThanOtherPairs) {
  const std::string characters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789l";
  const std::vector<std::string> pairs = {"0O", "1I", "1l", "Il", "5S", "8B", "2Z"};
  const Font font(GetParam().file, 32);
  std::vector<rzPtrHandle_const<rzOCModel>> models;
  for (const char c : characters) models.push_back(font.character(c));
  rzOCAlphabet alphabet(models);
  alphabet.compile();

  std::vector<double> others;
  for (const char a : characters) {
    for (const char b : characters) {
      const bool isPair = std::any_of(pairs.begin(), pairs.end(), [&](const std::string& pair) {
        return pair.find(a) != std::string::npos && pair.find(b) != std::string::npos;
      });
      if (!isPair) others.push_back(alphabet.confusion(a, b));
    }
  }
  std::sort(others.begin(), others.end());
  const double median = others[others.size() / 2];
  const double highest = others[others.size() * 3 / 4];
  std::cout << std::fixed << std::setprecision(2) << "others: median " << median
            << ", three quarters below " << highest << '\n';
  double sum = 0.0;
  for (const std::string& pair : pairs) {
    const double there = alphabet.confusion(pair[0], pair[1]);
    const double back = alphabet.confusion(pair[1], pair[0]);
    std::cout << pair << "  " << there << "  " << back << '\n';
    EXPECT_GT(std::min(there, back), highest) << pair;
    sum += there + back;
  }
  EXPECT_GT(sum / static_cast<double>(2 * pairs.size()), 2.0 * median);
}

}  // namespace
