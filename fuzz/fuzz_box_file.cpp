// SPDX-License-Identifier: Apache-2.0
// Box files of a small picture.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "box_file.h"
#include "failure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  try {
    glyphline::parseBoxes(in, "fuzzed", 100, 100);
  } catch (const glyphline::Failure&) {
    // A refused input is an answer.
  }
  return 0;
}
