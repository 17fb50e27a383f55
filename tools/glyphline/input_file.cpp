// SPDX-License-Identifier: Apache-2.0
#include "input_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <ios>
#include <iostream>
#include <iterator>

#include "failure.h"

namespace glyphline {
namespace {

std::string contentOf(std::istream& in) {
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace

std::string inputName(const std::string& path, const std::string& option) {
  return option.empty() ? path : path + ": " + option;
}

std::string readInput(const std::string& path, const std::string& option) {
  if (path == "-") return contentOf(std::cin);
  errno = 0;
  try {
    std::ifstream file(path, std::ios::binary);
    if (file) return contentOf(file);
  } catch (const std::ios_base::failure&) {
    // A folder, for instance: the reason below says it.
  }
  throw Failure(inputName(path, option) + ": " +
                (errno != 0 ? std::strerror(errno) : "cannot be read"));
}

}  // namespace glyphline
