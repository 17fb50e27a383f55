// SPDX-License-Identifier: Apache-2.0
#include "rz/nm_matrix.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "rz/archive.h"
#include "rz/math_error.h"

namespace {

void requireSize(bool ok) {
  if (!ok) throw rzMathError::Overflow("Matrix size out of range");
}

void requireIndex(bool ok) {
  if (!ok) throw rzMathError::Overflow("Matrix index out of range");
}

}  // namespace

rzNMMatrix::rzNMMatrix(rzLong numRows, rzLong numColumns)
    : numRows_(numRows), numColumns_(numColumns) {
  requireSize(numRows >= 0 && numColumns >= 0);
  values_.resize(static_cast<std::size_t>(numRows) * static_cast<std::size_t>(numColumns));
}

std::size_t rzNMMatrix::index_(rzLong row, rzLong column) const {
  requireIndex(row >= 0 && row < numRows_ && column >= 0 && column < numColumns_);
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(numColumns_) +
         static_cast<std::size_t>(column);
}

void rzNMMatrix::swapRows(rzLong a, rzLong b) {
  requireIndex(a >= 0 && a < numRows_ && b >= 0 && b < numRows_);
  for (rzLong column = 0; column < numColumns_; ++column) {
    std::swap((*this)(a, column), (*this)(b, column));
  }
}

void rzNMMatrix::swapColumns(rzLong a, rzLong b) {
  requireIndex(a >= 0 && a < numColumns_ && b >= 0 && b < numColumns_);
  for (rzLong row = 0; row < numRows_; ++row) std::swap((*this)(row, a), (*this)(row, b));
}

void rzNMMatrix::copySub(const rzNMMatrix& source, rzLong rowOffset, rzLong columnOffset) {
  requireIndex(rowOffset >= 0 && columnOffset >= 0 &&
               numRows_ <= static_cast<std::int64_t>(source.numRows_) - rowOffset &&
               numColumns_ <= static_cast<std::int64_t>(source.numColumns_) - columnOffset);
  std::vector<double> copied;
  copied.reserve(values_.size());
  for (rzLong row = 0; row < numRows_; ++row) {
    for (rzLong column = 0; column < numColumns_; ++column) {
      copied.push_back(source(rowOffset + row, columnOffset + column));
    }
  }
  values_ = std::move(copied);
}

rzArchive& operator||(rzArchive& ar, rzNMMatrix& matrix) {
  rzULong rows = static_cast<rzULong>(matrix.numRows_);
  rzULong columns = static_cast<rzULong>(matrix.numColumns_);
  ar || rows || columns;
  if (ar.isStoring()) {
    for (double& value : matrix.values_) ar || value;
    return ar;
  }
  constexpr rzULong kLargest = std::numeric_limits<rzLong>::max();
  const std::uint64_t count = std::uint64_t{rows} * columns;
  if (rows > kLargest || columns > kLargest || count > ar.remaining() / sizeof(double)) {
    throw rzArchive::BadFormat("Matrix is larger than its archive");
  }
  rzNMMatrix loaded(static_cast<rzLong>(rows), static_cast<rzLong>(columns));
  for (double& value : loaded.values_) ar || value;
  matrix = std::move(loaded);
  return ar;
}
