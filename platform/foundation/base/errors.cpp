// SPDX-License-Identifier: Apache-2.0
//
// The exceptions of the foundation with their numbers.
#include "rz/archive.h"
#include "rz/archive_file.h"
#include "rz/char_code.h"
#include "rz/math_error.h"
#include "rz/pel_error.h"
#include "rz/priority_queue_defs.h"
#include "rz/ptr_handle.h"
#include "rz/text.h"
#include "rz/timeout.h"

RZ_DEFINE_EXCEPTION_LEAF(rzBadPointer, rzExceptionWithString, 0x10000100)
RZ_DEFINE_EXCEPTION_LEAF(rzFailureCode, rzExceptionWithString, 0x10000101)
RZ_DEFINE_EXCEPTION_LEAF(rzFileError, rzExceptionWithString, 0x10000102)
RZ_DEFINE_EXCEPTION_IDENTITY(rzArchive::UnknownVersion, 0x10000108)
RZ_DEFINE_EXCEPTION_LEAF(rzArchive::UnknownClass, rzExceptionWithString, 0x10000109)
RZ_DEFINE_EXCEPTION_LEAF(rzArchive::BadFormat, rzExceptionWithString, 0x1000010A)
RZ_DEFINE_EXCEPTION_LEAF(rzMathError::Singular, rzExceptionWithString, 0x10000110)
RZ_DEFINE_EXCEPTION_LEAF(rzMathError::Overflow, rzExceptionWithString, 0x10000111)
RZ_DEFINE_EXCEPTION_LEAF(rzTimeout::Expired, rzExceptionWithString, 0x10000118)
RZ_DEFINE_EXCEPTION_IDENTITY(rzTimeout::InternalExpired, 0x10000119)
RZ_DEFINE_EXCEPTION_LEAF(rzPel::UnboundWindow, rzExceptionWithString, 0x10000120)
RZ_DEFINE_EXCEPTION_LEAF(rzPel::BadWindow, rzExceptionWithString, 0x10000121)
RZ_DEFINE_EXCEPTION_LEAF(rzPel::BadSize, rzExceptionWithString, 0x10000122)
RZ_DEFINE_EXCEPTION_LEAF(rz_PriorityQueueDefs::EmptyQueue, rzExceptionWithString, 0x10000128)
RZ_DEFINE_EXCEPTION_LEAF(rz_PriorityQueueDefs::BadHandle, rzExceptionWithString, 0x10000129)
RZ_DEFINE_EXCEPTION_LEAF(rzCharCodeDefs::NotRepresentable, rzExceptionWithString, 0x10000130)

void rf_ThrowBadPointer() { throw rzBadPointer("Null handle dereferenced"); }

rzArchive::UnknownVersion::UnknownVersion(const std::string& name, rzLong number)
    : rzExceptionWithString("Unknown version in archive: " + name + " " + rfStr(number)),
      name_(name),
      number_(number) {}

RZ_DEFINE_DISPATCH_SERIALIZE(rzArchive::UnknownVersion)

void rzArchive::UnknownVersion::serialize_(rzArchive& archive, unsigned char version) {
  if (version != 0) throw UnknownVersion("rzArchive::UnknownVersion", 0);
  rzExceptionWithString::dispatchSerialize(archive);
  archive || name_ || number_;
}

RZ_DEFINE_DISPATCH_SERIALIZE(rzTimeout::InternalExpired)

void rzTimeout::InternalExpired::serialize_(rzArchive& archive, unsigned char version) {
  if (version != 0) throw rzArchive::UnknownVersion("rzTimeout::InternalExpired", 0);
  rzExceptionWithString::dispatchSerialize(archive);
  archive || code_;
}
