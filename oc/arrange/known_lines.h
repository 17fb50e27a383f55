// SPDX-License-Identifier: Apache-2.0
//
// Lines that were judged before. Many paths of a search end with the same line and differ in the
// lines before it; what the line adds to their costs is worked out once.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "oc/arrange/evaluate_path.h"
#include "rz/types.h"

/// What a line adds to the errors of a path, if it has a possible shape.
struct rz_JudgedLine {
  bool isPossible = true;
  rz_PathErrors errors;
};

/// Lines by number. A line is told by the line that it grew from, which ends one position earlier,
/// and the choice of its last position.
class rz_KnownLines {
 public:
  static constexpr rzLong kUnknown = -1;
  /// The empty line before the given position, from which lines that start there grow.
  static constexpr rzLong emptyAt(rzLong position) { return -2 - position; }

  /// No more than `capacity` lines are remembered.
  explicit rz_KnownLines(std::size_t capacity) : capacity_(capacity) {}

  const rz_JudgedLine& operator[](rzLong line) const {
    return lines_[static_cast<std::size_t>(line)];
  }
  /// The number of a line, or kUnknown. `from` may be unknown itself.
  rzLong find(rzLong from, rzLong choice) const {
    const auto found = numbers_.find(key_(from, choice));
    return found != numbers_.end() ? found->second : kUnknown;
  }
  /// Remembers a line that is not known yet, and gives its number; kUnknown if there is no room, or
  /// if nothing is known of the line that it grew from.
  rzLong add(rzLong from, rzLong choice, const rz_JudgedLine& line) {
    if (from == kUnknown || lines_.size() >= capacity_) return kUnknown;
    const rzLong number = rf_Count(lines_.size());
    lines_.push_back(line);
    numbers_.emplace(key_(from, choice), number);
    return number;
  }

 private:
  static std::uint64_t key_(rzLong from, rzLong choice) {
    return static_cast<std::uint64_t>(static_cast<rzULong>(from)) << 32 |
           static_cast<rzULong>(choice);
  }

  std::size_t capacity_;
  std::vector<rz_JudgedLine> lines_;
  std::unordered_map<std::uint64_t, rzLong> numbers_;  // by key
};
