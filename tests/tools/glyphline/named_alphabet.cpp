// SPDX-License-Identifier: Apache-2.0
//
// named_alphabet OUT NAME: an alphabet of that name with one character of that name, which the
// command itself would not make.
#include <oc/oc.h>

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  rzPelBuffer<unsigned char> image(rzPelRect(0, 0, 20, 24));
  for (rzLong y = 0; y < 24; ++y) {
    for (rzLong x = 0; x < 20; ++x) {
      const bool isInk = y > 3 && y < 20 && x > 4 && (x < 9 || y < 8);
      *image.pointToPel(x, y) = isInk ? 20 : 230;
    }
  }
  rzOCAlphabet alphabet;
  alphabet.name(argv[2]);
  alphabet.add(new rzOCModel(65, image, image.window(), rzOCModel::eNormal, argv[2], argv[2]));
  rfOCWriteAlphabet(argv[1], alphabet);
  return 0;
}
