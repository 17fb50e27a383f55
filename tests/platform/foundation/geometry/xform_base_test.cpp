// SPDX-License-Identifier: Apache-2.0
#include "rz/xform_base.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "platform/foundation/geometry/xform_chain.h"
#include "rz/archive.h"
#include "rz/math_error.h"
#include "rz/xform_linear.h"
#include "rz/xform_radial.h"

namespace {

using Handle = rzPtrHandle<rz2XformBase>;

const rzXform<2> kLinear({3.0, -2.0}, 1.5, 0.8, rzDegree(10.0), rzDegree(40.0));

std::vector<Handle> someXforms() {
  return {new rz2XformLinear(kLinear), new rz2XformRadial({50.0, 40.0}, 1e-5),
          new rz2XformRadial({50.0, 40.0}, -1e-5), new rz2XformRadial({50.0, 40.0}, 1e-5, true)};
}

std::vector<rzVector<2>> somePoints() {
  std::vector<rzVector<2>> points = {{50.0, 40.0}, {0.0, 0.0}};
  std::mt19937 random(10);
  std::uniform_real_distribution<double> place(-20.0, 120.0);
  for (int i = 0; i < 50; ++i) points.push_back({place(random), place(random)});
  return points;
}

TEST(XformBase, TangentTouchesTheTransform) {
  for (const Handle& xform : someXforms()) {
    for (const rzVector<2>& p : somePoints()) {
      const rzXform<2> tangent = xform->linearXform(p);
      EXPECT_LT((tangent * p).distance(xform->mapPoint(p)), 1e-12);
      for (const rzVector<2>& d : {rzVector<2>(1e-4, 0.0), rzVector<2>(0.0, 1e-4)}) {
        EXPECT_LT((tangent * (p + d)).distance(xform->mapPoint(p + d)), 1e-10);
      }
    }
  }
}

TEST(XformBase, ComposedIsThisAfterTheOther) {
  for (const Handle& outer : someXforms()) {
    for (const Handle& inner : someXforms()) {
      const Handle both = outer->composeBase(*inner);
      EXPECT_EQ(both->isLinear(), outer->isLinear() && inner->isLinear());
      const Handle back = both->inverseBase();
      for (const rzVector<2>& p : somePoints()) {
        const rzVector<2> expected = outer->mapPoint(inner->mapPoint(p));
        EXPECT_LT(both->mapPoint(p).distance(expected), 1e-10);
        EXPECT_LT(back->mapPoint(expected).distance(p), 1e-9);
        EXPECT_LT(both->linearXform(p).mapPoint(p).distance(expected), 1e-10);
      }
    }
  }
}

TEST(XformBase, ShiftingADistortedPictureManyTimesStaysStorable) {
  const rz2XformLinear shift(rzMatrix<2>(), {1.0, 0.5});
  Handle xform = new rz2XformRadial({50.0, 40.0}, 1e-5);
  const Handle plain = xform;
  for (int i = 0; i < 200; ++i) xform = shift.composeBase(*xform->composeBase(shift));
  const rzVector<2> p(10.0, 20.0);
  const rzVector<2> shifted = p + 200.0 * rzVector<2>(1.0, 0.5);
  const rzVector<2> expected = plain->mapPoint(shifted) + rzVector<2>(200.0, 100.0);
  EXPECT_LT(xform->mapPoint(p).distance(expected), 1e-9);

  std::vector<unsigned char> bytes;
  auto out = rzArchive::storingTo(bytes);
  EXPECT_NO_THROW(rf_SerializeHandle(out, xform));
}

TEST(XformBase, EveryKindComesBackFromAnArchiveToTheBit) {
  std::vector<Handle> xforms = someXforms();
  xforms.push_back(xforms[0]->composeBase(*xforms[1])->composeBase(*xforms[2]));
  for (Handle& xform : xforms) {
    std::vector<unsigned char> bytes;
    {
      auto out = rzArchive::storingTo(bytes);
      rf_SerializeHandle(out, xform);
    }
    Handle loaded;
    auto in = rzArchive::loadingFrom(bytes);
    rf_SerializeHandle(in, loaded);
    EXPECT_EQ(loaded->isLinear(), xform->isLinear());
    for (const rzVector<2>& p : somePoints()) EXPECT_EQ(loaded->mapPoint(p), xform->mapPoint(p));
    EXPECT_EQ(in.remaining(), 0u);
  }
}

TEST(XformChain, LinkOfItselfAndLinksThatDoubleItsLengthAreRefused) {
  std::vector<unsigned char> ofItself;
  auto forge = rzArchive::storingTo(ofItself);
  forge << rzULong{1} << std::string("rz2XformChain");
  forge << static_cast<unsigned char>(0) << rzULong{1} << rzULong{1};

  Handle chain = new rz2XformChain(new rz2XformRadial, new rz2XformRadial);
  for (int i = 0; i < 20; ++i) chain = new rz2XformChain(chain, chain);
  std::vector<unsigned char> doubled;
  auto out = rzArchive::storingTo(doubled);
  rf_SerializeHandle(out, chain);

  for (const auto* bytes : {&ofItself, &doubled}) {
    Handle loaded;
    auto in = rzArchive::loadingFrom(*bytes);
    EXPECT_THROW(rf_SerializeHandle(in, loaded), rzArchive::BadFormat) << bytes->size();
  }
}

TEST(XformRadial, PlacesBeyondTheFoldHaveNoSource) {
  const rz2XformRadial barrel({0.0, 0.0}, -1.0);  // folds at 1 / sqrt(3), moved to 2 / 3 of that
  const double reach = 2.0 / 3.0 / std::sqrt(3.0);
  const Handle inverse = barrel.inverseBase();
  const rzVector<2> inside(0.0, 0.999 * reach);
  EXPECT_LT(barrel.mapPoint(inverse->mapPoint(inside)).distance(inside), 1e-12);
  EXPECT_THROW(inverse->mapPoint({1.001 * reach, 0.0}), rzMathError::Singular);
}

}  // namespace
