// SPDX-License-Identifier: Apache-2.0
#include "rz/exception.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "rz/archive.h"
#include "rz/archive_file.h"
#include "rz/char_code.h"
#include "rz/math_error.h"
#include "rz/pel_error.h"
#include "rz/priority_queue_defs.h"
#include "rz/ptr_handle.h"
#include "rz/timeout.h"
#include "rz/types.h"

namespace {

using Bytes = std::vector<unsigned char>;

template <class Error>
rzLong numberAfterTrip() {
  rzException* error = new Error(std::string("why"));
  const std::unique_ptr<rzException> own(error);
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  rzPersistent::serializePointer(out, error);
  auto in = rzArchive::loadingFrom(bytes);
  rzException* back = nullptr;
  rzPersistent::serializePointer(in, back);
  EXPECT_STREQ(back->what(), "why");
  const rzLong number = back->errorNumber();
  EXPECT_EQ(number, Error().errorNumber());
  EXPECT_THROW(back->suicideAndRethrow(), Error);
  return number;
}

template <class... Errors>
std::set<rzLong> numbersAfterTrip() {
  return {numberAfterTrip<Errors>()...};
}

}  // namespace

TEST(Exception, EachClassKeepsItsMessageAndItsOwnNumberThroughAnArchive) {
  const auto numbers =
      numbersAfterTrip<rzBadPointer, rzFailureCode, rzFileError, rzArchive::UnknownClass,
                       rzArchive::BadFormat, rzMathError::Singular, rzMathError::Overflow,
                       rzTimeout::Expired, rzTimeout::InternalExpired, rzPel::UnboundWindow,
                       rzPel::BadWindow, rzPel::BadSize, rz_PriorityQueueDefs::EmptyQueue,
                       rz_PriorityQueueDefs::BadHandle, rzCharCodeDefs::NotRepresentable>();
  EXPECT_EQ(numbers.size(), 15u);
  EXPECT_FALSE(numbers.contains(rzArchive::UnknownVersion().errorNumber()));
}

TEST(Exception, ArchiveFormIsOneVersionByteForEachLevelThenTheMessage) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  rzMathError::Singular error("x");
  out || error;
  EXPECT_THAT(bytes, testing::ElementsAre(0, 0, 0, 1, 0, 0, 0, 'x'));
  for (std::size_t level = 0; level < 3; ++level) {
    Bytes newer = bytes;
    newer[level] = 1;
    auto in = rzArchive::loadingFrom(newer);
    rzMathError::Singular back;
    EXPECT_THROW(in || back, rzArchive::UnknownVersion) << level;
  }
}

namespace {

void throwingConverter(rzLong code) { throw rzMathError::Overflow(std::to_string(code)); }
void silentConverter(rzLong) {}
rzLong failureCode(rzULong bits) { return static_cast<rzLong>(0x80000000 + bits); }

}  // namespace

TEST(FailureCode, NegativeCodeNeverReturnsAndIsAskedOfTheConverterOfItsBlock) {
  rfRegisterExceptionConverter(1000, &throwingConverter);
  rfRegisterExceptionConverter(1001, &silentConverter);
  EXPECT_NO_THROW(rfThrowExceptionOnFailure(0));
  EXPECT_NO_THROW(rfThrowExceptionOnFailure(0x7FFFFFFF));
  for (const rzULong own : {1000u * 32, 1000u * 32 + 31})
    EXPECT_THROW(rfThrowExceptionOnFailure(failureCode(own)), rzMathError::Overflow);
  for (const rzULong other : {0xABCDu, 999u * 32 + 31, 1001u * 32})
    EXPECT_THROW(rfThrowExceptionOnFailure(failureCode(other)), rzFailureCode);
}

TEST(AssertDeathTest, BrokenInvariantTellsSourceAndLine) {
  rstd_assert_(true, 1);
  EXPECT_DEATH(rstd_assert_(false, 4711), "exception_test.cpp:4711");
  EXPECT_DEATH(rf_Count(std::size_t{1} << 31), "types.h:");
}
