// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/evaluate_path.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

#include "scene.h"

namespace {

using testing::ElementsAre;
using rzD = rzOCArrangeDefs;
constexpr double kTolerance = 1e-9;
constexpr rzLong kNo = kUnmatched;

// Five positions in a row with one candidate each; position 4 bears the key of position 0.
Scene fiveInARow() {
  Scene scene = rowScene(5);
  scene.keys[4] = scene.keys[0];
  return scene;
}

struct ValidityCase {
  const char* name;
  rz_ArrangePath path;
  std::function<void(Scene&)> set;
  bool isValid;
  bool isValidAtLast;  // in the final evaluation
};

class PathValidity : public testing::TestWithParam<ValidityCase> {};

TEST_P(PathValidity, FollowsTheRules) {
  Scene scene = fiveInARow();
  scene.poses[4].push_back(poseAt(4 * kPitch, 0));
  scene.scores[4].push_back(0.8);
  GetParam().set(scene);
  rz_ArrangeCost cost;
  EXPECT_EQ(scene.evaluate(GetParam().path, cost), GetParam().isValid);
  EXPECT_EQ(scene.evaluate(GetParam().path, cost, true), GetParam().isValidAtLast);
}

void nothing(Scene&) {}
void oneLine(Scene& s) { s.params.maxLines(1); }
void noUnmatched(Scene& s) { s.params.maxUnmatchedChars(0); }

INSTANTIATE_TEST_SUITE_P(
    Table, PathValidity,
    testing::Values(
        ValidityCase{"empty", {}, nothing, true, true},
        ValidityCase{"one", pathOf({0}, {0}), nothing, true, true},
        ValidityCase{"starts_unmatched", pathOf({kNo, 0}, {0}), nothing, false, false},
        ValidityCase{"open_end", pathOf({0, 0, kNo}, {0}), nothing, true, true},
        ValidityCase{"open_end_closed", pathOf({0, 0, kNo, 0}, {0, 3}), nothing, false, false},
        ValidityCase{"ends_unmatched", pathOf({0, 0, 0, 0, kNo}, {0}), nothing, false, false},
        ValidityCase{"ends_alone", pathOf({0, 0, 0, 0, kNo}, {0, 4}), nothing, true, true},
        ValidityCase{"gap", pathOf({0, kNo, 0}, {0}), nothing, true, true},
        ValidityCase{"gap_not_allowed", pathOf({0, kNo, 0}, {0}), noUnmatched, false, true},
        ValidityCase{"blank_gap_allowed", pathOf({0, kNo, 0}, {0}),
                     [](Scene& s) {
                       noUnmatched(s);
                       s.charData[1].isBlank = true;
                     },
                     true, true},
        ValidityCase{"free_of_charge_still_counts", pathOf({0, kNo, 0}, {0}),
                     [](Scene& s) {
                       noUnmatched(s);
                       s.charData[1].costsWhenUnmatched = false;
                     },
                     false, true},
        ValidityCase{"reuse", pathOf({0, 0, 0, 0, 0}, {0, 4}), nothing, false, false},
        ValidityCase{"other_candidate", pathOf({0, 0, 0, 0, 1}, {0}), nothing, true, true},
        ValidityCase{"two_lines", pathOf({0, 0, 0}, {0, 2}), oneLine, false, false},
        ValidityCase{"empty_lines_do_not_count", pathOf({kNo, 0, 0, kNo}, {0, 1, 3}), oneLine, true,
                     true},
        ValidityCase{"backwards", pathOf({0, 0}, {0}),
                     [](Scene& s) {
                       s.params.isTextDirectionSpecified(true);
                       s.params.straightTextDirection(rzDegree(180));
                     },
                     false, false}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(EvaluatePath, CountsUnmatchedPositionsAndBreaks) {
  Scene scene = rowScene(8);
  scene.charData[2].isBlank = true;
  scene.charData[5].costsWhenUnmatched = false;
  scene.params.unmatchedCharCost(3);
  scene.params.lineBreakCost(10);
  rz_ArrangeCost cost;
  // Three real lines; unmatched are 1, 2 (blank), 5 (free) and 6.
  ASSERT_TRUE(scene.evaluate(pathOf({0, kNo, kNo, 0, 0, kNo, kNo, 0}, {0, 4, 5, 6, 7}), cost));
  EXPECT_EQ(cost.unmatchedCost, 6);
  EXPECT_EQ(cost.breakCost, 20);
}

TEST(EvaluatePath, UnmatchedPositionsRaiseTheErrorsOfTheOthers) {
  Scene scene = rowScene(4);
  scene.poses[1][0] = poseAt(kPitch + 2, 0);
  rz_ArrangeCost plain;
  ASSERT_TRUE(scene.evaluate(pathOf({0, 0, 0, 0}, {0}), plain));
  EXPECT_NEAR(plain.tangentialCost, 0.2, kTolerance);
  rz_ArrangeCost gapped;
  ASSERT_TRUE(scene.evaluate(pathOf({0, 0, kNo, 0}, {0}), gapped));
  EXPECT_NEAR(gapped.tangentialCost, 0.2 * 4 / 3, kTolerance);
  // A last line that may still grow counts its open end too.
  scene.add(8, {});
  scene.add(9, {});
  ASSERT_TRUE(scene.evaluate(pathOf({0, 0, 0, 0, kNo}, {0}), plain));
  EXPECT_NEAR(plain.tangentialCost, 0.2 * 5 / 4, kTolerance);
}

TEST(EvaluatePath, ScalesCountAgainstTheirGeometricMean) {
  Scene scene;
  scene.add(1, {{poseAt(0, 0, 0, 1), 1}});
  scene.add(2, {{poseAt(18, 0, 0, 2), 1}});
  rz_ArrangeCost cost;
  ASSERT_TRUE(scene.evaluate(pathOf({0, 0}, {0}), cost, true));
  EXPECT_NEAR(cost.logScaleCost, 1.0, kTolerance);
  EXPECT_NEAR(cost.lineScales[0], std::sqrt(2.0), kTolerance);
  EXPECT_NEAR(cost.logScaleErrors[0], -0.5, kTolerance);
  EXPECT_NEAR(cost.logScaleErrors[1], 0.5, kTolerance);
}

TEST(EvaluatePath, FinalEvaluationSaysWhereEverythingShouldBe) {
  Scene scene = rowScene(5);
  scene.poses[1][0] = poseAt(kPitch + 2, 0);
  rz_ArrangeCost cost;
  ASSERT_TRUE(scene.evaluate(pathOf({0, 0, kNo, 0, 0}, {0, 4}), cost, true));
  for (const std::size_t i : {0u, 1u, 2u, 3u, 4u}) {
    EXPECT_NEAR(cost.idealPositions[i].x(), kPitch * static_cast<double>(i), kTolerance);
  }
  EXPECT_NEAR(cost.tangentialErrors[1], 0.2, kTolerance);
  EXPECT_EQ(cost.tangentialErrors[2], 0);
  EXPECT_THAT(cost.lineTypes, ElementsAre(rzD::eStraight, rzD::eDontCare));
  ASSERT_EQ(cost.lineSegs.size(), 1u);
  EXPECT_NEAR(cost.lineSegs[0].len(), 3 * kPitch, kTolerance);
}

// The details belong to the verdict whatever the shape; costs are those of the search.
TEST(EvaluatePath, FinalCostsAreThoseOfTheSearch) {
  std::mt19937 random(11);
  for (int round = 0; round < 300; ++round) {
    const Scene scene = randomScene(random, 6);
    rz_ArrangePath path;
    for (std::size_t i = 0; i < 6; ++i) {
      const rzLong c = static_cast<rzLong>(random() % (scene.poses[i].size() + 1)) - 1;
      path.append(c, i == 0 || random() % 4 == 0);
    }
    rz_ArrangeCost search, last;
    if (!scene.evaluate(path, search)) continue;
    ASSERT_TRUE(scene.evaluate(path, last, true));
    EXPECT_EQ(search.total(), last.total());
    EXPECT_EQ(search.lineTypes, last.lineTypes);
    EXPECT_EQ(last.lineSegs.size() + last.lineArcs.size() +
                  static_cast<std::size_t>(std::ranges::count(last.lineTypes, rzD::eDontCare)),
              last.lineTypes.size());
  }
}

// With only circular lines, two characters make a line while the path has no third position.
TEST(EvaluatePath, LineThatLosesItsShapeFailsAndLeavesFullVectors) {
  Scene scene = rowScene(4);
  scene.params.lineType(rzD::eCircular);
  rz_ArrangeCost cost;
  EXPECT_TRUE(scene.evaluate(pathOf({0, 0}, {0}), cost));
  EXPECT_FALSE(scene.evaluate(pathOf({0, 0, kNo, kNo}, {0, 2, 3}), cost, true));
  EXPECT_EQ(cost.idealPositions.size(), 4u);
  EXPECT_EQ(cost.lineScales.size(), 1u);
  EXPECT_EQ(cost.lineTypes.size(), 0u);
}

}  // namespace
