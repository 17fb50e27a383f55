// SPDX-License-Identifier: Apache-2.0
#include "rz/exception.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <sstream>

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

template <class T>
class FoundationErrors : public testing::Test {};

using Leaves = testing::Types<rzBadPointer, rzFailureCode, rzFileError, rzArchive::UnknownClass,
                              rzArchive::BadFormat, rzMathError::Singular, rzMathError::Overflow,
                              rzTimeout::Expired, rzTimeout::InternalExpired, rzPel::UnboundWindow,
                              rzPel::BadWindow, rzPel::BadSize, rz_PriorityQueueDefs::EmptyQueue,
                              rz_PriorityQueueDefs::BadHandle, rzCharCodeDefs::NotRepresentable>;
TYPED_TEST_SUITE(FoundationErrors, Leaves);

}  // namespace

TYPED_TEST(FoundationErrors, TripThroughAnArchiveKeepsClassAndMessage) {
  rzException* error = new TypeParam(std::string("why"));
  const std::unique_ptr<rzException> own(error);
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  rzPersistent::serializePointer(out, error);
  auto in = rzArchive::loadingFrom(bytes);
  rzException* back = nullptr;
  rzPersistent::serializePointer(in, back);
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->errorNumber(), TypeParam().errorNumber());
  EXPECT_STREQ(back->what(), "why");
  EXPECT_THROW(back->suicideAndRethrow(), TypeParam);
}

TEST(Exception, NumbersOfTheFoundationDiffer) {
  const std::set<rzLong> numbers{rzBadPointer().errorNumber(),
                                 rzFailureCode().errorNumber(),
                                 rzFileError().errorNumber(),
                                 rzArchive::UnknownClass().errorNumber(),
                                 rzArchive::UnknownVersion().errorNumber(),
                                 rzArchive::BadFormat().errorNumber(),
                                 rzMathError::Singular().errorNumber(),
                                 rzMathError::Overflow().errorNumber(),
                                 rzTimeout::Expired().errorNumber(),
                                 rzTimeout::InternalExpired().errorNumber(),
                                 rzPel::UnboundWindow().errorNumber(),
                                 rzPel::BadWindow().errorNumber(),
                                 rzPel::BadSize().errorNumber(),
                                 rz_PriorityQueueDefs::EmptyQueue().errorNumber(),
                                 rz_PriorityQueueDefs::BadHandle().errorNumber(),
                                 rzCharCodeDefs::NotRepresentable().errorNumber()};
  EXPECT_EQ(numbers.size(), 16u);
}

TEST(Exception, UnknownVersionKeepsNameAndNumberThroughAnArchive) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  rzArchive::UnknownVersion error("oc/arrange", 57);
  out || error;
  rzArchive::UnknownVersion back;
  auto in = rzArchive::loadingFrom(bytes);
  in || back;
  EXPECT_EQ(back.name(), "oc/arrange");
  EXPECT_EQ(back.number(), 57);
  EXPECT_STREQ(back.what(), error.what());
}

TEST(Exception, InternalExpiredKeepsItsCodeThroughAnArchive) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  rzTimeout::InternalExpired error("late", 0x80000064);
  out || error;
  rzTimeout::InternalExpired back;
  auto in = rzArchive::loadingFrom(bytes);
  in || back;
  EXPECT_EQ(back.code(), 0x80000064u);
}

TEST(Exception, ArchiveFormIsOneVersionByteForEachLevelThenTheMessage) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  rzMathError::Singular error("x");
  out || error;
  EXPECT_THAT(bytes, testing::ElementsAre(0, 0, 0, 1, 0, 0, 0, 'x'));
  for (const auto& [level, name] :
       {std::pair{0, "rzMathError::Singular"}, std::pair{1, "rzExceptionWithString"},
        std::pair{2, "rzException"}}) {
    Bytes newer = bytes;
    newer[static_cast<std::size_t>(level)] = 1;
    auto in = rzArchive::loadingFrom(newer);
    rzMathError::Singular back;
    try {
      in || back;
      ADD_FAILURE() << name;
    } catch (const rzArchive::UnknownVersion& unknown) {
      EXPECT_EQ(unknown.name(), name);
      EXPECT_EQ(unknown.number(), 0);
    }
  }
}

TEST(Exception, ExpiredAndInternalExpiredAreSiblings) {
  static_assert(!std::is_base_of_v<rzTimeout::Expired, rzTimeout::InternalExpired>);
  static_assert(!std::is_base_of_v<rzTimeout::InternalExpired, rzTimeout::Expired>);
  EXPECT_THROW(throw rzTimeout::Expired("x"), std::exception);
}

TEST(Exception, MessageIsWrittenToAStream) {
  std::ostringstream out;
  rzMathError::Overflow("too large").message_(out);
  EXPECT_EQ(out.str(), "too large");
}

namespace {

rzLong lastCode = 0;
void throwingConverter(rzLong code) { throw rzMathError::Overflow(std::to_string(code)); }
void silentConverter(rzLong code) { lastCode = code; }
rzLong codeOf(rzULong bits) { return static_cast<rzLong>(bits); }

}  // namespace

TEST(FailureCode, NegativeCodeNeverReturns) {
  EXPECT_NO_THROW(rfThrowExceptionOnFailure(0));
  EXPECT_NO_THROW(rfThrowExceptionOnFailure(0x7FFFFFFF));
  try {
    rfThrowExceptionOnFailure(codeOf(0x8000ABCD));
    FAIL();
  } catch (const rzFailureCode& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("0x8000ABCD"));
  }
}

TEST(FailureCode, ConverterOfTheCodesBlockIsAsked) {
  rfRegisterExceptionConverter(1000, &throwingConverter);
  rfRegisterExceptionConverter(1001, &silentConverter);
  EXPECT_THROW(rfThrowExceptionOnFailure(codeOf(0x80000000 + 1000 * 32)), rzMathError::Overflow);
  EXPECT_THROW(rfThrowExceptionOnFailure(codeOf(0x80000000 + 1000 * 32 + 31)),
               rzMathError::Overflow);
  const rzLong silent = codeOf(0x80000000 + 1001 * 32);
  EXPECT_THROW(rfThrowExceptionOnFailure(silent), rzFailureCode);
  EXPECT_EQ(lastCode, silent);
  EXPECT_THROW(rfThrowExceptionOnFailure(codeOf(0x80000000 + 999 * 32 + 31)), rzFailureCode);
}

TEST(AssertDeathTest, BrokenInvariantTellsSourceAndLine) {
  rstd_assert_(true, 1);
  EXPECT_DEATH(rstd_assert_(false, 4711), "exception_test.cpp:4711");
  EXPECT_DEATH(rf_Count(std::size_t{1} << 31), "types.h:");
}
