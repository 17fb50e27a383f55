// SPDX-License-Identifier: Apache-2.0
//
// rzNMMatrix: a table of doubles whose size is known only when the program runs, such as the
// similarities of all pairs of characters. Elements are checked at each access.
#pragma once

#include <cstddef>
#include <vector>

#include "rz/export.h"
#include "rz/types.h"

class rzArchive;

class RZ_API rzNMMatrix {
 public:
  /// No rows and no columns.
  rzNMMatrix() = default;
  /// All zero. Throws rzMathError::Overflow for a negative size.
  rzNMMatrix(rzLong numRows, rzLong numColumns);

  rzLong numRows() const { return numRows_; }
  rzLong numColumns() const { return numColumns_; }

  /// Element in `row`, `column`, both counted from 0. Throws rzMathError::Overflow when there is
  /// no such element.
  double element(rzLong row, rzLong column) const { return values_[index_(row, column)]; }
  void element(rzLong row, rzLong column, double value) { values_[index_(row, column)] = value; }
  double operator()(rzLong row, rzLong column) const { return values_[index_(row, column)]; }
  double& operator()(rzLong row, rzLong column) { return values_[index_(row, column)]; }

  void swapRows(rzLong a, rzLong b);
  void swapColumns(rzLong a, rzLong b);
  /// Fills this matrix from the equally large block of `source` whose first element is at
  /// (`rowOffset`, `columnOffset`). Throws rzMathError::Overflow when the block does not lie in
  /// `source`, and then changes nothing.
  void copySub(const rzNMMatrix& source, rzLong rowOffset, rzLong columnOffset);

  bool operator==(const rzNMMatrix& other) const = default;

  friend RZ_API rzArchive& operator||(rzArchive& ar, rzNMMatrix& matrix);

 private:
  std::size_t index_(rzLong row, rzLong column) const;

  rzLong numRows_ = 0;
  rzLong numColumns_ = 0;
  std::vector<double> values_;  // by rows
};

/// Archive form: rows and columns as rzULong, the doubles by rows. Throws rzArchive::BadFormat when
/// the archive is too short for them, and then leaves `matrix` as it was.
RZ_API rzArchive& operator||(rzArchive& ar, rzNMMatrix& matrix);
