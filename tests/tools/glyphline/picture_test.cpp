// SPDX-License-Identifier: Apache-2.0
#include "picture.h"

#include <gtest/gtest.h>
#include <leptonica/allheaders.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "failure.h"

namespace {

using glyphline::readPicture;

constexpr int kWidth = 40;
constexpr int kHeight = 30;

/// A file that is gone when the test is over.
class Scratch {
 public:
  explicit Scratch(const std::string& name)
      : path_(std::filesystem::path(testing::TempDir()) / ("glyphline_" + name)) {}
  ~Scratch() { std::filesystem::remove(path_); }
  std::string path() const { return path_.string(); }
  void write(const std::string& bytes) const {
    std::ofstream(path_, std::ios::binary).write(bytes.data(), std::ssize(bytes));
  }

 private:
  std::filesystem::path path_;
};

// Left half dark, right half bright: survives every compression.
PIX* halves(int depth, unsigned dark, unsigned bright) {
  PIX* pix = pixCreate(kWidth, kHeight, depth);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) pixSetPixel(pix, x, y, x < kWidth / 2 ? dark : bright);
  }
  return pix;
}

unsigned rgb(unsigned red, unsigned green, unsigned blue) {
  return red << 24 | green << 16 | blue << 8 | 0xFF;
}

TEST(Picture, BecomesGreyFromEveryFormatAndDepth) {
  struct Row {
    const char* name;
    int format;
    int depth;
    unsigned dark, bright;  // as stored
    int expectedDark, expectedBright;
    int tolerance;
  };
  for (const Row& row : {
           Row{"grey.png", IFF_PNG, 8, 40, 200, 40, 200, 0},
           Row{"grey.bmp", IFF_BMP, 8, 40, 200, 40, 200, 0},
           Row{"grey.tif", IFF_TIFF_LZW, 8, 40, 200, 40, 200, 0},
           Row{"grey.pgm", IFF_PNM, 8, 40, 200, 40, 200, 0},
           Row{"grey.jpg", IFF_JFIF_JPEG, 8, 40, 200, 40, 200, 4},
           Row{"colour.webp", IFF_WEBP, 32, rgb(40, 40, 40), rgb(200, 200, 200), 40, 200, 6},
           Row{"deep.png", IFF_PNG, 16, 40 * 257, 200 * 257, 40, 200, 0},
           Row{"deep.tif", IFF_TIFF, 16, 40 * 257, 200 * 257, 40, 200, 0},
           Row{"deep.pgm", IFF_PNM, 16, 40 * 257, 200 * 257, 40, 200, 0},
           Row{"colour.png", IFF_PNG, 32, rgb(255, 0, 0), rgb(0, 255, 0), 76, 150, 1},
           Row{"colour.ppm", IFF_PNM, 32, rgb(0, 0, 255), rgb(255, 255, 0), 29, 226, 1},
           Row{"bilevel.png", IFF_PNG, 1, 1, 0, 0, 255, 0},
           Row{"bilevel.tif", IFF_TIFF_G4, 1, 1, 0, 0, 255, 0},
       }) {
    SCOPED_TRACE(row.name);
    const Scratch file(row.name);
    PIX* pix = halves(row.depth, row.dark, row.bright);
    ASSERT_EQ(pixWrite(file.path().c_str(), pix, row.format), 0);
    pixDestroy(&pix);
    const rzPelBuffer<unsigned char> picture = readPicture(file.path());
    ASSERT_EQ(picture.window(), rzPelRect(0, 0, kWidth, kHeight));
    for (const auto& [x, y] : {std::pair{3, 2}, std::pair{12, 27}}) {
      EXPECT_NEAR(*picture.pointToPel(x, y), row.expectedDark, row.tolerance);
      EXPECT_NEAR(*picture.pointToPel(kWidth - 1 - x, y), row.expectedBright, row.tolerance);
    }
  }
}

TEST(Picture, LaysTransparencyOverWhite) {
  const Scratch file("clear.png");
  PIX* pix = pixCreate(kWidth, kHeight, 32);  // black and wholly transparent
  pixSetSpp(pix, 4);
  ASSERT_EQ(pixWrite(file.path().c_str(), pix, IFF_PNG), 0);
  pixDestroy(&pix);
  EXPECT_EQ(*readPicture(file.path()).pointToPel(5, 5), 255);
}

TEST(Picture, RefusesWhatIsNoneOrCutShort) {
  const Scratch whole("whole.png");
  PIX* pix = halves(8, 40, 200);
  ASSERT_EQ(pixWrite(whole.path().c_str(), pix, IFF_PNG), 0);
  pixDestroy(&pix);
  std::ifstream in(whole.path(), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  const Scratch file("bad.png");
  for (const std::string& bad :
       {std::string(), std::string("P5"), std::string("no picture at all"), bytes.substr(0, 20),
        bytes.substr(0, bytes.size() / 2), std::string("P5\n99999999 99999999\n255\n")}) {
    file.write(bad);
    EXPECT_THROW(readPicture(file.path(), "--image"), glyphline::Failure) << bad.size();
  }
}

}  // namespace
