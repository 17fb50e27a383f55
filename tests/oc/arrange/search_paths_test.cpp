// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/search_paths.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>

#include "oc/arrange/link_candidates.h"
#include "oc/arrange/path_search.h"
#include "oc/arrange/priority_queue.h"
#include "rz/attention.h"
#include "rz/timeout.h"
#include "rz/xform_linear.h"
#include "scene.h"

namespace {

using testing::Each;
using testing::ElementsAre;
constexpr rzLong kNo = kUnmatched;

// The state of a search before a round: the path that comes first, how many wait, and how many
// were tried.
struct Round {
  std::vector<rzLong> choices, lineStarts;
  rzLong waiting, tried;
  bool operator==(const Round& other) const = default;
};

struct Outcome {
  rz_ArrangePath path;
  bool isComplete;
  std::vector<Round> rounds;  // when asked for
};

Outcome search(const Scene& scene, const rzPelBuffer_const<unsigned char>& image = {}) {
  Outcome outcome;
  outcome.isComplete = rf_SearchPaths(image, scene.keys, scene.charData, scene.poses, scene.scores,
                                      scene.params, outcome.path);
  return outcome;
}

// The search as it is told: whole paths in the queue, each trial evaluated from its beginning.
Outcome plainSearch(const Scene& scene) {
  const rzLong n = rf_Count(scene.keys.size());
  rz_LinkTable links;
  rf_LinkCandidates(scene.charData, scene.poses, links);
  rz_PriorityQueue<rz_ArrangePath> queue(true);
  queue.push({}, 0.0);
  Outcome outcome{{}, false, {}};
  rzLong tried = 0;
  double bestCost = 0.0;
  const auto tryPath = [&](const rz_ArrangePath& path) {
    rz_ArrangeCost cost;
    ++tried;
    if (!scene.evaluate(path, cost)) return;
    queue.push(path, cost.total());
    const rzLong bestLength = outcome.path.size();
    if (path.size() > bestLength || (path.size() == bestLength && cost.total() < bestCost)) {
      outcome.path = path;
      bestCost = cost.total();
    }
  };
  while (queue.size() < scene.params.maxCandidates() && !queue.empty()) {
    rz_ArrangePath current = queue.top();
    const rzLong length = current.size();
    if (length == n) break;
    outcome.rounds.push_back({current.choices, current.lineStarts, queue.size(), tried});
    queue.pop();
    if (length < outcome.path.size() - 5) continue;
    const rz_CharData& data = scene.charData[rf_At(length)];
    for (rzLong c = data.mayStayUnmatched ? -1 : 0; c < data.numCandidates; ++c) {
      const rzLong previous = length > 0 ? current.choices.back() : 0;
      const bool canContinue = length > 0 && (previous < 0 || c < 0 ||
                                              links[rf_At(length - 1)][rf_At(previous)][rf_At(c)]);
      for (const bool startsLine : {false, true}) {
        if (!startsLine && !canContinue) continue;
        current.append(c, startsLine);
        tryPath(current);
        current.removeLast();
      }
    }
  }
  outcome.isComplete = outcome.path.size() == n;
  if (outcome.isComplete) return outcome;
  rf_SplitTrailingUnmatched(outcome.path);
  while (outcome.path.size() < n) outcome.path.append(-1, true);
  return outcome;
}

std::vector<Round> roundsOf(const Scene& scene) {
  std::vector<Round> rounds;
  rz_PathSearch search(scene.keys, scene.charData, scene.poses, scene.scores, scene.params, false);
  while (search.numWaiting() > 0) {
    const rz_ArrangePath front = search.front();
    const Round round{front.choices, front.lineStarts, search.numWaiting(), search.counts().tried};
    if (!search.runRound()) break;
    rounds.push_back(round);
  }
  return rounds;
}

// Bit for bit: a tolerance would hide a sum that is taken in another order.
TEST(PathTrials, AgreeWithTheWholeEvaluationToTheLastBit) {
  std::mt19937 random(20);
  int valid = 0, invalid = 0;
  for (int round = 0; round < 400; ++round) {
    const Scene scene = randomScene(random, 12);
    const bool isLeftHanded = round % 2 == 0;
    rz_PathTree tree;
    rz_PathTrials trials(tree, scene.keys, scene.charData, scene.poses, scene.scores, scene.params,
                         isLeftHanded, round % 3 == 0 ? 10 : 1000);
    std::vector<rzLong> open = {rz_PathTree::kRoot};
    for (int step = 0; step < 60 && !open.empty(); ++step) {
      const std::size_t draw = random() % 2 == 0 ? open.size() - 1 : random() % open.size();
      const rzLong node = open[draw];
      open.erase(open.begin() + static_cast<std::ptrdiff_t>(draw));
      if (tree.step(node).length == 12) continue;
      trials.grow(node);
      const rz_ArrangePath path = tree.path(node);
      const std::size_t position = path.choices.size();
      for (rzLong c = -1; c < rf_Count(scene.poses[position].size()); ++c) {
        for (const bool startsLine : {false, true}) {
          if (!startsLine && position == 0) continue;
          rz_ArrangePath tried = path;
          tried.append(c, startsLine);
          rz_ArrangeCost cost;
          rz_PathNode grown;
          double total = 0;
          const bool isValid = scene.evaluate(tried, cost, false, isLeftHanded);
          ASSERT_EQ(trials.tryChoice(c, startsLine, grown, total), isValid);
          ++(isValid ? valid : invalid);
          if (!isValid) continue;
          ASSERT_EQ(total, cost.total());
          open.push_back(tree.add(grown));
          ASSERT_EQ(tree.path(open.back()).choices, tried.choices);
          ASSERT_EQ(tree.path(open.back()).lineStarts, tried.lineStarts);
        }
      }
      if (node != rz_PathTree::kRoot) tree.release(node);
    }
  }
  EXPECT_GT(valid, 10000);
  EXPECT_GT(invalid, 10000);
}

TEST(SearchPaths, AgreesWithThePlainSearch) {
  std::mt19937 random(30);
  int complete = 0;
  for (int round = 0; round < 300; ++round) {
    Scene scene = randomScene(random, 4 + round % 7);
    scene.params.maxCandidates(round % 3 == 0 ? 5 + round / 3 : 400);
    const Outcome fast = search(scene);
    const Outcome plain = plainSearch(scene);
    ASSERT_EQ(fast.path.choices, plain.path.choices) << round;
    ASSERT_EQ(fast.path.lineStarts, plain.path.lineStarts) << round;
    ASSERT_EQ(fast.isComplete, plain.isComplete) << round;
    ASSERT_EQ(roundsOf(scene), plain.rounds) << round;
    complete += fast.isComplete ? 1 : 0;
  }
  EXPECT_GT(complete, 100);
  EXPECT_LT(complete, 300);
}

// Every complete path of five characters, evaluated.
double cheapestOfAll(const Scene& scene) {
  double cheapest = std::numeric_limits<double>::infinity();
  rz_ArrangePath path;
  const std::function<void()> grow = [&] {
    const std::size_t position = path.choices.size();
    if (position == scene.keys.size()) {
      rz_ArrangeCost cost;
      if (scene.evaluate(path, cost)) cheapest = std::min(cheapest, cost.total());
      return;
    }
    for (rzLong c = -1; c < rf_Count(scene.poses[position].size()); ++c) {
      for (const bool startsLine : {false, true}) {
        if (!startsLine && position == 0) continue;
        path.append(c, startsLine);
        grow();
        path.removeLast();
      }
    }
  };
  grow();
  return cheapest;
}

// With strong scores the search finds what trying everything finds; a wrong candidate, a wrong
// break or a missed one would cost more.
TEST(SearchPaths, FindsTheCheapestOfAllPathsOfFiveCharacters) {
  std::mt19937 random(40);
  std::uniform_real_distribution<double> place(0, 80), jitter(-1, 1);
  for (int round = 0; round < 40; ++round) {
    Scene scene;
    const rzLong rowLength = 2 + round % 4;
    for (rzLong i = 0; i < 5; ++i) {
      const rz_Pose there = poseAt(kPitch * (i % rowLength) + jitter(random),
                                   30.0 * (i / rowLength) + jitter(random), 3 * jitter(random));
      scene.add(i, {{there, 0.95}, {poseAt(place(random), place(random)), 0.6}});
    }
    const Outcome outcome = search(scene);
    ASSERT_TRUE(outcome.isComplete);
    rz_ArrangeCost cost;
    ASSERT_TRUE(scene.evaluate(outcome.path, cost));
    EXPECT_EQ(cost.total(), cheapestOfAll(scene)) << round;
  }
}

TEST(SearchPaths, BreaksLinesWhereTheTextDoes) {
  Scene scene;
  for (rzLong i = 0; i < 9; ++i) {
    if (i == 3) {
      scene.addBlank(-1);
    } else {
      scene.add(i, {{poseAt(kPitch * (i % 5), i < 5 ? 0 : 40), 0.9}});
    }
  }
  const Outcome outcome = search(scene);
  EXPECT_TRUE(outcome.isComplete);
  EXPECT_THAT(outcome.path.choices, ElementsAre(0, 0, 0, kNo, 0, 0, 0, 0, 0));
  EXPECT_THAT(outcome.path.lineStarts, ElementsAre(0, 5));
}

// All of one cost: whichever comes first in the order of trials and of the heap stays.
TEST(SearchPaths, FirstOfEquallyCheapPathsStays) {
  Scene scene = rowScene(1);
  scene.poses[0] = {poseAt(0, 0), poseAt(50, 0), poseAt(90, 0)};
  scene.scores[0] = {0.9, 0.9, 0.9};
  scene.charData[0].numCandidates = 3;
  EXPECT_THAT(search(scene).path.choices, ElementsAre(0));
}

TEST(SearchPaths, CandidatesBehindTheCountAndSurePositionsAreLeftAlone) {
  Scene scene = rowScene(1, 0.2);
  scene.poses[0].push_back(poseAt(50, 0));
  scene.scores[0].push_back(1.0);
  scene.params.unmatchedCharCost(0.1);
  EXPECT_THAT(search(scene).path.choices, ElementsAre(kNo)) << "leaving it out is cheaper";
  scene.charData[0].mayStayUnmatched = false;
  EXPECT_THAT(search(scene).path.choices, ElementsAre(0)) << "now it may not be left out";
  scene.charData[0].numCandidates = 2;
  EXPECT_THAT(search(scene).path.choices, ElementsAre(1));
}

TEST(SearchPaths, LimitsEndItWithACompletedPath) {
  Scene scene = rowScene(4);
  for (const rzLong limit : {0, 1}) {
    scene.params.maxCandidates(limit);
    const Outcome outcome = search(scene);
    EXPECT_FALSE(outcome.isComplete);
    EXPECT_THAT(outcome.path.choices, ElementsAre(kNo, kNo, kNo, kNo));
    EXPECT_THAT(outcome.path.lineStarts, ElementsAre(0, 1, 2, 3));
  }
  scene.params.maxCandidates(500000);
  scene.params.maxUnmatchedChars(0);
  scene.poses[2].clear();
  scene.scores[2].clear();
  scene.charData[2].numCandidates = 0;
  const Outcome outcome = search(scene);
  EXPECT_FALSE(outcome.isComplete) << "the third can be neither matched nor left out";
  EXPECT_THAT(outcome.path.choices, ElementsAre(0, 0, kNo, kNo));
  EXPECT_THAT(outcome.path.lineStarts, ElementsAre(0, 2, 3));
}

// The same ring runs clockwise in the image in one frame and the other way in its mirror image.
TEST(SearchPaths, MirroredClientFrameTurnsTheSenseRound) {
  Scene scene;
  for (rzLong k = 0; k < 5; ++k) {
    const rzVector<2> place(40.0, rzDegree(25.0 * k));
    scene.add(k, {{poseAt(place.x(), place.y(), 25.0 * k + 90), 0.9}});
  }
  scene.params.lineType(rzOCArrangeDefs::eCircular);
  scene.params.isTextDirectionSpecified(true);
  scene.params.straightTextDirection(rzDegree(100));
  rzPelBuffer<unsigned char> image(rzPelRect(0, 0, 10, 10), 32);
  for (const double y : {1.0, -1.0}) {
    image.clientFromImageXform(rzXform<2>(rzMatrix<2>(1, 0, 0, y), rzVector<2>()));
    const bool isOneLine = search(scene, image).path.numLines() == 1;
    EXPECT_EQ(isOneLine, y > 0) << "clockwise is asked for";
  }
}

// A blank without a box costs an infinite gap, and a weight of 0 makes that no number at all.
TEST(SearchPaths, CostsThatAreNoNumbersEndInAPath) {
  Scene scene = rowScene(6);
  for (const std::size_t i : {2u, 3u}) scene.charData[i].imageArea(rzAffineRectangle());
  for (const double weight : {1.0, 0.0}) {
    scene.params.tangentialTransCost(weight);
    EXPECT_EQ(search(scene).path.size(), 6);
    EXPECT_EQ(search(scene).path.choices, plainSearch(scene).path.choices);
  }
}

struct SplitCase {
  const char* name;
  rz_ArrangePath path;
  std::vector<rzLong> lineStarts;
};

class SplitTrailingUnmatched : public testing::TestWithParam<SplitCase> {};

TEST_P(SplitTrailingUnmatched, MakesLinesOfTheTail) {
  rz_ArrangePath path = GetParam().path;
  rf_SplitTrailingUnmatched(path);
  EXPECT_EQ(path.choices, GetParam().path.choices);
  EXPECT_EQ(path.lineStarts, GetParam().lineStarts);
}

INSTANTIATE_TEST_SUITE_P(
    Table, SplitTrailingUnmatched,
    testing::Values(SplitCase{"empty", {}, {}},
                    SplitCase{"alone", pathOf({0, kNo}, {0, 1}), {0, 1}},
                    SplitCase{"matched_end", pathOf({0, kNo, 0}, {0}), {0}},
                    SplitCase{"tail", pathOf({0, kNo, 2, kNo, kNo}, {0}), {0, 3, 4}},
                    SplitCase{"tail_of_second", pathOf({0, 0, kNo}, {0, 1}), {0, 1, 2}}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
