// SPDX-License-Identifier: Apache-2.0
#include "alphabet_file.h"

#include "oc/alphabet_file.h"

#include "char_list.h"
#include "failure.h"
#include "input_file.h"
#include "output_file.h"
#include "rz/archive.h"
#include "rz/archive_file.h"

namespace glyphline {

rzOCAlphabet readAlphabet(const std::string& path, const std::string& option) {
  const std::string name = inputName(path, option);
  try {
    return rfOCReadAlphabet(path);
  } catch (const rzFileError& error) {
    throw Failure(name + ": " + error.what());
  } catch (const rzException& error) {
    throw Failure(name + ": not an alphabet, or damaged: " + error.what());
  }
}

void writeAlphabet(const std::string& path, const rzOCAlphabet& alphabet) {
  requireReplaceable(path);
  try {
    rfOCWriteAlphabet(path, alphabet);
  } catch (const rzException& error) {
    throw Failure(error.what());
  }
}

std::vector<rzLong> keysOf(const std::u32string& text, const rzOCAlphabet& alphabet,
                           const std::string& path, const std::string& option) {
  std::vector<rzLong> keys;
  for (const char32_t character : text) {
    const auto key = static_cast<rzLong>(character);
    if (!alphabet.hasCharacter(key)) {
      throw Failure(path + ": " + option + ": the alphabet has no character \"" +
                    utf8Of(character) + "\"");
    }
    keys.push_back(key);
  }
  return keys;
}

}  // namespace glyphline
