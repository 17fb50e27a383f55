// SPDX-License-Identifier: Apache-2.0
//
// The shortest use of the library: a picture, an alphabet file and a text, a verdict for each
// character. The picture is a binary PGM, so that the example needs no library to read it.
//
//   verify label.oca picture.pgm 'LOT 4471B'
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "oc/oc.h"

int main(int argc, char** argv) try {
  if (argc != 4) return std::fputs("usage: verify ALPHABET PICTURE.pgm TEXT\n", stderr), 2;
  std::ifstream file(argv[2], std::ios::binary);
  std::string magic;
  int width = 0, height = 0, white = 0;
  file >> magic >> width >> height >> white;
  if (magic != "P5" || width < 1 || height < 1) return std::fputs("not a PGM\n", stderr), 2;
  file.get();
  std::vector<char> pels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  file.read(pels.data(), static_cast<std::streamsize>(pels.size()));

  const auto image = rfPelBufferFromPels(reinterpret_cast<const unsigned char*>(pels.data()), width,
                                         height, width);
  const std::string text = argv[3];
  rzOCArrangeResults results;
  rfOCArrange(image, rfOCReadAlphabet(argv[1]), {text.begin(), text.end()}, rzOCArrangeParams(),
              results);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isMatched = results.statusFlags()[i] == rzOCArrangeDefs::eMatched;
    std::printf("%c %s %.2f\n", text[i], isMatched ? "matched" : "-", results.scores()[i]);
  }
  return 0;
} catch (const rzException& failure) {
  std::fprintf(stderr, "%s\n", failure.what());
  return 2;
}
