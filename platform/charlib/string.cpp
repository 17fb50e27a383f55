// SPDX-License-Identifier: Apache-2.0
#include "rz/charlib/string.h"

#include <algorithm>
#include <new>
#include <string>

namespace {

template <class Char>
rsys_result clone(const Char* string, Char** copy) {
  if (!string || !copy) return RSYS_BAD_ARGUMENT;
  const std::size_t size = std::char_traits<Char>::length(string) + 1;
  Char* made = new (std::nothrow) Char[size];
  if (!made) return RSYS_NO_MEMORY;
  std::copy_n(string, size, made);
  *copy = made;
  return RSYS_SUCCESS;
}

template <class Char>
void release(Char** copy) {
  if (!copy) return;
  delete[] * copy;
  *copy = nullptr;
}

}  // namespace

rsys_result rstd_string_cloneA(const char* string, char** copy) { return clone(string, copy); }

rsys_result rstd_string_clone32(const rstd_char32* string, rstd_char32** copy) {
  return clone(string, copy);
}

void rstd_string_releaseA(char** copy) { release(copy); }

void rstd_string_release32(rstd_char32** copy) { release(copy); }
