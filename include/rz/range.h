// SPDX-License-Identifier: Apache-2.0
//
// rzRange: a closed interval of real numbers, as parameters such as "scales from 0.9 to 1.1" need.
// Ends are kept as given. A range whose start lies above its end, or that has a NaN, holds no
// number; all such ranges are equal to one another.
#pragma once

#include <limits>

#include "rz/export.h"

class rzArchive;

class rzRange {
 public:
  /// The empty range.
  constexpr rzRange() = default;
  constexpr rzRange(double start, double end) : start_(start), end_(end) {}

  constexpr double start() const { return start_; }
  constexpr double end() const { return end_; }
  constexpr void start(double value) { start_ = value; }
  constexpr void end(double value) { end_ = value; }

  /// From +infinity to -infinity: holds nothing.
  static constexpr rzRange EmptyRange() { return {}; }
  /// From -infinity to +infinity: holds every number.
  static constexpr rzRange FullRange() { return {-kInfinity, kInfinity}; }

  constexpr bool isEmpty() const { return !(start_ <= end_); }
  constexpr bool contains(double value) const { return start_ <= value && value <= end_; }

  /// Exact; all empty ranges are equal.
  constexpr bool operator==(const rzRange& other) const {
    if (isEmpty() || other.isEmpty()) return isEmpty() && other.isEmpty();
    return start_ == other.start_ && end_ == other.end_;
  }

 private:
  static constexpr double kInfinity = std::numeric_limits<double>::infinity();

  double start_ = kInfinity;
  double end_ = -kInfinity;
};

/// Archive form: start, end.
RZ_API rzArchive& operator||(rzArchive& ar, rzRange& range);
