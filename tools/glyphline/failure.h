// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <string>

namespace glyphline {

/// A bad call or a bad input, told in one line: what, where, why. Ends the command with status 2.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum ExitStatus { kAllMatched = 0, kSomeMissing = 1, kBadInput = 2 };

}  // namespace glyphline
