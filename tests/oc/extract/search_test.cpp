// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "oc/extract_model.h"
#include "rz/angle.h"
#include "rz/attention.h"
#include "rz/pel_functions.h"
#include "rz/timeout.h"
#include "tests/oc/extract/drawn_alphabet.h"
#include "tests/oc/extract/extract_peer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Peer = rz_OCExtractPeer;
using Buffer = rzPelBuffer<unsigned char>;

// What drawing by supersampling and the finder's refinement leave.
constexpr double kPels = 0.3;
constexpr double kDegrees = 1.0;
constexpr double kScale = 0.02;

rzPtrHandle_const<rzOCAlphabet> someLetters() {
  return drawn::alphabet(
      {drawn::character('R', draw::letterR()), drawn::character('K', draw::letterK()),
       drawn::character('A', draw::letterA()), drawn::character('Z', draw::letterZ()),
       drawn::character('|', draw::bar()), drawn::blank(' ')});
}

struct Outcome {
  bool isComplete = false;
  rz_OCExtractStringResult result;
};

Outcome find(const std::vector<rzLong>& text, const rzPelBuffer_const<unsigned char>& image,
             const rz_OCExtractModelParams& modelParams = {},
             const rz_OCExtractRunParams& runParams = {},
             const rzPelBuffer_const<unsigned char>& mask = {}) {
  Outcome outcome;
  rz_OCExtractModel model;
  outcome.isComplete = model.search(someLetters(), text, image, mask, modelParams, runParams,
                                    outcome.result, nullptr, 0);
  return outcome;
}

// The text's letters in a row, R turned and the second A a little larger.
Buffer sampleImage() {
  Buffer image = draw::paper(240, 80);
  draw::fill(image, draw::letterR(), drawn::placed(30.25, 40.5, 20.0));
  draw::fill(image, draw::letterA(), drawn::placed(85, 40));
  draw::fill(image, draw::letterZ(), drawn::placed(140.5, 38, -15.0));
  draw::fill(image, draw::letterA(), drawn::placed(200, 42, 5.0, 1.1));
  return image;
}

void expectPose(const rzXform<2>& pose, double x, double y, double degrees, double scale) {
  EXPECT_NEAR(pose.trans().x(), x, kPels);
  EXPECT_NEAR(pose.trans().y(), y, kPels);
  const rzRadian turn = pose.xRot() - rzRadian(rzDegree(degrees));
  EXPECT_NEAR(rzDegree(turn.signedNorm()).toDouble(), 0.0, kDegrees);
  EXPECT_NEAR(pose.xScale(), scale, kScale);
}

TEST(ExtractSearch, FindsDrawnLettersWhereTheyStand) {
  rz_OCExtractModelParams params;
  params.scaleRange = rzRange(0.8, 1.25);
  const Outcome outcome = find({'R', 'A', 'Z', 'A'}, sampleImage(), params);
  EXPECT_TRUE(outcome.isComplete);
  EXPECT_GT(outcome.result.searchTime(), 0.0);
  const auto& results = outcome.result.results();
  ASSERT_EQ(results.size(), 4u);
  EXPECT_EQ(results[1], results[3]);
  ASSERT_EQ(outcome.result.uniqueCharResults().size(), 3u);
  EXPECT_EQ(outcome.result.uniqueCharResults()[0], results[1]);  // ascending keys: A, R, Z
  EXPECT_EQ(outcome.result.uniqueCharResults()[1], results[0]);
  EXPECT_EQ(outcome.result.uniqueCharResults()[2], results[2]);

  ASSERT_TRUE(results[0]->found());
  expectPose(results[0]->pose(0), 30.25, 40.5, 20.0, 1.0);
  EXPECT_GT(results[0]->score(0), 0.8);
  EXPECT_EQ(results[0]->numOccurrences(), 1);

  ASSERT_GE(results[1]->numInstances(), 2);
  EXPECT_EQ(results[1]->numOccurrences(), 2);
  const bool isPlainFirst = results[1]->pose(0).trans().x() < 140.0;
  expectPose(results[1]->pose(isPlainFirst ? 0 : 1), 85, 40, 0.0, 1.0);
  expectPose(results[1]->pose(isPlainFirst ? 1 : 0), 200, 42, 5.0, 1.1);

  ASSERT_TRUE(results[2]->found());
  EXPECT_EQ(results[2]->symmetry(), rz_OCExtractDefs::eRot180Symmetry);
  const rzXform<2> pose = results[2]->pose(0);
  const bool isUpright = std::cos(pose.xRot().toDouble()) > 0.0;
  expectPose(pose, 140.5, 38, isUpright ? -15.0 : 165.0, 1.0);
}

