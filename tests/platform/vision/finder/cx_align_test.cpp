// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "platform/vision/finder/cpu_variants.h"
#include "rz/attention.h"
#include "rz/timeout.h"
#include "tests/platform/vision/finder/letters.h"

namespace {

using letters::bestScore;
using letters::Image;
using letters::openParams;
using letters::originOf;
using letters::run;
using letters::scene;
using letters::trained;
using letters::turnFrom;
using testing::Each;
using testing::IsEmpty;
using testing::Lt;
using testing::SizeIs;

const draw::Shape kF = draw::letterF();
const draw::Shape kR = draw::letterR();
const draw::Shape kK = draw::letterK();
const draw::Shape kA = draw::letterA();

Image noisy(const Image& image, double sigma) {
  std::mt19937 random(7);
  std::normal_distribution<double> noise(0.0, sigma);
  Image result(image.window(), 32);
  for (rzLong y = 0; y < image.height(); ++y) {
    for (rzLong x = 0; x < image.width(); ++x) {
      const double grey = *image.pointToPel(x, y) + noise(random);
      *result.pointToPel(x, y) =
          static_cast<unsigned char>(std::lround(std::clamp(grey, 0.0, 255.0)));
    }
  }
  return result;
}

struct Where {
  double x, y, degrees, scale;
};

class TruePose : public testing::TestWithParam<Where> {};

TEST_P(TruePose, IsFoundToASmallPartOfAPel) {
  const Where& w = GetParam();
  for (const draw::Shape& letter : {kF, kR, kK, kA}) {
    const Image image = noisy(scene(letter, letters::pose(w.x, w.y, w.degrees, w.scale)), 4.0);
    const auto results = run(trained(letter), image, openParams());
    ASSERT_THAT(results, testing::Not(IsEmpty()));
    const rzCXAlignResult& best = results.front();
    EXPECT_LT((originOf(best) - rzVector<2>(w.x, w.y)).len(), 0.15);
    EXPECT_LT(turnFrom(best, w.degrees), 0.5);
    EXPECT_NEAR(best.xScale() / w.scale, 1.0, 0.01);
    EXPECT_GT(best.score(), 0.85);
    EXPECT_GT(best.coverage(), 0.9);
    EXPECT_TRUE(best.accepted());
  }
}

INSTANTIATE_TEST_SUITE_P(AllRound, TruePose,
                         testing::Values(Where{60.0, 50.0, 0.0, 1.0}, Where{71.3, 61.8, 33.0, 0.95},
                                         Where{90.47, 55.21, 91.0, 1.05},
                                         Where{80.9, 60.1, 148.0, 0.91}, Where{60, 66, 180.0, 1.0},
                                         Where{77.7, 44.4, 180.4, 1.03},
                                         Where{50.25, 70.75, -77.0, 1.09}));

TEST(PatternFinder, ContrastBelowTheThresholdDoesNotCount) {
  const Image faint = letters::changed(scene(kR, letters::pose(80, 60)), 0.04, 100.0);  // 8 greys
  rzCXAlignRunParams params = openParams();
  params.contrastThreshold(40.0);
  EXPECT_THAT(run(trained(kR), faint, params), IsEmpty());
}

TEST(PatternFinder, ScoresFallWithWhatIsCovered) {
  const rzCXAlignPattern pattern = trained(kR);
  double last = 1.1;
  for (const rzLong covered : {0, 4, 8}) {  // rows from the letter's upper end
    Image image = scene(kR, letters::pose(80, 60));
    for (rzLong y = 40; y < 45 + covered; ++y) {
      for (rzLong x = 60; x < 100; ++x) *image.pointToPel(x, y) = 220;
    }
    const auto results = run(pattern, image, openParams(0.3));
    ASSERT_THAT(results, testing::Not(IsEmpty()));
    EXPECT_LT(results.front().score(), last);
    EXPECT_LT((originOf(results.front()) - rzVector<2>(80, 60)).len(), 0.3);
    last = results.front().score();
  }
  EXPECT_LT(last, 0.75);
}

TEST(PatternFinder, GivesTheBestFirstAndNoMoreThanAskedFor) {
  Image image = draw::paper(220, 120);
  const std::vector<double> places = {35.0, 90.0, 145.0, 190.0};
  for (const double x : places) draw::fill(image, kR, letters::pose(x, 60.0, x));
  for (rzLong y = 20; y < 52; ++y) {
    for (rzLong x = 20; x < 50; ++x) *image.pointToPel(x, y) = 220;  // covers part of the first
  }
  const rzCXAlignPattern pattern = trained(kR);
  const auto all = run(pattern, image, openParams(0.2, 10));
  ASSERT_THAT(all, testing::SizeIs(testing::Ge(4U)));
  for (std::size_t i = 1; i < all.size(); ++i) EXPECT_GE(all[i - 1].score(), all[i].score());
  for (std::size_t i = 0; i < 3; ++i) EXPECT_GT(originOf(all[i]).x(), 60.0);
  EXPECT_THAT(run(pattern, image, openParams(0.2, 2)), SizeIs(2));
  EXPECT_THAT(run(pattern, image, openParams(0.2, 0)), IsEmpty());
}

TEST(PatternFinder, GivesTheSameBitsWithAndWithoutWideVectors) {
  const Image image = noisy(scene(kK, letters::pose(71.3, 58.9, 77)), 6.0);
  const auto wide = run(trained(kK), image, openParams(0.2));
  finder::wideVectorsAllowed = false;
  const auto plain = run(trained(kK), image, openParams(0.2));
  finder::wideVectorsAllowed = true;
  ASSERT_EQ(wide.size(), plain.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    EXPECT_EQ(wide[i].pose(), plain[i].pose());
    EXPECT_EQ(wide[i].score(), plain[i].score());
  }
}

TEST(PatternFinder, OnePlaceGivesOneResult) {
  const Image image = scene(draw::letterO(), letters::pose(80, 60));
  EXPECT_THAT(run(trained(draw::letterO()), image, openParams(0.3, 10)), SizeIs(1));
}

TEST(PatternFinder, LooksOnlyWhereTheMaskIsSet) {
  Image image = draw::paper(200, 120);
  draw::fill(image, kR, letters::pose(50, 60));
  draw::fill(image, kR, letters::pose(150, 60));
  Image mask = draw::paper(200, 120, 127);
  for (rzLong y = 0; y < 120; ++y) {
    for (rzLong x = 100; x < 200; ++x) *mask.pointToPel(x, y) = 128;
  }
  rzCXAlignResultSet set;
  trained(kR).run(image, mask, openParams(), set);
  ASSERT_THAT(set.results(), SizeIs(1));
  EXPECT_NEAR(originOf(set.results().front()).x(), 150.0, 0.1);
  const Image small = draw::paper(199, 120);
  EXPECT_THROW(trained(kR).run(image, small, openParams(), set), rzPel::BadWindow);
}

TEST(PatternFinder, FindsWhatHangsOverTheRimALittle) {
  const Image image = scene(kR, letters::pose(8, 60));
  const auto results = run(trained(kR), image, openParams(0.3));
  ASSERT_THAT(results, testing::Not(IsEmpty()));
  EXPECT_NEAR(originOf(results.front()).x(), 8.0, 0.3);
  EXPECT_LT(results.front().score(), 0.95);
}

TEST(PatternFinder, SmallPicturesAreNoTrouble) {
  for (const rzLong side : {1, 2, 3, 7, 20}) {
    EXPECT_THAT(run(trained(kR), draw::paper(side, side), openParams()), IsEmpty());
  }
}

TEST(PatternFinder, RunParametersNoticeAnotherPicture) {
  const rzCXAlignPattern pattern = trained(kR);
  const rzCXAlignRunParams params = openParams();
  EXPECT_THAT(run(pattern, scene(kR, letters::pose(50, 60)), params), SizeIs(1));
  const auto moved = run(pattern, scene(kR, letters::pose(110, 50)), params);
  ASSERT_THAT(moved, SizeIs(1));
  EXPECT_NEAR(originOf(moved.front()).x(), 110.0, 0.1);
  const auto again = run(pattern, scene(kR, letters::pose(110, 50)), openParams());
  EXPECT_EQ(moved.front().pose(), again.front().pose());
  EXPECT_EQ(moved.front().score(), again.front().score());
}

TEST(PatternFinder, AStoppedRunLeavesItsParametersUsable) {
  const rzCXAlignPattern pattern = trained(kR);
  const Image image = scene(kR, letters::pose(80, 60));
  const rzCXAlignRunParams params = openParams();
  rzCXAlignResultSet set;
  {
    const rzTimeoutScope scope(0.0);
    EXPECT_THROW(pattern.run(image, params, set), rzTimeout::Expired);
  }
  EXPECT_THAT(run(pattern, image, params), SizeIs(1));
}

TEST(PatternFinder, AFlatImageTrainsNothingAndKeepsWhatWasTrained) {
  rzCXAlignPattern pattern = trained(kR);
  EXPECT_THROW(pattern.train(draw::paper(30, 40), 3), rz_CXDefs::Errors);
  EXPECT_TRUE(pattern.isTrained());
  EXPECT_EQ(pattern.trainImage().width(), 32);
  rzCXAlignPattern empty;
  rzCXAlignResultSet set;
  EXPECT_THROW(empty.train(rzPelBuffer_const<unsigned char>(), 3), rzPel::UnboundWindow);
  EXPECT_THROW(empty.run(draw::paper(30, 40), openParams(), set), rz_CXDefs::Errors);
  EXPECT_THROW(pattern.run(rzPelBuffer_const<unsigned char>(), openParams(), set),
               rzPel::UnboundWindow);
}

}  // namespace
