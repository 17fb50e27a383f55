// SPDX-License-Identifier: Apache-2.0
// Everything that can be loaded from an archive. The first byte chooses what is expected.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "oc/oc.h"

namespace {

template <class T>
void load(const std::vector<std::uint8_t>& bytes) {
  auto archive = rzArchive::loadingFrom(bytes);
  T value;
  archive || value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::vector<std::uint8_t> bytes(data + 1, data + size);
  try {
    switch (data[0] % 7) {
      case 0:
        load<rzOCAlphabet>(bytes);
        break;
      case 1:
        load<rzOCModel>(bytes);
        break;
      case 2:
        load<rzOCKeySet>(bytes);
        break;
      case 3:
        load<rzOCLine>(bytes);
        break;
      case 4:
        load<rzOCLineArrangement>(bytes);
        break;
      case 5:
        load<rzOCArrangeParams>(bytes);
        break;
      default:
        load<rzOCArrangeResults>(bytes);
        break;
    }
  } catch (const rzException&) {
    // A refused input is an answer.
  }
  return 0;
}