TEST(ExtractSearch, InstancesAreBestFirstAndAtMostTwoMoreThanExpected) {
  Buffer image = draw::paper(300, 60);
  for (int i = 0; i < 6; ++i) draw::fill(image, draw::letterK(), drawn::placed(30 + 46 * i, 30));
  rz_OCExtractModelParams params;
  params.angleRange = rzRange(-10, 10);
  params.scaleRange = rzRange(0.95, 1.05);
  for (const std::vector<rzLong>& text : {std::vector<rzLong>{'K'}, {'K', 'K', 'K'}}) {
    const Outcome outcome = find(text, image, params);
    const auto& found = outcome.result.results()[0];
    EXPECT_EQ(found->numOccurrences(), rf_Count(text.size()));
    EXPECT_EQ(found->numInstances(), found->numOccurrences() + 2);
    for (rzLong i = 1; i < found->numInstances(); ++i) {
      EXPECT_GE(found->score(i - 1), found->score(i));
    }
  }
}

TEST(ExtractSearch, UnsearchableCharactersAreNotFoundAndSpoilNothing) {
  const Outcome outcome = find({'|', ' ', 'R', '?', '|'}, sampleImage());
  EXPECT_TRUE(outcome.isComplete);
  const auto& results = outcome.result.results();
  ASSERT_EQ(results.size(), 5u);
  EXPECT_EQ(outcome.result.uniqueCharResults().size(), 4u);
  for (const std::size_t p : {0u, 1u, 3u, 4u}) {
    EXPECT_FALSE(results[p]->found());
    EXPECT_EQ(results[p]->numInstances(), 0);
    EXPECT_EQ(results[p]->rot180Pose(), rzXform<2>());
  }
  EXPECT_EQ(results[0]->numOccurrences(), 2);
  EXPECT_TRUE(results[2]->found());
}

TEST(ExtractSearch, MaskHidesWhatItDoesNotCareFor) {
  const Buffer image = sampleImage();
  Buffer mask = draw::paper(240, 80, 0);
  Buffer right = mask;
  right.window(rzPelRect(165, 0, 75, 80), false);
  rfPelSet(right, static_cast<unsigned char>(255));
  rz_OCExtractModelParams params;
  params.scaleRange = rzRange(0.8, 1.25);
  const Outcome outcome = find({'R', 'A'}, image, params, {}, mask);
  EXPECT_FALSE(outcome.result.results()[0]->found());
  ASSERT_EQ(outcome.result.results()[1]->numInstances(), 1);
  expectPose(outcome.result.results()[1]->pose(0), 200, 42, 5.0, 1.1);
}

TEST(ExtractSearch, ScaleIsLockedOnceTheLargerHalfAgrees) {
  // R, A, Z and K agree on 1.2; with four characters three samples are enough, so the one that is
  // searched last is held at their common scale.
  Buffer image = draw::paper(280, 80);
  draw::fill(image, draw::letterR(), drawn::placed(35, 40, 0, 1.2));
  draw::fill(image, draw::letterA(), drawn::placed(100, 40, 0, 1.2));
  draw::fill(image, draw::letterZ(), drawn::placed(165, 40, 0, 1.2));
  draw::fill(image, draw::letterK(), drawn::placed(235, 40, 0, 1.2));
  rz_OCExtractModelParams params;
  params.scaleRange = rzRange(0.8, 1.5);
  rz_OCExtractModel model;
  rz_OCExtractStringResult result;
  ASSERT_TRUE(
      model.search(someLetters(), {'R', 'A', 'Z', 'K'}, image, {}, params, {}, result, nullptr, 0));
  std::vector<double> scales;
  for (const rzLong m : Peer::searchOrder(model)) {
    const auto& found = result.uniqueCharResults()[static_cast<std::size_t>(m)];
    ASSERT_TRUE(found->found()) << m;
    scales.push_back(found->pose(0).xScale());
    EXPECT_NEAR(scales.back(), 1.2, kScale);
  }
  const auto [low, high] = std::minmax_element(scales.begin(), scales.begin() + 3);
  EXPECT_NEAR(scales[3], std::sqrt(*low * *high), 1e-9);
}

TEST(ExtractSearch, PassedTimeLimitMakesTheAnswerFalseAndTheResultsEmpty) {
  rz_OCExtractRunParams params;
  params.timeout = 0.0;
  const Outcome outcome = find({'R', 'A'}, sampleImage(), {}, params);
  EXPECT_FALSE(outcome.isComplete);
  ASSERT_EQ(outcome.result.results().size(), 2u);
  for (const auto& found : outcome.result.results()) EXPECT_FALSE(found->found());
}

}  // namespace
