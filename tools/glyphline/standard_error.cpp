// SPDX-License-Identifier: Apache-2.0
#include "standard_error.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace glyphline {
namespace {

std::mutex& gate() {
  static std::mutex mutex;
  return mutex;
}

}  // namespace

void writeToStandardError(const std::string& text) {
  const std::lock_guard<std::mutex> lock(gate());
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
}

StandardErrorMute::StandardErrorMute() : lock_(gate()) {
  std::fflush(stderr);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) return;
  kept_ = dup(STDERR_FILENO);
  if (kept_ >= 0) dup2(nowhere, STDERR_FILENO);
  close(nowhere);
}

StandardErrorMute::~StandardErrorMute() {
  if (kept_ < 0) return;
  std::fflush(stderr);
  dup2(kept_, STDERR_FILENO);
  close(kept_);
}

}  // namespace glyphline
