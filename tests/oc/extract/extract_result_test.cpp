// SPDX-License-Identifier: Apache-2.0
#include "oc/extract_result.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "oc/extract/select_results.h"
#include "oc/extract_params.h"
#include "rz/angle.h"
#include "rz/cx_align.h"
#include "tests/oc/extract/extract_peer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Peer = rz_OCExtractPeer;
using Instance = rz_OCExtractCharInstance;
using Result = rz_OCExtractCharResult;

Instance instance(double score, const rzAffineRectangle& rect = {}) {
  Instance made;
  made.score = score;
  made.affRect = rect;
  return made;
}

rzAffineRectangle box(double x, double y, double width, double height) {
  return rzAffineRectangle(rzVector<2>(x, y), width, height, rzRadian(0.0), rzRadian(0.0));
}

std::vector<double> scores(const Result& result) {
  std::vector<double> all;
  for (rzLong i = 0; i < result.numInstances(); ++i) all.push_back(result.score(i));
  return all;
}

Result resultOf(const std::vector<Instance>& instances) {
  Result result;
  for (const Instance& one : instances) Peer::append(result, one);
  return result;
}

TEST(ExtractInstance, CarriesTheTrainedWindowThroughTrainingClientAndPose) {
  const rzXform<2> pose(rzVector<2>(100, 50), 2.0, 1.0, rzRadian(0.0), rzDegree(90.0));
  const rzXform<2> clientFromImage(rzMatrix<2>(), rzVector<2>(-10, -20));
  const Instance made(rzCXAlignResult(pose, 2.0, 0.75, 1.0, true), clientFromImage,
                      rzPelRect(10, 20, 8, 6));
  EXPECT_EQ(made.score, 0.75);
  EXPECT_EQ(made.pose, pose);
  // The window's upper left corner is the client origin; x goes down and y to the left, doubled.
  constexpr double kRounding = 1e-12;
  EXPECT_LT(made.affRect.cornerPo().distance(rzVector<2>(100, 50)), kRounding);
  EXPECT_LT(made.affRect.cornerPx().distance(rzVector<2>(100, 66)), kRounding);
  EXPECT_LT(made.affRect.cornerPy().distance(rzVector<2>(88, 50)), kRounding);
}

struct OverlapCase {
  const char* name;
  rzAffineRectangle tested;
  rzAffineRectangle other;
  double tolerance;
  bool isEqual;
};

void PrintTo(const OverlapCase& c, std::ostream* os) { *os << c.name; }

class Overlap : public testing::TestWithParam<OverlapCase> {};

TEST_P(Overlap, CountsInSidesOfTheOtherRectangle) {
  const OverlapCase& c = GetParam();
  EXPECT_EQ(instance(0, c.tested).isEqual(instance(0, c.other), c.tolerance), c.isEqual);
}

const rzAffineRectangle kBig = box(0, 0, 64, 128);
const rzAffineRectangle kSmall = box(8, 8, 4, 4);

