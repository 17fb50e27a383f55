// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "rz/archive.h"
#include "rz/range.h"
#include "rz/rect.h"
#include "rz/rigid.h"
#include "rz/vector.h"
#include "rz/xform.h"

namespace {

using Bytes = std::vector<unsigned char>;

template <class T>
Bytes stored(T value) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  out || value;
  return bytes;
}

Bytes numbers(std::initializer_list<double> values) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  for (double value : values) out << value;
  return bytes;
}

// Stored as the numbers given, loaded as it was, and refused without change at every shorter
// length.
template <class T>
void expectForm(const T& value, const Bytes& form) {
  EXPECT_EQ(stored(value), form);
  T loaded{};
  {
    auto in = rzArchive::loadingFrom(form);
    in || loaded;
    EXPECT_EQ(loaded, value);
    EXPECT_EQ(in.remaining(), 0u);
  }
  for (std::size_t length = 0; length < form.size(); ++length) {
    T untouched{};
    const Bytes cut(form.begin(), form.begin() + static_cast<std::ptrdiff_t>(length));
    auto in = rzArchive::loadingFrom(cut);
    EXPECT_THROW(in || untouched, rzArchive::BadFormat) << length;
    EXPECT_EQ(untouched, T{}) << length;
  }
}

TEST(ArchiveForms, ValuesAreTheirNumbersInOrder) {
  expectForm(rzVector<2>(1.5, -2.5), numbers({1.5, -2.5}));
  expectForm(rzRange(0.25, 4.0), numbers({0.25, 4.0}));
  expectForm(rzRange::FullRange(), numbers({-HUGE_VAL, HUGE_VAL}));
  expectForm(rz2Rigid(rzDegree(370.0), {1.0, 2.0}), numbers({370.0, 1.0, 2.0}));
  expectForm(rzXform<2>(rzMatrix<2>(1.0, 2.0, 3.0, 4.0), {5.0, 6.0}),
             numbers({1.0, 2.0, 3.0, 4.0, 5.0, 6.0}));
}

TEST(ArchiveForms, RectHasAVersionAndRefusesANewerOne) {
  Bytes form = numbers({1.0, 2.0, 3.0, 4.0});
  form.insert(form.begin(), 0);
  expectForm(rzRect(1.0, 2.0, 3.0, 4.0), form);

  form[0] = 1;
  rzRect rect(9.0, 9.0, 9.0, 9.0);
  auto in = rzArchive::loadingFrom(form);
  EXPECT_THROW(in || rect, rzArchive::UnknownVersion);
  EXPECT_EQ(rect, rzRect(9.0, 9.0, 9.0, 9.0));
}

TEST(ArchiveForms, SeveralRectsAtOneAddressAreAllMoved) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  for (int i = 0; i < 3; ++i) {
    rzRect rect(i, i, 1.0, 1.0);
    out || rect || rect;
  }
  EXPECT_EQ(bytes.size(), 6u * 33u);
}

TEST(ArchiveForms, MotionsThatAreNotFiniteAreRefused) {
  for (double bad : {HUGE_VAL, -HUGE_VAL, std::nan("")}) {
    for (int place = 0; place < 6; ++place) {
      double v[6] = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
      v[place] = bad;
      const Bytes form = numbers({v[0], v[1], v[2], v[3], v[4], v[5]});
      rzXform<2> xform;
      auto in = rzArchive::loadingFrom(form);
      EXPECT_THROW(in || xform, rzArchive::BadFormat);
      EXPECT_EQ(xform, rzXform<2>());
      if (place > 2) continue;
      rz2Rigid rigid;
      auto again = rzArchive::loadingFrom(form);
      EXPECT_THROW(again || rigid, rzArchive::BadFormat);
      EXPECT_EQ(rigid, rz2Rigid());
    }
  }
}

}  // namespace
