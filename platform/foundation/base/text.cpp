// SPDX-License-Identifier: Apache-2.0
#include "rz/text.h"

#include <algorithm>
#include <iomanip>
#include <locale>
#include <sstream>

namespace {

std::ostringstream classicStream() {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  return stream;
}

template <class T>
std::string printed(T value) {
  std::ostringstream stream = classicStream();
  stream << value;
  return stream.str();
}

std::string withoutTrailingZeros(std::string text) {
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

}  // namespace

std::string rfStr(bool value) { return value ? "true" : "false"; }
std::string rfStr(rzLong value) { return printed(value); }
std::string rfStr(rzULong value) { return printed(value); }
std::string rfStr(double value) { return printed(value); }

std::string rfDbl(double value, rzLong places, bool dropZeros) {
  std::ostringstream stream = classicStream();
  stream << std::fixed << std::setprecision(std::max<rzLong>(places, 0)) << value;
  return dropZeros ? withoutTrailingZeros(stream.str()) : stream.str();
}

std::string rfHex(rzULong value, rzLong digits) {
  std::ostringstream stream = classicStream();
  stream << "0x" << std::hex << std::uppercase << std::setfill('0') << std::setw(digits) << value;
  return stream.str();
}
