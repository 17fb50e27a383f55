// SPDX-License-Identifier: Apache-2.0
#include "output_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "failure.h"

namespace glyphline {

void requireReplaceable(const std::string& path) {
  std::error_code unknown;  // what cannot be asked for fails with its reason when written
  const std::filesystem::file_status status = std::filesystem::status(path, unknown);
  if (!std::filesystem::exists(status) || std::filesystem::is_regular_file(status)) return;
  throw Failure(path + ": not a regular file, cannot be written whole or not at all");
}

void writeWhole(const std::string& path, const std::string& content) {
  requireReplaceable(path);
  const std::string scratch = path + ".part" + std::to_string(getpid());
  errno = 0;
  std::ofstream file(scratch, std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  if (!file || std::rename(scratch.c_str(), path.c_str()) != 0) {
    const std::string reason = errno != 0 ? std::strerror(errno) : "not written";
    std::remove(scratch.c_str());
    throw Failure(path + ": " + reason);
  }
}

}  // namespace glyphline
