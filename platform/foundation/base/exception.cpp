// SPDX-License-Identifier: Apache-2.0
#include "rz/exception.h"

#include <ostream>

#include "rz/archive.h"

rzException::~rzException() = default;

RZ_DEFINE_EMPTY_LEVEL(rzException, rzPersistent)

rzExceptionWithString::rzExceptionWithString(const std::string& message) : text_(message) {}

rzExceptionWithString::rzExceptionWithString(const char* message) : text_(message ? message : "") {}

rzExceptionWithString::~rzExceptionWithString() = default;

void rzExceptionWithString::message_(std::ostream& out) const { out << text_; }

RZ_DEFINE_DISPATCH_SERIALIZE(rzExceptionWithString)

void rzExceptionWithString::serialize_(rzArchive& archive, unsigned char version) {
  if (version != 0) throw rzArchive::UnknownVersion("rzExceptionWithString", 0);
  rzException::dispatchSerialize(archive);
  archive || text_;
}
