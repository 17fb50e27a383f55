// SPDX-License-Identifier: Apache-2.0
//
// Archives as files. The file says what it is and proves that it is whole: the four bytes "OCAR",
// a format version (1), the length of the payload in 64 bits, the CRC-32 of the payload
// (ISO/IEC 13239, as in gzip), and the payload, which is what an rzArchive stored.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "rz/exception.h"
#include "rz/export.h"

/// A file or stream cannot be read or written; the message names it and the reason.
class RZ_API rzFileError : public rzExceptionWithString {
 public:
  explicit rzFileError(const std::string& message = {}) : rzExceptionWithString(message) {}
  RZ_EXCEPTION_LEAF(rzFileError)
};

/// Writes the file under a temporary name in the same folder, flushes it to the disk and renames
/// it, so `path` holds either the old content or the new one, never a part. Throws rzFileError.
RZ_API void rfWriteArchiveFile(const std::string& path, std::span<const unsigned char> payload);

/// The payload of the file. Throws rzFileError when it cannot be read, rzArchive::UnknownVersion
/// for a format version other than 1, and rzArchive::BadFormat for any other damage.
RZ_API std::vector<unsigned char> rfReadArchiveFile(const std::string& path);
