// SPDX-License-Identifier: Apache-2.0
//
// Poses, zones and nominal values in client coordinates of all kinds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "rz/pel_functions.h"
#include "rz/xform_radial.h"
#include "tests/platform/vision/finder/letters.h"

namespace {

using letters::bestScore;
using letters::Image;
using letters::openParams;
using letters::run;
using letters::scene;
using letters::turnFrom;
using testing::IsEmpty;
using testing::SizeIs;

const draw::Shape kR = draw::letterR();
const rzVector<2> kTrainOrigin(letters::kTrainWidth / 2, letters::kTrainHeight / 2);

struct Frames {
  const char* name;
  rzXform<2> training;  // client from pels
  rzXform<2> running;
};

class ClientFrames : public testing::TestWithParam<Frames> {};

TEST_P(ClientFrames, PosesGoFromTrainingClientToRunClient) {
  const Frames& frames = GetParam();
  Image training = letters::trainImage(kR);
  training.clientFromImageXform(frames.training);
  rzCXAlignPattern pattern;
  pattern.train(training, 3);
  const rzXform<2> shown = letters::pose(78.3, 61.7, 40.0, 1.03);  // pels from letter
  Image image = scene(kR, shown);
  image.clientFromImageXform(frames.running);
  // What the pose must be for the letter to appear so.
  const rzXform<2> trainPelsFromLetter = letters::pose(kTrainOrigin.x(), kTrainOrigin.y());
  const rzXform<2> truth =
      frames.running * shown * (frames.training * trainPelsFromLetter).inverse();
  rzCXAlignRunParams params = openParams();
  params.zone(rz_CXDefs::eScale, 0.9 * truth.xScale(), 1.1 * truth.xScale());
  const auto results = run(pattern, image, params);
  ASSERT_THAT(results, SizeIs(1));
  const rzCXAlignResult& result = results.front();
  const rzXform<2> pelsFromClient = frames.running.inverse();
  for (const double x : {0.0, 32.0}) {
    const rzVector<2> corner = frames.training * rzVector<2>(x, 42.0 - x);
    const rzVector<2> away =
        pelsFromClient * (result.pose() * corner) - pelsFromClient * (truth * corner);
    EXPECT_LT(away.len(), 0.25);
  }
  EXPECT_NEAR(result.xScale() / truth.xScale(), 1.0, 0.01);
  EXPECT_GT(result.pose().matrix().determinant(), 0.0);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ClientFrames,
    testing::Values(Frames{"plain", {}, {}},
                    Frames{
                        "doubled training", {rzMatrix<2>(0.5, 0, 0, 0.5), rzVector<2>(3, -4)}, {}},
                    Frames{"scaled run", {}, {rzMatrix<2>(0.2, 0, 0, 0.2), rzVector<2>(100, 50)}},
                    Frames{"turned both",
                           {rzMatrix<2>(rzDegree(30), rzDegree(30), 2, 2), rzVector<2>(1, 2)},
                           {rzMatrix<2>(rzDegree(-70), rzDegree(-70), 3, 3), rzVector<2>(9, 8)}},
                    Frames{"mirrored both",
                           {rzMatrix<2>(1, 0, 0, -1), rzVector<2>(0, 42)},
                           {rzMatrix<2>(1, 0, 0, -1), rzVector<2>(0, 120)}}),
    [](const auto& test) {
      std::string name = test.param.name;
      std::replace(name.begin(), name.end(), ' ', '_');
      return name;
    });

TEST(PatternFinder, NumbersPelsByTheWindow) {
  Image image = scene(kR, letters::pose(80.25, 60.5));
  image.offset(rzPair<rzLong>(-1000, 345));
  const auto results = run(letters::trained(kR), image, openParams());
  ASSERT_THAT(results, SizeIs(1));
  const rzVector<2> away = letters::originOf(results.front()) - rzVector<2>(-919.75, 405.5);
  EXPECT_LT((away - rzVector<2>(0, 0)).len(), 0.1);
}

TEST(PatternFinder, SearchesTheWindowAndNotTheRoot) {
  Image image = scene(kR, letters::pose(40, 60));
  image.window(rzPelRect(70, 10, 80, 100), false);
  EXPECT_THAT(run(letters::trained(kR), image, openParams()), IsEmpty());
}

TEST(PatternFinder, HoldsClosedValuesExactly) {
  const Image image = scene(kR, letters::pose(80, 60, 90.6, 1.02));
  rzCXAlignRunParams params;
  params.nominal(rz_CXDefs::eAngle, 90.0);
  params.nominal(rz_CXDefs::eScale, 1.01);
  const auto results = run(letters::trained(kR), image, params);
  ASSERT_THAT(results, SizeIs(1));
  EXPECT_EQ(results.front().xScale(), 1.01);
  const rzMatrix<2> expected(rzDegree(90.0), rzDegree(90.0), 1.01, 1.01);
  EXPECT_EQ(results.front().pose().matrix(), expected);
}

TEST(PatternFinder, StaysInItsAngleZone) {
  const Image image = scene(kR, letters::pose(80, 60, 50.0));
  const rzCXAlignPattern pattern = letters::trained(kR);
  rzCXAlignRunParams params = openParams();
  params.zone(rz_CXDefs::eAngle, 45.0, 55.0);
  ASSERT_THAT(run(pattern, image, params), SizeIs(1));
  EXPECT_LT(turnFrom(run(pattern, image, params).front(), 50.0), 0.5);
  params.zone(rz_CXDefs::eAngle, 65.0, 300.0);
  EXPECT_LT(bestScore(run(pattern, image, params)), 0.7);
  params.zone(rz_CXDefs::eAngle, 300.0, 420.0);  // over the start of the turn
  EXPECT_THAT(run(pattern, image, params), SizeIs(1));
}

TEST(PatternFinder, SearchesAWideScaleZone) {
  rzCXAlignRunParams params = openParams(0.6);
  params.zone(rz_CXDefs::eScale, 0.4, 3.0);
  for (const double scale : {0.45, 0.8, 1.6, 2.8}) {
    const Image image = scene(kR, letters::pose(81.3, 59.2, 10, scale));
    const auto results = run(letters::trained(kR), image, params);
    ASSERT_THAT(results, testing::Not(IsEmpty())) << scale;
    EXPECT_NEAR(results.front().xScale() / scale, 1.0, 0.03);
    EXPECT_LT((letters::originOf(results.front()) - rzVector<2>(81.3, 59.2)).len(), 0.3);
  }
}

TEST(PatternFinder, AMirroredLetterIsAnotherLetter) {
  Image image = scene(kR, letters::pose(80, 60));
  image.clientFromImageXform(rzXform<2>(rzMatrix<2>(-1, 0, 0, 1), rzVector<2>(160, 0)));
  EXPECT_LT(bestScore(run(letters::trained(kR), image, openParams(0.2))), 0.75);
}

TEST(PatternFinder, WorksInAFrameThatBends) {
  Image image = scene(kR, letters::pose(120, 90, 20));
  const rzPtrHandle<rz2XformBase> bent(new rz2XformRadial(rzVector<2>(80, 60), 2e-6));
  image.clientFromImageXformBase(bent, true);
  const auto results = run(letters::trained(kR), image, openParams());
  ASSERT_THAT(results, SizeIs(1));
  const rzVector<2> expected = bent->mapPoint(rzVector<2>(120, 90));
  EXPECT_LT((letters::originOf(results.front()) - expected).len(), 0.2);
}

}  // namespace
