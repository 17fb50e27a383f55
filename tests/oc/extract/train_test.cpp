// SPDX-License-Identifier: Apache-2.0
#include "oc/extract/train.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

#include "oc/extract/symmetry.h"
#include "oc/extract/train_pattern.h"
#include "rz/angle.h"
#include "rz/attention.h"
#include "rz/pel_functions.h"
#include "rz/timeout.h"
#include "tests/oc/extract/drawn_alphabet.h"
#include "tests/oc/extract/extract_peer.h"

namespace {

using testing::ElementsAre;
using Peer = rz_OCExtractPeer;

const std::pair<double, double> kAutomatic(-1.0, -1.0);

TEST(OrderModels, PutsGreatSpreadFirstAndLowIndexFirstAmongEquals) {
  std::vector<std::pair<rzLong, double>> models = {
      {3, 0.0}, {2, 40.0}, {0, 0.0}, {4, 90.5}, {1, 40.0}};
  std::sort(models.begin(), models.end(), rf_OrderModels);
  std::vector<rzLong> order;
  for (const auto& [index, spread] : models) order.push_back(index);
  EXPECT_THAT(order, ElementsAre(4, 1, 2, 0, 3));
  EXPECT_FALSE(rf_OrderModels({1, 2.0}, {1, 2.0}));
}

TEST(Train, CountsEachDistinctKeyOfTheText) {
  rz_OCExtractModel model;
  rz_OCExtractStringResult result;
  Peer::train(model, drawn::alphabet({}), {7, 3, 7, -2}, result);
  EXPECT_THAT(Peer::keys(model), ElementsAre(-2, 3, 7));
  EXPECT_THAT(Peer::occurrences(model), ElementsAre(1, 1, 2));
  EXPECT_EQ(model.numModels(), 3);
  EXPECT_THAT(Peer::searchOrder(model), ElementsAre(0, 1, 2));
  EXPECT_EQ(Peer::pattern(model, 2), nullptr);
}

TEST(Train, SearchesByFallingSpreadAndPutsUnsearchableOnesLast) {
  const auto alphabet = drawn::alphabet({drawn::blank(' '), drawn::character('|', draw::bar()),
                                         drawn::character('K', draw::letterK()),
                                         drawn::character('R', draw::letterR())});
  rz_OCExtractModel model;
  rz_OCExtractStringResult result;
  Peer::train(model, alphabet, {'R', ' ', 'K', '|', '?'}, result);
  ASSERT_THAT(Peer::keys(model), ElementsAre(' ', '?', 'K', 'R', '|'));

  const double spreadK = trainPattern(*alphabet->character('K'), kAutomatic).spread;
  const double spreadR = trainPattern(*alphabet->character('R'), kAutomatic).spread;
  ASSERT_NE(spreadK, spreadR);
  const std::vector<rzLong> expected =
      spreadK > spreadR ? std::vector<rzLong>{2, 3, 0, 1, 4} : std::vector<rzLong>{3, 2, 0, 1, 4};
  EXPECT_EQ(Peer::searchOrder(model), expected);
  EXPECT_GT(result.trainTime(), 0.0);
}

struct SizeCase {
  rzLong width;
  rzLong height;
  rzLong trainedWidth;
  rzLong trainedHeight;
};

class TrainedSize : public testing::TestWithParam<SizeCase> {};

TEST_P(TrainedSize, IsDoubledForSmallWindowsOnly) {
  const SizeCase& c = GetParam();
  const double scale = std::min(c.width / 26.0, c.height / 36.0);
  const auto character = drawn::character('R', draw::letterR(), c.width, c.height, scale);
  const TrainedPattern trained = trainPattern(*character, kAutomatic);
  ASSERT_TRUE(trained.pattern) << rfOCExtractObstacleText(trained.obstacle);
  EXPECT_EQ(trained.pattern->trainImage().width(), c.trainedWidth);
  EXPECT_EQ(trained.pattern->trainImage().height(), c.trainedHeight);
}

INSTANTIATE_TEST_SUITE_P(Windows, TrainedSize,
                         testing::Values(SizeCase{14, 40, 28, 80}, SizeCase{40, 14, 80, 28},
                                         SizeCase{15, 20, 15, 20}, SizeCase{20, 30, 20, 30}),
                         [](const auto& test) {
                           return std::to_string(test.param.width) + "_by_" +
                                  std::to_string(test.param.height);
                         });

struct GrainCase {
  const char* name;
  std::pair<double, double> limits;
  bool isAutomatic;
  float coarse;
  float fine;
};

void PrintTo(const GrainCase& c, std::ostream* os) { *os << c.name; }

class Grain : public testing::TestWithParam<GrainCase> {};

TEST_P(Grain, IsAutomaticWhereEitherLimitSaysSo) {
  const GrainCase& c = GetParam();
  const auto character = drawn::character('R', draw::letterR());
  const TrainedPattern trained = trainPattern(*character, c.limits);
  ASSERT_TRUE(trained.pattern);
  EXPECT_EQ(trained.pattern->autoSelectGrainLimits(), c.isAutomatic);
  if (c.isAutomatic) return;
  EXPECT_EQ(trained.pattern->coarseGrainLimit(), c.coarse);
  EXPECT_EQ(trained.pattern->fineGrainLimit(), c.fine);
}

INSTANTIATE_TEST_SUITE_P(Limits, Grain,
                         testing::Values(GrainCase{"both_automatic", {-1, -1}, true, 0, 0},
                                         GrainCase{"first_automatic", {-1, 2}, true, 0, 0},
                                         GrainCase{"second_automatic", {2, -1}, true, 0, 0},
                                         GrainCase{"given", {2, 1.5}, false, 2, 1.5F}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(TrainPattern, SeesTheImageAreaOnly) {
  rzPelBuffer<unsigned char> image = draw::paper(80, 42);
  draw::fill(image, draw::letterK(), drawn::placed(16, 21));
  draw::fill(image, draw::letterR(), drawn::placed(60, 21));
  const rzOCModel wide('K', image, rzPelRect(0, 0, 32, 42));
  const TrainedPattern fromWide = trainPattern(wide, kAutomatic);
  const TrainedPattern alone = trainPattern(*drawn::character('K', draw::letterK()), kAutomatic);
  ASSERT_TRUE(fromWide.pattern && alone.pattern);
  EXPECT_EQ(fromWide.spread, alone.spread);
  EXPECT_TRUE(rfPelEqual(fromWide.pattern->trainImage(), alone.pattern->trainImage()));
}

TEST(Obstacle, SaysWhyACharacterCannotBeSearched) {
  EXPECT_EQ(rfOCExtractObstacle(*drawn::character('K', draw::letterK())), eNoObstacle);
  EXPECT_EQ(rfOCExtractObstacle(*drawn::blank(' ')), eBlankCharacter);
  EXPECT_EQ(rfOCExtractObstacle(*drawn::character('.', draw::together({}))), eTooFewEdges);
  EXPECT_EQ(rfOCExtractObstacle(*drawn::character('|', draw::bar())), eEdgesTooParallel);
  EXPECT_EQ(rfOCExtractObstacle(*drawn::character('-', draw::together({}), 20000, 14)),
            eImageTooLarge);
  EXPECT_STREQ(rfOCExtractObstacleText(eNoObstacle), "");
  EXPECT_STREQ(rfOCExtractObstacleText(eEdgesTooParallel), "edges too parallel");
}

struct SymmetryCase {
  std::string name;
  draw::Shape shape;
  rz_OCExtractDefs::Symmetry symmetry;
  rzLong width = 32;
  rzLong height = 42;
  double scale = 1.0;
};

void PrintTo(const SymmetryCase& c, std::ostream* os) { *os << c.name; }

class CharacterSymmetry : public testing::TestWithParam<SymmetryCase> {};

TEST_P(CharacterSymmetry, FollowsFromTheShape) {
  rz_OCExtractModel model;
  rz_OCExtractStringResult result;
  const SymmetryCase& c = GetParam();
  const auto character = drawn::character(1, c.shape, c.width, c.height, c.scale);
  Peer::train(model, drawn::alphabet({character}), {1}, result);
  ASSERT_NE(Peer::pattern(model, 0), nullptr);
  EXPECT_EQ(Peer::symmetries(model)[0], c.symmetry);
  if (c.symmetry == rz_OCExtractDefs::eNoSymmetry) return;
  // The shapes are centred on their origin, so the half turn moves it nowhere.
  const rzXform<2>& pose = Peer::rot180Poses(model)[0];
  constexpr double kPels = 0.2;
  EXPECT_LT(pose.trans().len(), kPels);
  EXPECT_NEAR(std::fabs(rzDegree(pose.xRot()).toDouble()), 180.0, 1e-9);
  EXPECT_NEAR(pose.xScale(), 1.0, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, CharacterSymmetry,
    testing::Values(SymmetryCase{"R", draw::letterR(), rz_OCExtractDefs::eNoSymmetry},
                    SymmetryCase{"K", draw::letterK(), rz_OCExtractDefs::eNoSymmetry},
                    SymmetryCase{"A", draw::letterA(), rz_OCExtractDefs::eNoSymmetry},
                    SymmetryCase{"Z", draw::letterZ(), rz_OCExtractDefs::eRot180Symmetry},
                    SymmetryCase{"O", draw::letterO(), rz_OCExtractDefs::eAnyAngleSymmetry},
                    SymmetryCase{"o_worked_at_double_size", draw::letterO(),
                                 rz_OCExtractDefs::eAnyAngleSymmetry, 14, 14, 0.33},
                    SymmetryCase{"z_worked_at_double_size", draw::letterZ(),
                                 rz_OCExtractDefs::eRot180Symmetry, 14, 20, 0.4}),
    [](const auto& test) { return test.param.name; });

}  // namespace
