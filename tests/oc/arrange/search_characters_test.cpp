// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/search_characters.h"

#include <gmock/gmock.h>

#include <cmath>

#include "oc/extract/extract_peer.h"

namespace {

struct CandidateCase {
  const char* name;
  rzLong numOccurrences;
  std::vector<double> scores;  // of the instances found
  rzLong numCandidates;
  bool mayStayUnmatched;
};

class Candidates : public testing::TestWithParam<CandidateCase> {};

TEST_P(Candidates, AreCountedByHowMuchTheyAreWorth) {
  const CandidateCase& c = GetParam();
  rz_OCExtractCharResult found;
  found.numOccurrences(c.numOccurrences);
  rz_OCExtractPeer::symmetry(found, rz_OCExtractDefs::eRot180Symmetry);
  rz_OCExtractPeer::rot180Pose(found, rzXform<2>(rzMatrix<2>(-1, 0, 0, -1), rzVector<2>(3, 4)));
  for (const double score : c.scores) {
    rz_OCExtractCharInstance instance;
    instance.score = score;
    instance.pose = rzXform<2>(rzMatrix<2>(0, -2, 2, 0), rzVector<2>(100 * score, 7));
    rz_OCExtractPeer::append(found, instance);
  }
  rz_CharData data;
  std::vector<rz_Pose> poses;
  std::vector<double> scores;
  rf_TakeCandidates(found, poses, scores, data);

  EXPECT_EQ(data.numCandidates, c.numCandidates);
  EXPECT_EQ(data.mayStayUnmatched, c.mayStayUnmatched);
  EXPECT_EQ(data.costsWhenUnmatched, !c.scores.empty());
  EXPECT_EQ(data.numOccurrences, c.numOccurrences);
  EXPECT_EQ(data.symmetry, rz_OCExtractDefs::eRot180Symmetry);
  EXPECT_EQ(data.rot180Pose, found.rot180Pose());
  EXPECT_EQ(scores, c.scores) << "all instances are candidates";
  ASSERT_EQ(poses.size(), c.scores.size());
  for (std::size_t i = 0; i < poses.size(); ++i) {
    EXPECT_EQ(poses[i].translation, rzVector<2>(100 * c.scores[i], 7));
    EXPECT_EQ(poses[i].rotation, rzRadian(kRzHalfPi));
    EXPECT_EQ(poses[i].scale, 2);
    EXPECT_EQ(poses[i].logScale, std::log(2.0));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Table, Candidates,
    testing::Values(CandidateCase{"none", 2, {}, 0, true},
                    CandidateCase{"spare_ones_close_by", 2, {0.9, 0.8, 0.7, 0.66, 0.6}, 4, false},
                    CandidateCase{"too_few", 2, {0.95}, 1, true},
                    CandidateCase{"just_enough", 2, {0.95, 0.5}, 2, true},
                    CandidateCase{"just_sure", 1, {0.7}, 1, false},
                    CandidateCase{"not_quite_sure", 1, {0.699}, 1, true},
                    CandidateCase{"on_the_floor", 1, {0.75, 0.75 - 0.15}, 2, false},
                    CandidateCase{"below_the_floor", 1, {0.75, 0.59}, 1, false},
                    CandidateCase{"all_close", 1, {0.5, 0.49, 0.48}, 3, true}),
    [](const auto& test) { return std::string(test.param.name); });

struct PoseCase {
  const char* name;
  rzMatrix<2> matrix;
  double degrees;
  double scale;
};

class PoseFromXform : public testing::TestWithParam<PoseCase> {};

TEST_P(PoseFromXform, KeepsRotationAndScale) {
  const rz_Pose pose(rzXform<2>(GetParam().matrix, rzVector<2>(1, 2)));
  EXPECT_NEAR(rzDegree(pose.rotation).toDouble(), GetParam().degrees, 1e-12);
  EXPECT_NEAR(pose.scale, GetParam().scale, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Table, PoseFromXform,
                         testing::Values(PoseCase{"identity", {}, 0, 1},
                                         PoseCase{"quarter", {0, -3, 3, 0}, 90, 3},
                                         PoseCase{"half", {-1, 0, 0, -1}, 180, 1},
                                         PoseCase{"sheared", {1, 0.5, 0.5, 1}, 0, std::sqrt(0.75)},
                                         PoseCase{"mirrored", {2, 0, 0, -2}, 0, 2}),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
