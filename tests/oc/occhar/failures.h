// SPDX-License-Identifier: Apache-2.0
//
// The failure with this message, as a matcher for a function.
#pragma once

#include <gmock/gmock.h>

template <class Failure>
auto Fails(const char* message) {
  return testing::Throws<Failure>(testing::Property(&Failure::what, testing::StrEq(message)));
}
