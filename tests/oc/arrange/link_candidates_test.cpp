// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/link_candidates.h"

#include <gmock/gmock.h>

#include <cmath>

#include "scene.h"

namespace {

using Symmetry = rz_OCExtractDefs::Symmetry;
constexpr Symmetry kNone = rz_OCExtractDefs::eNoSymmetry;
constexpr Symmetry kHalf = rz_OCExtractDefs::eRot180Symmetry;
constexpr Symmetry kAny = rz_OCExtractDefs::eAnyAngleSymmetry;

bool areLinked(const rz_Pose& a, Symmetry symmetryA, const rz_Pose& b, Symmetry symmetryB) {
  Scene scene;
  scene.add(1, {{a, 1}}, symmetryA);
  scene.add(2, {{b, 1}}, symmetryB);
  rz_LinkTable links;
  rf_LinkCandidates(scene.charData, scene.poses, links);
  return links[0][0][0];
}

struct TurnCase {
  const char* name;
  double degrees;
  Symmetry a, b;
  bool linked;
};

class LinkByTurn : public testing::TestWithParam<TurnCase> {};

TEST_P(LinkByTurn, CountsWhatShows) {
  const TurnCase& c = GetParam();
  for (const double base : {0.0, 170.0, -90.0}) {
    EXPECT_EQ(areLinked(poseAt(0, 0, base), c.a, poseAt(12, 0, base + c.degrees), c.b), c.linked);
    EXPECT_EQ(areLinked(poseAt(0, 0, base), c.b, poseAt(12, 0, base - c.degrees), c.a), c.linked);
  }
}

INSTANTIATE_TEST_SUITE_P(Table, LinkByTurn,
                         testing::Values(TurnCase{"alike", 0, kNone, kNone, true},
                                         TurnCase{"within", 29.9, kNone, kNone, true},
                                         TurnCase{"beyond", 30.5, kNone, kNone, false},
                                         TurnCase{"half_turn", 180, kNone, kNone, false},
                                         TurnCase{"round_partner", 120, kNone, kAny, true},
                                         TurnCase{"folds", 170, kHalf, kHalf, true},
                                         TurnCase{"one_folds", 170, kNone, kHalf, true},
                                         TurnCase{"across", 90, kHalf, kHalf, false},
                                         TurnCase{"round_and_half", 90, kHalf, kAny, true}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(LinkCandidates, ThirtyDegreesAreIncluded) {
  rz_Pose turned = poseAt(12, 0);
  turned.rotation = rzRadian(0.5235987755982988);
  EXPECT_TRUE(areLinked(poseAt(0, 0), kNone, turned, kNone));
  turned.rotation = rzRadian(std::nextafter(0.5235987755982988, 1.0));
  EXPECT_FALSE(areLinked(poseAt(0, 0), kNone, turned, kNone));
}

// The distance counts in the units of the first one's model: two of its diagonals.
TEST(LinkCandidates, DistanceCountsInSizesOfTheFirst) {
  const double limit = 2.0 * std::sqrt(kBoxWidth * kBoxWidth + kBoxHeight * kBoxHeight);
  EXPECT_TRUE(areLinked(poseAt(0, 0), kNone, poseAt(limit, 0), kNone)) << "limit included";
  EXPECT_FALSE(areLinked(poseAt(0, 0), kNone, poseAt(limit + 0.01, 0), kNone));
  EXPECT_TRUE(areLinked(poseAt(0, 0, 10, 2), kNone, poseAt(0, 2 * limit - 0.01), kNone));
  EXPECT_FALSE(areLinked(poseAt(0, 0, 10, 2), kNone, poseAt(0, 2 * limit + 0.01), kNone));
  EXPECT_FALSE(areLinked(poseAt(0, 0), kNone, poseAt(limit + 1, 0, 0, 2), kNone));
}

TEST(LinkCandidates, TableCoversAllCandidatesOfEachPair) {
  Scene scene;
  scene.add(1, {{poseAt(0, 0), 1}, {poseAt(500, 0), 1}}).numCandidates = 1;
  scene.add(2, {{poseAt(12, 0), 1}, {poseAt(512, 0), 1}, {poseAt(6, 0), 1}});
  scene.addBlank(3);
  scene.add(4, {{poseAt(0, 0), 1}});
  rz_LinkTable links;
  rf_LinkCandidates(scene.charData, scene.poses, links);
  using Row = std::vector<bool>;
  ASSERT_EQ(links.size(), 3u);
  EXPECT_THAT(links[0], testing::ElementsAre(Row{true, false, true}, Row{false, true, false}));
  EXPECT_THAT(links[1], testing::ElementsAre(Row(), Row(), Row()));
  EXPECT_TRUE(links[2].empty());
}

// Positions 0, 2 and 3 bear one key, 1 and 4 another, 5 the first one's poses on a wider box.
TEST(LinkCandidates, NeighboursOfTheSameKeysShareOneTable) {
  Scene scene;
  for (const rzLong key : {1, 2, 1, 1, 2, 3}) {
    const double x = key == 2 ? 12 : 0;
    rz_CharData& data = scene.add(key, {{poseAt(x, 0), 1}, {poseAt(x + 60, 0), 1}});
    if (key == 3) {
      data.imageArea(rzAffineRectangle(rzVector<2>(0, 0), rzVector<2>(70, 0), rzVector<2>(0, 20)));
    }
  }
  rz_LinkTable links;
  rf_LinkCandidates(scene.charData, scene.poses, links);
  EXPECT_EQ(links.numDistinctPairs(), 4u);
  EXPECT_EQ(&links[0], &links[3]) << "1 before 2";
  EXPECT_NE(&links[0], &links[1]) << "2 before 1 is another thing";
  EXPECT_FALSE(links[0][0][1]);
  EXPECT_TRUE(links[4][0][1]) << "a wide box reaches farther";
}

}  // namespace
