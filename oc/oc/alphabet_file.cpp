// SPDX-License-Identifier: Apache-2.0
#include "oc/alphabet_file.h"

#include <vector>

#include "rz/archive.h"
#include "rz/archive_file.h"

rzOCAlphabet rfOCReadAlphabet(const std::string& path) {
  const std::vector<unsigned char> payload = rfReadArchiveFile(path);
  rzArchive archive = rzArchive::loadingFrom(payload);
  rzOCAlphabet alphabet;
  archive >> alphabet;
  if (archive.remaining() != 0) {
    throw rzArchive::BadFormat(path + ": more bytes than an alphabet has.");
  }
  return alphabet;
}

void rfOCWriteAlphabet(const std::string& path, const rzOCAlphabet& alphabet) {
  std::vector<unsigned char> payload;
  rzArchive archive = rzArchive::storingTo(payload);
  archive << alphabet;
  rfWriteArchiveFile(path, payload);
}
