// SPDX-License-Identifier: Apache-2.0
#include "rz/nm_matrix.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "rz/archive.h"
#include "rz/math_error.h"

namespace {

// Element (i, j) is 10 i + j, so that it tells where it came from.
rzNMMatrix numbered(rzLong rows, rzLong columns) {
  rzNMMatrix m(rows, columns);
  for (rzLong i = 0; i < rows; ++i) {
    for (rzLong j = 0; j < columns; ++j) m(i, j) = 10.0 * i + j;
  }
  return m;
}

TEST(NMMatrix, WhatLiesOutsideIsRefusedAndChangesNothing) {
  rzNMMatrix m = numbered(2, 3);
  EXPECT_THROW(m(2, 0), rzMathError::Overflow);
  EXPECT_THROW(m.element(0, 3), rzMathError::Overflow);
  EXPECT_THROW(m.element(-1, 0, 5.0), rzMathError::Overflow);
  EXPECT_THROW(m.swapRows(0, 2), rzMathError::Overflow);
  EXPECT_THROW(m.swapColumns(-1, 0), rzMathError::Overflow);
  const rzLong most = std::numeric_limits<rzLong>::max();
  for (rzLong offset : {-1, 1, most}) {
    EXPECT_THROW(m.copySub(numbered(2, 3), offset, 0), rzMathError::Overflow);
    EXPECT_THROW(m.copySub(numbered(2, 3), 0, offset), rzMathError::Overflow);
  }
  EXPECT_THROW(rzNMMatrix(-1, 1), rzMathError::Overflow);
  EXPECT_EQ(m, numbered(2, 3));
}

TEST(NMMatrix, ArchiveTripKeepsShapeAndNumbers) {
  for (rzNMMatrix m : {numbered(2, 3), numbered(0, 5), numbered(1, 1)}) {
    std::vector<unsigned char> bytes;
    {
      auto out = rzArchive::storingTo(bytes);
      out << m;
    }
    EXPECT_EQ(bytes.size(), 8u + 8u * static_cast<unsigned>(m.numRows() * m.numColumns()));
    rzNMMatrix loaded = numbered(4, 4);
    auto in = rzArchive::loadingFrom(bytes);
    in >> loaded;
    EXPECT_EQ(loaded, m);
  }
}

TEST(NMMatrix, SizesThatTheArchiveCannotHoldAreRefusedBeforeRoomIsMade) {
  const rzULong most = std::numeric_limits<rzULong>::max();
  const rzULong sizes[][2] = {{most, most}, {most, 1},        {1, most},        {65536, 65536},
                              {2, 2},       {0x80000000u, 2}, {0x80000000u, 0}, {0x20000001u, 8}};
  for (const auto& size : sizes) {
    std::vector<unsigned char> bytes;
    {
      auto out = rzArchive::storingTo(bytes);
      out << size[0] << size[1] << 1.0 << 2.0 << 3.0;
    }
    rzNMMatrix loaded = numbered(1, 2);
    auto in = rzArchive::loadingFrom(bytes);
    EXPECT_THROW(in >> loaded, rzArchive::BadFormat) << size[0] << " x " << size[1];
    EXPECT_EQ(loaded, numbered(1, 2));
  }
}

}  // namespace
