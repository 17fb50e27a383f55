// SPDX-License-Identifier: Apache-2.0
#include "rz/assert.h"

#include <cstdio>
#include <cstdlib>

void rf_AssertionFailed(const char* source, int line) noexcept {
  std::fprintf(stderr, "%s:%d: broken invariant\n", source, line);
  std::abort();
}
