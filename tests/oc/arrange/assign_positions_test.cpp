// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/assign_positions.h"

#include <gmock/gmock.h>

#include <cmath>

#include "scene.h"

namespace {

using testing::ElementsAre;
using rzD = rzOCArrangeDefs;
constexpr rzLong kNo = kUnmatched;
constexpr double kTolerance = 1e-9;

struct Assigned {
  std::vector<rz_Pose> poses;
  std::vector<double> scores;
  std::vector<rzD::CharStatus> statuses;
};

Assigned assigned(const Scene& scene, const rz_ArrangePath& path) {
  rz_ArrangeCost cost;
  scene.evaluate(path, cost, true);
  Assigned result;
  rf_AssignPositions(scene.poses, scene.scores, path, cost, scene.charData, scene.params,
                     result.poses, result.scores, result.statuses);
  return result;
}

double degreesOff(const rz_Pose& pose, double degrees) {
  return rzDegree((pose.rotation - rzDegree(degrees)).signedNorm()).toDouble();
}

TEST(AssignPositions, StatusTellsWhatIsKnown) {
  Scene scene = rowScene(5, 0.8);
  for (std::size_t i = 0; i < 5; ++i) {
    scene.poses[i][0] = poseAt(kPitch * static_cast<double>(i), 0, 7, i < 2 ? 1.0 : 1.1);
  }
  scene.params.scaleRange(rzRange(0.5, 0.72));
  const Assigned result = assigned(scene, pathOf({0, kNo, 0, kNo, 0}, {0, 3, 4}));
  EXPECT_THAT(result.statuses, ElementsAre(rzD::eMatched, rzD::eInferred, rzD::eMatched,
                                           rzD::eUnknown, rzD::eMatched));
  EXPECT_THAT(result.scores, ElementsAre(0.8, 0, 0.8, 0, 0.8));

  const rz_Pose& inferred = result.poses[1];
  EXPECT_NEAR(inferred.translation.distance(rzVector<2>(kPitch, 0)), 0, kTolerance);
  EXPECT_NEAR(degreesOff(inferred, 7), 0, kTolerance);
  EXPECT_NEAR(inferred.scale, std::sqrt(1.1), kTolerance) << "the line's mean";
  EXPECT_NEAR(inferred.logScale, 0.5 * std::log(1.1), kTolerance);

  const rz_Pose& unknown = result.poses[3];
  EXPECT_TRUE(unknown.translation.isNull());
  EXPECT_EQ(unknown.rotation, rzRadian(0.0));
  EXPECT_NEAR(unknown.scale, 0.6, kTolerance) << "the middle of the scale range";
}

struct SymmetryCase {
  const char* name;
  rz_OCExtractDefs::Symmetry symmetry;
  double found;     // degrees, where the line wants 0
  double expected;  // degrees
};

class AssignSymmetric : public testing::TestWithParam<SymmetryCase> {};

TEST_P(AssignSymmetric, TurnsTheRightWayUp) {
  const SymmetryCase& c = GetParam();
  Scene scene = rowScene(3);
  scene.params.orientationMode(rzD::eSpecified);
  scene.charData[1].symmetry = c.symmetry;
  // The character is its own mirror image about (5, 10), the middle of its box.
  const rzXform<2> halfTurn(rzMatrix<2>(-1, 0, 0, -1), rzVector<2>(10, 20));
  scene.charData[1].rot180Pose = halfTurn;
  rz_Pose pose = poseAt(kPitch, 0, c.found);
  scene.poses[1][0] = pose;
  const rz_Pose result = assigned(scene, pathOf({0, 0, 0}, {0})).poses[1];
  EXPECT_NEAR(degreesOff(result, c.expected), 0, kTolerance);
  if (c.symmetry == rz_OCExtractDefs::eAnyAngleSymmetry) return;
  const rzVector<2> middle(5, 10);
  const rzVector<2> before = static_cast<rzXform<2>>(pose).mapPoint(middle);
  EXPECT_NEAR(static_cast<rzXform<2>>(result).mapPoint(middle).distance(before), 0, kTolerance)
      << "the character stays where it was seen";
}

INSTANTIATE_TEST_SUITE_P(
    Table, AssignSymmetric,
    testing::Values(SymmetryCase{"none", rz_OCExtractDefs::eNoSymmetry, 170, 170},
                    SymmetryCase{"half_upside_down", rz_OCExtractDefs::eRot180Symmetry, 170, -10},
                    SymmetryCase{"half_upside_down_back", rz_OCExtractDefs::eRot180Symmetry, -170,
                                 10},
                    SymmetryCase{"half_within", rz_OCExtractDefs::eRot180Symmetry, 80, 80},
                    SymmetryCase{"any", rz_OCExtractDefs::eAnyAngleSymmetry, 123, 0}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(AssignPositions, QuarterTurnOffIsNotUpsideDown) {
  for (const bool isBeyond : {false, true}) {
    Scene scene = rowScene(1);
    scene.charData[0].symmetry = rz_OCExtractDefs::eRot180Symmetry;
    scene.charData[0].rot180Pose = rzXform<2>(rzMatrix<2>(-1, 0, 0, -1), rzVector<2>());
    rz_ArrangeCost cost;
    const rz_ArrangePath path = pathOf({0}, {0});
    ASSERT_TRUE(scene.evaluate(path, cost, true));
    scene.poses[0][0].rotation = rzRadian(isBeyond ? std::nextafter(kRzHalfPi, 2.0) : kRzHalfPi);
    Assigned result;
    rf_AssignPositions(scene.poses, scene.scores, path, cost, scene.charData, scene.params,
                       result.poses, result.scores, result.statuses);
    EXPECT_NEAR(degreesOff(result.poses[0], isBeyond ? -90 : 90), 0, kTolerance);
  }
}

}  // namespace
