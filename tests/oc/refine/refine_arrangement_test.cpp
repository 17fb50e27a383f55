// SPDX-License-Identifier: Apache-2.0
#include "oc/refine_arrangement.h"

#include <gtest/gtest.h>

#include "oc/extract/drawn_alphabet.h"
#include "oc/refine/correlation_grid.h"

namespace {

using drawn::placed;

constexpr rzLong kF = 'F';
constexpr rzLong kR = 'R';
constexpr rzLong kSpace = ' ';

rzPtrHandle_const<rzOCAlphabet> letters() {
  return drawn::alphabet({drawn::character(kF, draw::letterF()),
                          drawn::character(kR, draw::letterR()), drawn::blank(kSpace)});
}

/// Three places in a row; an F stands at the first two, turned by two degrees.
rzPelBuffer<unsigned char> printedRow() {
  rzPelBuffer<unsigned char> image = draw::paper(200, 100);
  draw::fill(image, draw::letterF(), placed(50.3, 50.0, 2.0));
  draw::fill(image, draw::letterF(), placed(100.0, 50.4, 2.0));
  return image;
}

struct Row {
  std::vector<rzLong> keys;
  std::vector<rz_Pose> poses;
  std::vector<rzOCArrangeDefs::CharStatus> statuses;
  std::vector<double> scores;

  void add(rzLong key, double x, rzOCArrangeDefs::CharStatus status) {
    keys.push_back(key);
    poses.emplace_back(placed(x, 50.0, 1.0));
    statuses.push_back(status);
    scores.push_back(status == rzOCArrangeDefs::eMatched ? 0.75 : 0.0);
  }
  void refine() {
    rf_RefineArrangement(printedRow(), letters(), keys, poses, statuses, scores, nullptr, 0);
  }
};

TEST(CorrelationGrid, HoldsThirteenAnglesInFourScales) {
  const auto model = drawn::character(kF, draw::letterF());
  rz_RSISearchModelParams params;
  params.angleRange = rzRange(-3.0, 3.0);
  params.angleStep = 0.5;
  params.scaleRange = rzRange(0.95, 1.065);
  params.scaleStep = 0.03;
  const rzRSINrmSearchModel grid(model->image(), {}, params, "F", nullptr, 0);
  ASSERT_EQ(grid.xforms().size(), 52u);
  EXPECT_NEAR(grid.xforms().front().xRot().toDouble(), rzRadian(rzDegree(-3.0)).toDouble(), 1e-12);
  EXPECT_NEAR(grid.xforms().back().xScale(), 1.03809065, 1e-7);
}

TEST(RefineArrangement, ConfirmsAnInferredCharacterThatIsThere) {
  Row row;
  row.add(kF, 49.0, rzOCArrangeDefs::eInferred);
  row.add(kF, 101.0, rzOCArrangeDefs::eInferred);
  row.refine();
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(row.statuses[i], rzOCArrangeDefs::eMatched);
    EXPECT_GT(row.scores[i], 0.7);
    // Templates slide by whole pels, so a neighbour on the grid that lies better may win: it is
    // at most two steps of the grid away, of 0.5 degrees and 3 %.
    EXPECT_NEAR(rzDegree(row.poses[i].rotation).toDouble(), 2.0, 1.0 + 1e-9);
    EXPECT_NEAR(row.poses[i].scale, 1.0, 0.031);
  }
  EXPECT_NEAR(row.poses[0].translation.x(), 50.3, 0.3);
  EXPECT_NEAR(row.poses[1].translation.y(), 50.4, 0.3);
}

TEST(RefineArrangement, ConfirmsWornPrintButNoOtherLetterThatHoldsTheWholeOfThisOne) {
  rzPelBuffer<unsigned char> image = draw::paper(200, 100);
  draw::fill(image, draw::letterF(), placed(50.3, 50.0));
  draw::fill(image, draw::stroke(30, 61, 70, 61, 8), rzXform<2>(), 220);  // its lower quarter
  draw::fill(image, draw::letterR(), placed(100.0, 50.4));                // an F and more
  Row row;
  row.add(kF, 49.0, rzOCArrangeDefs::eInferred);
  row.add(kF, 101.0, rzOCArrangeDefs::eInferred);
  rf_RefineArrangement(image, letters(), row.keys, row.poses, row.statuses, row.scores, nullptr, 0);
  EXPECT_EQ(row.statuses[0], rzOCArrangeDefs::eMatched);
  EXPECT_NEAR(row.poses[0].translation.x(), 50.3, 1.0);
  EXPECT_NEAR(row.poses[0].translation.y(), 50.0, 1.5);
  EXPECT_EQ(row.statuses[1], rzOCArrangeDefs::eInferred);
}

TEST(RefineArrangement, LeavesEveryOtherPositionExactlyAsItIs) {
  Row row;
  row.add(kF, 50.0, rzOCArrangeDefs::eMatched);
  row.add(kR, 100.0, rzOCArrangeDefs::eInferred);  // another letter stands there
  row.add(kF, 100.0, rzOCArrangeDefs::eUnknown);
  row.add(kSpace, 100.0, rzOCArrangeDefs::eInferred);
  row.add(kF, 150.0, rzOCArrangeDefs::eInferred);  // nothing stands there
  row.add(kF, 198.0, rzOCArrangeDefs::eInferred);  // the patch would leave the image
  const Row before = row;
  row.refine();
  EXPECT_EQ(row.statuses, before.statuses);
  EXPECT_EQ(row.scores, before.scores);
  for (std::size_t i = 0; i < row.poses.size(); ++i) {
    EXPECT_EQ(row.poses[i].translation, before.poses[i].translation);
    EXPECT_EQ(row.poses[i].scale, before.poses[i].scale);
  }
}

// Characters that show nothing, and pictures that show them nowhere or have no room for them.
TEST(RefineArrangement, NothingIsConfirmedWhereNothingCanBeTold) {
  const auto model = [](rzLong key, const rzPelBuffer<unsigned char>& image, const rzPelRect& area,
                        const rzPelBuffer_const<unsigned char>& mask = {}) {
    return rzPtrHandle_const<rzOCModel>(mask.isBound() ? new rzOCModel(key, image, mask, area)
                                                       : new rzOCModel(key, image, area));
  };
  const rzPelRect whole(0, 0, 20, 30);
  const rzPelBuffer<unsigned char> careless(whole, 32);
  const auto alphabet = drawn::alphabet(
      {model(1, draw::paper(20, 30), whole), model(2, draw::paper(1, 1), rzPelRect(0, 0, 1, 1)),
       model(3, draw::paper(20, 30), whole, careless),
       model(4, printedRow(), rzPelRect(199, 99, 1, 1)), drawn::blank(kSpace),
       drawn::character(kR, draw::letterR())});
  for (const auto& image : {printedRow(), draw::paper(200, 100), draw::paper(25, 35)}) {
    for (const rzLong key : {1, 2, 3, 4, kSpace, kR}) {
      Row row;
      for (const double x : {12.0, 50.0, 100.0}) row.add(key, x, rzOCArrangeDefs::eInferred);
      const Row before = row;
      rf_RefineArrangement(image, alphabet, row.keys, row.poses, row.statuses, row.scores, nullptr,
                           0);
      EXPECT_EQ(row.statuses, before.statuses) << key;
      EXPECT_EQ(row.scores, before.scores) << key;
    }
  }
}

}  // namespace
