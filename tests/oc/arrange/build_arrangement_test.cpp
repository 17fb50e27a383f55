// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/build_arrangement.h"

#include <gmock/gmock.h>

#include <cmath>

#include "oc/line.h"
#include "oc/model.h"
#include "scene.h"

namespace {

constexpr double kTolerance = 1e-9;
constexpr rzLong kNo = kUnmatched;

rzPtrHandle_const<rzOCAlphabet> alphabetOf(const std::vector<rzLong>& keys) {
  std::vector<rzPtrHandle_const<rzOCModel>> models;
  for (const rzLong key : keys) {
    models.push_back(new rzOCModel(key, rzPelBuffer_const<unsigned char>(), rzPelRect(0, 0, 10, 20),
                                   rzOCModel::eBlank));
  }
  return new rzOCAlphabet(models);
}

struct Built {
  rzPtrHandle_const<rzOCLineArrangement> arrangement;
  rzXform<2> clientFromArrangement;
};

Built built(const Scene& scene, const rz_ArrangePath& path, const std::vector<rz_Pose>& poses,
            bool compUncertainties = false) {
  rz_ArrangeCost cost;
  scene.evaluate(path, cost, true);
  Built result;
  rf_BuildArrangement(alphabetOf(scene.keys), scene.keys, path, cost, poses, compUncertainties,
                      result.arrangement, result.clientFromArrangement);
  return result;
}

std::vector<rz_Pose> posesOf(const Scene& scene) {
  std::vector<rz_Pose> poses;
  for (const auto& list : scene.poses) poses.push_back(list.front());
  return poses;
}

// Two lines, turned and shifted; position 2 stands alone and unmatched.
Scene twoLines() {
  Scene scene;
  for (rzLong i = 0; i < 5; ++i) {
    const rzVector<2> place =
        rzVector<2>(kPitch * (i % 3), rzDegree(30)) + rzVector<2>(5, i < 3 ? 7 : 60);
    scene.add(10 + i, {{poseAt(place.x(), place.y(), 30.0 + i, 1.0 + 0.01 * i), 0.9}});
  }
  return scene;
}

TEST(BuildArrangement, TransformsComposeToTheClientPoses) {
  const Scene scene = twoLines();
  const Built result = built(scene, pathOf({0, 0, kNo, 0, 0}, {0, 2, 3}), posesOf(scene));
  const rzOCLineArrangement& arrangement = *result.arrangement;
  ASSERT_EQ(arrangement.numLines(), 3);
  EXPECT_EQ(arrangement.linePoses()[0], rz2Rigid());
  EXPECT_EQ(arrangement.name(), "");
  std::size_t i = 0;
  for (std::size_t l = 0; l < 3; ++l) {
    const rzOCLine& line = *arrangement.lines()[l];
    EXPECT_EQ(line.name(), "Line " + std::to_string(l));
    EXPECT_EQ(line.charPoses().front(), rz2Rigid());
    for (rzLong k = 0; k < line.numPositions(); ++k, ++i) {
      const rzXform<2> client = result.clientFromArrangement * arrangement.linePoses()[l].linear() *
                                line.charPoses()[rf_At(k)].linear();
      const rz_Pose& pose = scene.poses[i].front();
      EXPECT_NEAR(client.trans().distance(pose.translation), 0, kTolerance);
      EXPECT_NEAR((client.xRot() - pose.rotation).signedNorm().toDouble(), 0, kTolerance);
      EXPECT_EQ(line.charScales()[rf_At(k)], pose.scale);
      EXPECT_EQ(line.keySetSequence()[rf_At(k)], rzOCKeySet({scene.keys[i]}, 0));
    }
  }
  EXPECT_EQ(i, scene.keys.size());
}

TEST(BuildArrangement, UncertaintiesTellHowFarCharactersLayOff) {
  Scene scene = rowScene(3);
  scene.poses[1][0] = poseAt(kPitch + 2, 0, 9, 1.21);
  const rz_ArrangePath path = pathOf({0, 0, 0}, {0});
  for (const bool isAsked : {false, true}) {
    const Built result = built(scene, path, posesOf(scene), isAsked);
    const rzOCLine& line = *result.arrangement->lines()[0];
    EXPECT_NEAR(line.translationUncertainties()[1], isAsked ? 2 : 0, kTolerance);
    // The line's mean scale is the third root of 1.21, its average orientation a good third of 9.
    EXPECT_NEAR(line.scaleUncertainties()[1], isAsked ? 1.21 - std::cbrt(1.21) : 0, kTolerance);
    EXPECT_NEAR(rzDegree(line.rotationUncertainties()[1]).toDouble(), isAsked ? 6 : 0, 0.02);
    EXPECT_NEAR(rzDegree(line.rotationUncertainties()[0]).toDouble(), isAsked ? 3 : 0, 0.02);
  }
}

// Only circular lines, and the path was cut at two characters: the first line has no shape left,
// and nothing is known of those behind it.
TEST(BuildArrangement, FailedFinalEvaluationLeavesNoUncertainty) {
  Scene scene = rowScene(4);
  scene.params.lineType(rzOCArrangeDefs::eCircular);
  const Built result = built(scene, pathOf({0, 0, kNo, kNo}, {0, 2, 3}), posesOf(scene), true);
  for (const std::size_t l : {1u, 2u}) {
    EXPECT_EQ(result.arrangement->lines()[l]->scaleUncertainties()[0], 0);
    EXPECT_EQ(result.arrangement->lines()[l]->rotationUncertainties()[0], rzRadian(0.0));
  }
}

}  // namespace
