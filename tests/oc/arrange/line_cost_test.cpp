// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/line_cost.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <optional>
#include <random>

#include "scene.h"

namespace {

using rzD = rzOCArrangeDefs;
constexpr double kTolerance = 1e-9;

// One line under work, all of whose characters are alike.
struct Line {
  Line& add(const rz_Pose& pose, rz_OCExtractDefs::Symmetry s = rz_OCExtractDefs::eNoSymmetry) {
    scene.add(rf_Count(choices.size()), {{pose, 1.0}}, s);
    chars.append(pose, s);
    choices.push_back(0);
    return *this;
  }
  Line& addUnmatched() {
    scene.add(rf_Count(choices.size()), {});
    choices.push_back(kUnmatched);
    return *this;
  }

  rz_LineUnderWork work() const { return {chars, choices, 0, rf_Count(choices.size()) - 1, 1.0}; }
  std::optional<rz_LineVerdict> judge(bool isLeftHanded = false) const {
    return rz_LineJudge(scene.charData, scene.params, isLeftHanded).judge(work());
  }
  rz_LineErrors errors() const { return judge().value().errors; }

  Scene scene;
  rz_MatchedChars chars;
  std::vector<rzLong> choices;
};

Line row(const std::vector<double>& places, double degrees = 0.0) {
  Line line;
  for (const double x : places) line.add(poseAt(x, 0, degrees));
  return line;
}

Line ring(double sense, rzLong count = 5) {
  Line line;
  for (rzLong k = 0; k < count; ++k) {
    const double at = sense * 25 * k;
    const rzVector<2> place(40.0, rzDegree(at));
    line.add(poseAt(place.x(), place.y(), at + 90 * sense));
  }
  return line;
}

TEST(LineCost, OffsetsCountInSizesOfTheCharacter) {
  Line line = row({0, 12, 28, 36});  // the third stands 4 too far on
  EXPECT_NEAR(line.errors().tangential, 0.4, kTolerance);
  Line scaled;
  for (const double x : {0, 24, 56, 72}) scaled.add(poseAt(x, 0, 0, 2));
  EXPECT_NEAR(scaled.errors().tangential, 0.4, kTolerance);

  // Two above and two below their common line, by 2 of 20 units each.
  Line bent;
  for (const rzLong k : {0, 1, 2, 3}) bent.add(poseAt(12 * k, k == 0 || k == 3 ? 2 : -2));
  bent.scene.params.lineType(rzD::eStraight);
  EXPECT_NEAR(bent.errors().normal, 0.4, kTolerance);
}

struct GapCase {
  const char* name;
  double pitch;
  double spacing;
};

class LineGaps : public testing::TestWithParam<GapCase> {};

// A character of width 10: gaps from 8 to 25 are free.
TEST_P(LineGaps, CountOutsideTheirBounds) {
  EXPECT_NEAR(row({0, GetParam().pitch}).errors().spacing, GetParam().spacing, kTolerance);
}

INSTANTIATE_TEST_SUITE_P(Table, LineGaps,
                         testing::Values(GapCase{"least", 8, 0}, GapCase{"greatest", 25, 0},
                                         GapCase{"narrow", 6, 0.25}, GapCase{"wide", 30, 0.5}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(LineCost, UnmatchedPositionsOnlyTakePartInTheGaps) {
  Line line = row({0, 30});
  const double wide = line.errors().spacing;
  EXPECT_NEAR(wide, 0.5, kTolerance);
  Line filled;
  filled.add(poseAt(0, 0)).addUnmatched().add(poseAt(30, 0));
  const rz_LineErrors e = filled.errors();
  EXPECT_NEAR(e.normal + e.tangential + e.rotation + e.spacing, 0, kTolerance);
}

struct RotationCase {
  const char* name;
  rzD::OrientationMode mode;
  rzD::OrientationReference reference;
  double expected;  // degrees
  rz_OCExtractDefs::Symmetry symmetry;
  double lineDegrees, charDegrees;  // the row's direction, and the rotation of all its characters
  double error;                     // of each character
};

class LineRotation : public testing::TestWithParam<RotationCase> {};

TEST_P(LineRotation, CountsInUnitsOf45Degrees) {
  const RotationCase& c = GetParam();
  Line line;
  for (const double t : {0, 12, 24}) {
    const rzVector<2> place(t, rzDegree(c.lineDegrees));
    line.add(poseAt(place.x(), place.y(), c.charDegrees), c.symmetry);
  }
  line.scene.params.orientationMode(c.mode);
  line.scene.params.orientationReference(c.reference);
  line.scene.params.expectedOrientation(rzDegree(c.expected));
  EXPECT_NEAR(line.errors().rotation, 3 * c.error, kTolerance);
}

constexpr auto kNone = rz_OCExtractDefs::eNoSymmetry;
constexpr auto kHalf = rz_OCExtractDefs::eRot180Symmetry;
constexpr auto kAny = rz_OCExtractDefs::eAnyAngleSymmetry;

INSTANTIATE_TEST_SUITE_P(
    Table, LineRotation,
    testing::Values(
        RotationCase{"all_turned_alike", rzD::eAverage, rzD::eRelative, 0, kNone, 0, 77, 0},
        RotationCase{"line_and_characters_turned", rzD::eSpecified, rzD::eRelative, 0, kNone, 40,
                     40, 0},
        RotationCase{"absolute", rzD::eSpecified, rzD::eAbsolute, 0, kNone, 40, 45, 1},
        RotationCase{"relative", rzD::eSpecified, rzD::eRelative, 10, kNone, 40, 95, 1},
        RotationCase{"upside_down", rzD::eSpecified, rzD::eAbsolute, 0, kNone, 0, 180, 4},
        RotationCase{"upside_down_unseen", rzD::eSpecified, rzD::eAbsolute, 0, kHalf, 0, 180, 0},
        RotationCase{"across", rzD::eSpecified, rzD::eAbsolute, 0, kHalf, 0, -90, 2},
        RotationCase{"folded", rzD::eSpecified, rzD::eAbsolute, 0, kHalf, 0, 135, 1},
        RotationCase{"round", rzD::eSpecified, rzD::eAbsolute, 0, kAny, 0, 45, 0}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(LineCost, OddOneOutIsJudgedAgainstTheOthers) {
  Line line = row({0, 12, 24});
  line.add(poseAt(36, 0, 45));
  const double average = rzDegree(line.judge()->average).toDouble();
  EXPECT_NEAR(line.errors().rotation, (3 * average + (45 - average)) / 45, kTolerance);
}

struct ShapeCase {
  const char* name;
  Line line;
  std::function<void(rzOCArrangeParams&)> set;
  bool isLeftHanded;
  std::optional<rzD::LineType> type;
};

class LineShape : public testing::TestWithParam<ShapeCase> {};

TEST_P(LineShape, FollowsTheSettings) {
  Line line = GetParam().line;
  GetParam().set(line.scene.params);
  const auto verdict = line.judge(GetParam().isLeftHanded);
  ASSERT_EQ(verdict.has_value(), GetParam().type.has_value());
  if (verdict) {
    EXPECT_EQ(verdict->type, *GetParam().type);
  }
}

void straightOnly(rzOCArrangeParams& p) { p.lineType(rzD::eStraight); }
void circularOnly(rzOCArrangeParams& p) { p.lineType(rzD::eCircular); }
void anyShape(rzOCArrangeParams&) {}
void towards(rzOCArrangeParams& p, double degrees) {
  p.isTextDirectionSpecified(true);
  p.straightTextDirection(rzDegree(degrees));
}
void clockwise(rzOCArrangeParams& p, bool is) {
  p.lineType(rzD::eCircular);
  p.isTextDirectionSpecified(true);
  p.isCircularTextDirectionClockwise(is);
}

INSTANTIATE_TEST_SUITE_P(
    Table, LineShape,
    testing::Values(
        ShapeCase{"ring_forced_straight", ring(1, 3), straightOnly, false, rzD::eStraight},
        ShapeCase{"row_forced_circular", row({0, 12, 24}), circularOnly, false, {}},
        ShapeCase{"two_on_no_ring", row({0, 12}), circularOnly, false, rzD::eStraight},
        ShapeCase{"two_and_a_gap_on_no_ring",
                  Line().add(poseAt(0, 0)).addUnmatched().add(poseAt(24, 0)),
                  circularOnly,
                  false,
                  {}},
        ShapeCase{"any_direction", row({24, 12, 0}), anyShape, false, rzD::eStraight},
        ShapeCase{"against", row({24, 12, 0}), [](auto& p) { towards(p, 0); }, false, {}},
        ShapeCase{"along", row({24, 12, 0}), [](auto& p) { towards(p, 180); }, false,
                  rzD::eStraight},
        ShapeCase{"out_of_order", row({0, 24, 12}), anyShape, false, {}},
        ShapeCase{"clockwise", ring(1), [](auto& p) { clockwise(p, true); }, false, rzD::eCircular},
        ShapeCase{"clockwise_mirrored", ring(1), [](auto& p) { clockwise(p, true); }, true, {}},
        ShapeCase{"not_clockwise", ring(1), [](auto& p) { clockwise(p, false); }, false, {}},
        ShapeCase{"anticlockwise", ring(-1), [](auto& p) { clockwise(p, false); }, false,
                  rzD::eCircular},
        ShapeCase{"anticlockwise_mirrored", ring(1), [](auto& p) { clockwise(p, false); }, true,
                  rzD::eCircular}),
    [](const auto& test) { return std::string(test.param.name); });

// A transcription of the choice between the shapes with nothing left out: each shape alone.
TEST(LineCost, CheaperShapeWinsAndEarlyEndsChangeNothing) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> jitter(-3, 3);
  int circles = 0;
  for (int round = 0; round < 3000; ++round) {
    Line line;
    const double bend = 0.2 * (round % 60);
    for (rzLong k = 0; k < 6; ++k) {
      if (k == 3 && round % 4 == 0) {
        line.addUnmatched();
        continue;
      }
      line.add(poseAt(12.0 * k + jitter(random), bend * k * (5 - k) / 6 + jitter(random),
                      10 * jitter(random)),
               static_cast<rz_OCExtractDefs::Symmetry>(round % 3));
    }
    rzOCArrangeParams& params = line.scene.params;
    if (round % 5 == 0) params.orientationCost(0);
    const auto costOf = [&](const std::optional<rz_LineVerdict>& v) {
      return !v ? HUGE_VAL
                : v->errors.normal * params.normalTransCost() +
                      v->errors.tangential * params.tangentialTransCost() +
                      v->errors.rotation * params.orientationCost() +
                      v->errors.spacing * params.tangentialTransCost();
    };
    const auto either = line.judge();
    params.lineType(rzD::eStraight);
    const auto straight = line.judge();
    params.lineType(rzD::eCircular);
    const auto circular = line.judge();
    const bool takesCircular = circular && costOf(circular) < costOf(straight);
    const auto& expected = takesCircular ? circular : straight;
    ASSERT_EQ(either.has_value(), expected.has_value());
    if (!expected) continue;
    circles += takesCircular ? 1 : 0;
    EXPECT_EQ(either->type, expected->type);
    EXPECT_EQ(costOf(either), costOf(expected));
    EXPECT_EQ(either->average, expected->average);
  }
  EXPECT_GT(circles, 300);
  EXPECT_LT(circles, 2700);
}

// Blanks without a box make gaps of infinite cost: an ordinary number to the choice of a shape.
TEST(LineCost, BoxesOfNoSizeCostWithoutBound) {
  Line line = row({0, 12});
  line.scene.charData[0].imageArea(rzAffineRectangle());
  line.scene.charData[1].imageArea(rzAffineRectangle());
  EXPECT_EQ(line.errors().spacing, HUGE_VAL);
}

}  // namespace
