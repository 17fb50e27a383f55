// SPDX-License-Identifier: Apache-2.0
// Runs a fuzz target over every file of a folder, and over cut and bent copies of each: the
// everyday test that saved inputs still do no harm.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kMostCuts = 512;   // copies of one file that end early
constexpr std::size_t kMostBends = 512;  // copies of one file with one byte changed

Bytes contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

int replay(const Bytes& input) {
  int runs = 0;
  const auto run = [&runs](const Bytes& bytes) {
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    ++runs;
  };
  run(input);
  const std::size_t cutStep = input.size() / kMostCuts + 1;
  for (std::size_t length = 0; length < input.size(); length += cutStep) {
    run(Bytes(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(length)));
  }
  const std::size_t bendStep = input.size() / kMostBends + 1;
  for (std::size_t at = 0; at < input.size(); at += bendStep) {
    for (const unsigned flip : {0x01U, 0x80U, 0xFFU}) {
      Bytes bent = input;
      bent[at] = static_cast<std::uint8_t>(bent[at] ^ flip);
      run(bent);
    }
  }
  return runs;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: fuzz_TARGET CORPUS_FOLDER\n", stderr);
    return 2;
  }
  int runs = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    if (entry.is_regular_file()) runs += replay(contentOf(entry.path()));
  }
  std::printf("%d inputs\n", runs);
  return runs > 0 ? 0 : 1;
}