INSTANTIATE_TEST_SUITE_P(
    Rectangles, Overlap,
    testing::Values(
        OverlapCase{"itself", kBig, kBig, 1e-9, true},
        OverlapCase{"centre_at_exactly_the_tolerance", box(16, 0, 64, 128), kBig, 0.25, true},
        OverlapCase{"centre_just_beyond", box(16.01, 0, 64, 128), kBig, 0.25, false},
        OverlapCase{"y_counts_in_heights", box(0, 32, 64, 128), kBig, 0.25, true},
        OverlapCase{"upper_left_corner_on_the_centre", box(32, 64, 9, 9), kBig, 0.01, true},
        OverlapCase{"upper_right_corner_on_the_centre", box(23, 64, 9, 9), kBig, 0.01, true},
        OverlapCase{"lower_left_corner_on_the_centre", box(32, 55, 9, 9), kBig, 0.01, true},
        OverlapCase{"lower_right_corner_on_the_centre", box(23, 55, 9, 9), kBig, 0.01, true},
        OverlapCase{"edge_on_the_centre", box(28, 64, 9, 9), kBig, 0.01, false},
        OverlapCase{"small_inside_big", kSmall, kBig, 0.6, true},
        OverlapCase{"big_around_small", kBig, kSmall, 0.6, false}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(ExtractCharResult, RefusesIndicesWithoutAnInstance) {
  for (const Result& result : {resultOf({}), resultOf({instance(0.5)})}) {
    for (const rzLong bad : {result.numInstances(), result.numInstances() + 1, -1}) {
      using Error = rz_OCExtractDefs::rz_OCExtractError;
      EXPECT_THROW(result.pose(bad), Error);
      EXPECT_THROW(result.affRect(bad), Error);
      EXPECT_THROW(Peer::doesOverlap(result, 0, bad, 1.0), Error);
      try {
        result.score(bad);
        ADD_FAILURE() << "no exception for index " << bad;
      } catch (const Error& error) {
        EXPECT_STREQ(error.what(), "Bad index");
      }
    }
  }
}

TEST(ExtractCharResult, InitKeepsTheHalfTurnPoseOnly) {
  const rzXform<2> pose(rzMatrix<2>(), rzVector<2>(1, 2));
  Result result = resultOf({instance(0.5)});
  result.found(true);
  result.time(3.0);
  result.numOccurrences(2);
  Peer::symmetry(result, rz_OCExtractDefs::eRot180Symmetry);
  Peer::rot180Pose(result, pose);
  result.init();
  EXPECT_EQ(result.rot180Pose(), pose);
  EXPECT_FALSE(result.found());
  EXPECT_EQ(result.time(), 0.0);
  EXPECT_EQ(result.numOccurrences(), 0);
  EXPECT_EQ(result.numInstances(), 0);
  EXPECT_EQ(result.symmetry(), rz_OCExtractDefs::eNoSymmetry);
}

TEST(ExtractCharResult, RemovesWhatTheTestedOneLiesOnFromLaterPlacesOnly) {
  const rzAffineRectangle here = box(0, 0, 10, 10);
  const rzAffineRectangle there = box(100, 0, 10, 10);
  const std::vector<Instance> all = {instance(0.9, there), instance(0.8, here),
                                     instance(0.7, here),  instance(0.6, here),
                                     instance(0.5, there), instance(0.4, here)};
  Result result = resultOf(all);
  Peer::removeOverlapping(result, 1, 0.5);
  EXPECT_THAT(scores(result), ElementsAre(0.9, 0.8, 0.5));

  for (const rzLong past : {5, 6}) {
    result = resultOf(all);
    Peer::removeOverlapping(result, past, 0.5);
    EXPECT_EQ(result.numInstances(), 6) << past;
  }
}

TEST(ExtractCharResult, JoiningAddsInstancesAndTimeAndNothingElse) {
  Result sum = resultOf({instance(0.5), instance(0.6)});
  sum.time(2.0);
  sum.numOccurrences(3);
  Result other = resultOf({instance(0.9)});
  other.time(5.0);
  other.found(true);
  other.numOccurrences(7);
  Peer::symmetry(other, rz_OCExtractDefs::eAnyAngleSymmetry);
  Peer::join(sum, other);
  EXPECT_THAT(scores(sum), ElementsAre(0.5, 0.6, 0.9));
  EXPECT_EQ(sum.time(), 7.0);
  EXPECT_TRUE(sum.found());
  EXPECT_EQ(sum.numOccurrences(), 3);
  EXPECT_EQ(sum.symmetry(), rz_OCExtractDefs::eNoSymmetry);

  Peer::join(sum, Result());
  EXPECT_TRUE(sum.found());
  Peer::join(sum, sum);
  EXPECT_THAT(scores(sum), ElementsAre(0.5, 0.6, 0.9, 0.5, 0.6, 0.9));
}

TEST(ExtractStringResult, SecondResultOfAKeyIsJoinedToTheFirstObject) {
  const rzPtrHandle<Result> first(new Result(resultOf({instance(0.5)})));
  first->time(1.0);
  const rzPtrHandle<Result> second(new Result(resultOf({instance(0.9)})));
  second->time(2.0);
  rz_OCExtractStringResult result;
  Peer::add(result, 7, first);
  Peer::add(result, 7, second);
  EXPECT_THAT(scores(*first), ElementsAre(0.5, 0.9));
  EXPECT_EQ(first->time(), 3.0);
  EXPECT_THAT(scores(*second), ElementsAre(0.9));
}

rzCXAlignResult scored(double score, bool isAccepted, double coverage = 1.0) {
  return rzCXAlignResult({}, 1.0, score, coverage, isAccepted);
}

rzCXAlignResultSet setOf(const std::vector<rzCXAlignResult>& results) {
  rzCXAlignResultSet set;
  set.results(results);
  return set;
}

std::vector<double> selectedScores(const std::vector<rzCXAlignResult>& results) {
  std::vector<rzCXAlignResult> list = {scored(0.1, true)};
  rf_SelectResults(setOf(results), list);
  std::vector<double> all;
  for (const rzCXAlignResult& result : list) all.push_back(result.score());
  return all;
}

TEST(SelectResults, KeepsAcceptedOnesInOrderAndFallsBackToAll) {
  const rzCXAlignResult good = scored(0.6, true, 0.0);
  const rzCXAlignResult better = scored(0.9, true);
  const rzCXAlignResult refused = scored(0.8, false);
  const rzCXAlignResult uncovered = scored(0.7, true, -0.5);
  EXPECT_THAT(selectedScores({}), IsEmpty());
  EXPECT_THAT(selectedScores({good, refused, better, uncovered}), ElementsAre(0.6, 0.9));
  EXPECT_THAT(selectedScores({refused, uncovered}), ElementsAre(0.8, 0.7));
}

}  // namespace
