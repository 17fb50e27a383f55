// SPDX-License-Identifier: Apache-2.0
#include "oc/arrange/arrange_diagnostics.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>

#include "oc/arrange.h"
#include "oc/arrange/diagnostic_graphics.h"
#include "oc/arrange/diagnostic_text.h"
#include "oc/extract/drawn_alphabet.h"
#include "rz/pel_functions.h"
#include "rz/text.h"
#include "scene.h"

namespace {

using rzD = rzOCArrangeDefs;
using Image = rzPelBuffer_const<unsigned char>;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::string_literals;  // texts that hold a NUL

constexpr rzULong kAll = rzDiagDefs::eInputs | rzDiagDefs::eResults | rzDiagDefs::eDetails;

// Kind and colour of each graphic, in order.
std::vector<std::string> drawings(const rzGraphicList& list) {
  std::vector<std::string> found;
  for (const auto& item : list.items()) {
    const rzGraphic* g = &*item;
    const std::string kind = dynamic_cast<const rzGraphicSimple<rzAffineRectangle>*>(g) ? "box"
                             : dynamic_cast<const rzGraphicSimple<rzLineSeg>*>(g)       ? "segment"
                             : dynamic_cast<const rzGraphicSimple<rzEllipseArc2>*>(g)   ? "arc"
                             : dynamic_cast<const rzGraphicPointIcon*>(g)               ? "point"
                             : dynamic_cast<const rzGraphicWithFill<rzGenRect, rzGenRect>*>(g)
                                 ? "outline"
                                 : "?";
    const std::string color = g->color() == rzColor::redColor()      ? "red "
                              : g->color() == rzColor::greenColor()  ? "green "
                              : g->color() == rzColor::orangeColor() ? "orange "
                              : g->color() == rzColor::yellowColor() ? "yellow "
                                                                     : "? ";
    found.push_back(color + kind + " " + std::to_string(g->props().penWidth()));
  }
  return found;
}

std::vector<std::string> titles(const rzDiagObject& diag) {
  std::vector<std::string> found;
  for (rzLong i = 0; i < diag.numRecords(); ++i) {
    found.push_back(std::to_string(diag.diagRecord(i)->level()) + diag.diagRecord(i)->annotation());
  }
  return found;
}

// The first record of that title.
const rzDiagRecord& recordOf(const rzDiagObject& diag, const std::string& title) {
  for (rzLong i = 0; i < diag.numRecords(); ++i) {
    if (diag.diagRecord(i)->annotation() == title) return *diag.diagRecord(i);
  }
  throw std::out_of_range(title);
}

std::vector<std::string> labels(const rzDiagRecord& record) {
  std::vector<std::string> found;
  for (const rzDiagText& text : record.texts()) found.push_back(text.label);
  for (const rzDiagGraphics& graphics : record.graphics()) {
    found.push_back(graphics.label);
    EXPECT_EQ(graphics.coordinateSystem, rzDiagDefs::eClientCoordinates);
  }
  return found;
}

const rzOCAlphabet& letters() {
  static const auto alphabet = drawn::alphabet({drawn::character('F', draw::letterF()),
                                                drawn::character('R', draw::letterR()),
                                                drawn::character('K', draw::letterK())});
  return *alphabet;
}

// The given letters in a row, 34 apart, on paper whose pels start at (5, 3).
Image print(const std::vector<draw::Shape>& shapes) {
  rzPelBuffer<unsigned char> image = draw::paper(150, 70);
  double x = 25.0;
  for (const draw::Shape& shape : shapes) {
    draw::fill(image, shape, drawn::placed(x, 35));
    x += 34.0;
  }
  image.offset({5, 3});
  return image;
}

Image careMask(const Image& image) {
  rzPelBuffer<unsigned char> mask(image.window(), 32);
  rfPelSet(mask, 255);
  return mask;
}

const std::vector<rzLong> kFRK{'F', 'R', 'K'};

rzOCArrangeResults arrange(const Image& image, const Image& mask, rzDiagObject* diag, rzULong flags,
                           const std::vector<rzLong>& keys = kFRK) {
  rzOCArrangeResults results;
  rfOCArrange_(image, mask, letters(), keys, {}, results, diag, flags);
  return results;
}

TEST(ArrangeDiagnostics, RecordsNestBelowTheLevelOfTheCallerInTheOrderOfTheWork) {
  const Image image = print({draw::letterF(), draw::letterR(), draw::letterK()});
  rzDiagObject diag;
  diag.level(1);
  const rzOCArrangeResults results = arrange(image, careMask(image), &diag, kAll);
  ASSERT_THAT(results.statusFlags(), Each(rzD::eMatched));
  EXPECT_EQ(diag.level(), 1);
  std::vector<std::string> found = titles(diag);
  std::erase_if(found, [](const std::string& title) { return title[0] > '2'; });
  EXPECT_THAT(found,
              ElementsAre("1OC Arranger: Input", "2Runtime mask", "2Alphabet details",
                          "1OC Arranger: Intermediate", "2Search for characters",
                          "2Build arrangement", "1OC Arranger: Output", "2Details for line #0"));
  EXPECT_THAT(labels(recordOf(diag, "OC Arranger: Input")),
              ElementsAre("Image info", "Alphabet info", "Target string", "Run params"));
  EXPECT_THAT(labels(recordOf(diag, "Build arrangement")),
              ElementsAre("Line #0 details", "Arrangement cost", "Line #0 graphics"));
  EXPECT_THAT(labels(recordOf(diag, "OC Arranger: Output")),
              ElementsAre("Overall info", "Arrangement graphics"));
  EXPECT_THAT(labels(recordOf(diag, "Details for line #0")), ElementsAre("Details", "Graphics"));
  EXPECT_EQ(drawings(recordOf(diag, "Details for line #0").graphics()[0].list).size(), 10U);
  EXPECT_TRUE(recordOf(diag, "OC Arranger: Input").images().at(0).image.sharesRoot(image));
  EXPECT_EQ(recordOf(diag, "OC Arranger: Input").texts()[0].content,
            "Image info\nSize:\t150 x 70\nOffset:\t5 x 3\n\n\0"s);
}

TEST(ArrangeDiagnostics, EachSwitchRecordsItsOwnPart) {
  const Image image = print({draw::letterF(), draw::letterR(), draw::letterK()});
  const auto topTitles = [&](rzULong flags) {
    rzDiagObject diag;
    arrange(image, Image(), &diag, flags);
    std::vector<std::string> found = titles(diag);
    std::erase_if(found, [](const std::string& title) { return title[0] != '0'; });
    return found;
  };
  EXPECT_THAT(topTitles(0), IsEmpty());
  EXPECT_THAT(topTitles(rzDiagDefs::eInputs), ElementsAre("0OC Arranger: Input"));
  EXPECT_THAT(topTitles(rzDiagDefs::eDetails), ElementsAre("0OC Arranger: Intermediate"));
  EXPECT_THAT(topTitles(rzDiagDefs::eResults), ElementsAre("0OC Arranger: Output"));
}

// Cut short after two characters, which have no circle through them once the third stands behind.
TEST(ArrangeDiagnostics, CostsOfAPathThatEndedInvalidAreNotTold) {
  const Image image = print({draw::letterF(), draw::letterR(), draw::letterK()});
  for (const auto& [type, isTold] : {std::pair{rzD::eStraight, true}, {rzD::eCircular, false}}) {
    rzOCArrangeParams params;
    params.lineType(type);
    params.maxCandidates(2);
    params.compPoseUncertainties(true);
    rzDiagObject diag;
    rzOCArrangeResults results;
    rfOCArrange(image, letters(), kFRK, params, results, &diag, kAll);
    ASSERT_THAT(results.statusFlags(), ElementsAre(rzD::eMatched, rzD::eMatched, rzD::eUnknown));
    const std::vector<std::string> found = titles(diag);
    EXPECT_EQ(std::ranges::count(found, "1Build arrangement"), isTold ? 1 : 0);
    EXPECT_EQ(std::ranges::count(found, "1Details for line #1"), 1) << "results in any case";
  }
}

TEST(ArrangeDiagnostics, RecordingChangesNoResult) {
  const Image full = print({draw::letterF(), draw::letterR(), draw::letterK()});
  const Image gap = print({draw::letterF(), draw::letterK(), draw::letterK()});
  for (const Image& image : {full, gap, Image(draw::paper(60, 60))}) {
    for (const Image& mask : {Image(), careMask(image)}) {
      for (const auto& keys : {kFRK, {}}) {
        rzDiagObject diag;
        const rzOCArrangeResults plain = arrange(image, mask, nullptr, kAll, keys);
        const rzOCArrangeResults watched = arrange(image, mask, &diag, kAll, keys);
        EXPECT_EQ(watched, plain);
        EXPECT_GT(diag.numRecords(), 0);
      }
    }
  }
}

TEST(ArrangeDiagnostics, ParametersAreToldWithTheirLimitsAndModes) {
  const auto textOf = [](const rzOCArrangeParams& params) {
    rzDiagObject diag;
    rf_RecordArrangeInputs(draw::paper(9, 9), Image(), rzOCAlphabet(), {}, params, &diag);
    return diag.diagRecord(0)->texts().at(3).content;
  };
  rzOCArrangeParams params;
  EXPECT_EQ(
      textOf(params),
      "Run params\nMax lines\t\tNo limit\nMax unmatched chars\tNo limit\n"
      "Line type\t\t\tDon't care\nOrientation mode\t\tAverage\nOrientation frame\t\tRelative\n"
      "Expected Orientation\t0 rad/0 deg (not used)\n\n"
      "Line break cost\t\t2\nUnmatched char cost\t1\nNormal trans cost\t\t1\n"
      "Tangential trans cost\t1\nOrientation cost\t\t1\nScale cost\t\t1\n\n\0"s);
  params.maxLines(5);
  params.maxUnmatchedChars(0);
  params.lineType(rzD::eCircular);
  params.orientationMode(rzD::eSpecified);
  params.orientationReference(rzD::eAbsolute);
  params.expectedOrientation(rzDegree(90));
  params.lineBreakCost(0.125);
  params.unmatchedCharCost(3);
  params.normalTransCost(4);
  params.tangentialTransCost(1.0 / 3.0);
  params.orientationCost(6);
  params.scaleCost(7);
  EXPECT_EQ(
      textOf(params),
      "Run params\nMax lines\t\t5\nMax unmatched chars\t0\n"
      "Line type\t\t\tCircular\nOrientation mode\t\tSpecified\nOrientation frame\t\tAbsolute\n"
      "Expected Orientation\t1.5708 rad/90 deg (used)\n\n"
      "Line break cost\t\t0.125\nUnmatched char cost\t3\nNormal trans cost\t\t4\n"
      "Tangential trans cost\t0.333333\nOrientation cost\t\t6\nScale cost\t\t7\n\n\0"s);
  params.lineType(rzD::eStraight);
  EXPECT_THAT(textOf(params), HasSubstr("Line type\t\t\tStraight\n"));
}

// Characters 100 and 101 of scene.h's size, and a blank 32.
rzPtrHandle_const<rzOCAlphabet> boxAlphabet() {
  const rzPelBuffer<unsigned char> paper = draw::paper(10, 20);
  using Model = rzOCModel;
  return drawn::alphabet({new Model(100, paper, paper.window(), Model::eNormal, "A"),
                          new Model(101, paper, paper.window(), Model::eNormal, "B"),
                          new Model(32, {}, rzPelRect(0, 0, 7, 9), Model::eBlank, "gap")});
}

TEST(ArrangeDiagnostics, CostsAreToldPositionByPositionAndLineByLine) {
  const std::vector<rzLong> keys{100, 101, 100, 32, 101};
  rz_ArrangeCost cost;
  cost.lineTypes = {rzD::eStraight, rzD::eDontCare};
  cost.lineSegs = {rzLineSeg(rzVector<2>(0, 0), rzVector<2>(24, 0))};
  cost.lineAngles = {rzDegree(12.34), rzDegree(0)};
  cost.lineScales = {0.98765, 1.0};
  cost.tangentialErrors = {0.5, 9, 0.25, 9, 9};
  cost.normalErrors = {0.125, 9, 0, 9, 9};
  cost.rotationErrors = {1, 9, 2, 9, 9};
  cost.logScaleErrors = {-0.25, 9, 0.5, 9, 9};
  cost.matchCost = 1;
  cost.unmatchedCost = 2;
  cost.breakCost = 4;
  cost.normalCost = 8;
  cost.tangentialCost = 16;
  cost.rotationCost = 32;
  cost.logScaleCost = 64;
  cost.spacingCost = 128.5;
  const std::vector<rz_CharData> charData = rowScene(5).charData;
  const std::vector<rz_Pose> poses(5);
  rzDiagObject diag;
  rf_RecordArrangeCosts(
      draw::paper(9, 9), *boxAlphabet(), keys, charData, poses, {0.75, 0, 0.5, 0, 0},
      {rzD::eMatched, rzD::eInferred, rzD::eMatched, rzD::eUnknown, rzD::eUnknown}, {},
      pathOf({3, kUnmatched, 0, kUnmatched, kUnmatched}, {0, 3}), cost, &diag);
  ASSERT_THAT(titles(diag), ElementsAre("1Build arrangement"));
  EXPECT_EQ(diag.level(), 0);
  const rzDiagRecord& record = *diag.diagRecord(0);
  EXPECT_THAT(labels(record), ElementsAre("Line #0 details", "Line #1 details", "Arrangement cost",
                                          "Line #0 graphics", "Line #1 graphics"));
  EXPECT_EQ(record.texts()[0].content,
            "Line 0:\nStraight, 3 characters\nAverage angle: 12 degrees\nAerage scale: 0.99\n\n"
            "Cost details:\nIndex\tChar\tChoice\tMatch\tTan\tNorm\tRot\tScale\n"
            "0\t'A'\t3\t0.25\t0.5\t0.12\t1\t-0.25\n"
            "1\t'B'\t--\t0\tCharacter unmatched; pose inferred\n"
            "2\t'A'\t0\t0.5\t0.25\t0\t2\t0.5\n"
            "Normalized total\t\t0.75\t1.1\t0.19\t4.5\t0.38\n\n\0"s);
  EXPECT_EQ(record.texts()[1].content,
            "Line 1:\nCircular, 2 characters\nAverage angle: 0 degrees\nAerage scale: 1\n\n"
            "Cost details:\nIndex\tChar\tChoice\tMatch\tTan\tNorm\tRot\tScale\n"
            "3\t'gap'\t--\t0\tCharacter unmatched; pose unknown\n"
            "4\t'B'\t--\t0\tCharacter unmatched; pose unknown\n"
            "Normalized total\t\t0\t0\t0\t0\t0\n\n\0"s);
  EXPECT_EQ(record.texts()[2].content,
            "Best solution:\nLine break cost\t\t4\nUnmatched char cost\t2\nNormal trans cost\t\t8\n"
            "Tangential trans cost\t16\nOrientation cost\t\t32\nScale cost\t\t64\n"
            "Total cost\t\t\t255.5\n");
  EXPECT_THAT(drawings(record.graphics()[0].list),
              ElementsAre("red segment 2", "green box 1", "green segment 2", "yellow point 1",
                          "orange box 1", "orange segment 2", "yellow point 1", "green box 1",
                          "green segment 2", "yellow point 1"));
  EXPECT_THAT(record.graphics()[1].list.items(), IsEmpty());
}

TEST(ArrangeDiagnostics, EachKindOfLineShapeIsCountedThroughByItself) {
  const std::vector<rzLineSeg> segs{{{0, 0}, {1, 0}}, {{0, 5}, {1, 5}}};
  const std::vector<rzEllipseArc2> arcs(1);
  rzGraphicList list;
  std::size_t nextSeg = 0;
  std::size_t nextArc = 0;
  for (const rzD::LineType type :
       {rzD::eStraight, rzD::eDontCare, rzD::eCircular, rzD::eStraight}) {
    rf_DrawLineShape(list, type, segs, nextSeg, arcs, nextArc);
  }
  ASSERT_THAT(drawings(list), ElementsAre("red segment 2", "red arc 2", "red segment 2"));
  EXPECT_EQ(dynamic_cast<const rzGraphicSimple<rzLineSeg>&>(*list.items()[2]).shape(), segs[1]);
}

TEST(ArrangeDiagnostics, ResultsAreTabledByPosition) {
  const Image image = print({draw::letterF(), draw::letterR()});
  rzDiagObject diag;
  const rzOCArrangeResults results = arrange(image, Image(), &diag, rzDiagDefs::eResults);
  ASSERT_EQ(results.statusFlags()[2], rzD::eUnknown);
  const std::string text = recordOf(diag, "OC Arranger: Output").texts().at(0).content;
  EXPECT_THAT(text, HasSubstr("\n0\teMatched \t" + rfDbl(results.scores()[0], 3, false) +
                              "\t0x00000046\t'F'\teNormal\t32x42\n"));
  EXPECT_THAT(text, HasSubstr("\n2\teUnknown \t0.000\t0x0000004B\t'K'\teNormal\t32x42\n"));
  EXPECT_THAT(
      text,
      HasSubstr("\nNumber of lines: " + std::to_string(results.arrangement()->numLines()) + "\n"));
}

rzPtrHandle_const<rzOCLine> lineOf(const std::vector<rzLong>& keys) {
  const auto alphabet = boxAlphabet();
  std::vector<rzOCKeySet> keySets;
  for (const rzLong key : keys) keySets.emplace_back(std::vector<rzLong>{key}, 0);
  const rz2Rigid step(rzDegree(0), rzVector<2>(kPitch, 0));
  return new rzOCLine(keySets, alphabet, step, 2.0);
}

TEST(ArrangeDiagnostics, LinesAreToldAndDrawnIntoOneGrowingList) {
  const std::vector<rzLong> keys{100, 32, 101};
  const std::vector<rzD::CharStatus> statuses{rzD::eMatched, rzD::eInferred, rzD::eUnknown};
  const rz2Rigid pose(rzDegree(90), rzVector<2>(1, 2));
  rzDiagObject diag;
  rzGraphicList list;
  diag.newDiagRecord();
  rf_RecordLineDetails(lineOf({100, 32}), pose, keys, statuses, {}, &diag, list);
  diag.newDiagRecord();
  rf_RecordLineDetails(lineOf({101}), pose, keys, statuses, {}, &diag, list);
  rf_RecordLineDetails({}, pose, keys, statuses, {}, &diag, list);
  rf_RecordLineDetails(lineOf({100}), pose, keys, statuses, {}, nullptr, list);

  EXPECT_EQ(diag.diagRecord(0)->texts().at(0).content,
            "Line pose:  < rz2Rigid > ( 1 , 2 ) : 90.000 degrees \n\nNumber of positions: 2\n"
            "Position #0\n  Number of characters: 1\n    Character #0\n"
            "      Name: 'A'   Type: eNormal  Key: 0x00000064\n      Status: eMatched \n"
            "      Pose:  < rz2Rigid > ( 0 , 0 ) : 0.000 degrees \n      Scale: 2\n\n"
            "Position #1\n  Number of characters: 1\n    Character #0\n"
            "      Name: 'gap'   Type: eBlank  Key: 0x00000020\n      Status: eInferred\n"
            "      Pose:  < rz2Rigid > ( 12 , 0 ) : 0.000 degrees \n      Scale: 2\n\n");
  const auto known = ElementsAre("green box 1", "green segment 2", "yellow point 1", "orange box 1",
                                 "orange segment 2", "yellow point 1", "yellow outline 1");
  EXPECT_THAT(drawings(diag.diagRecord(0)->graphics().at(0).list), known);
  EXPECT_THAT(drawings(diag.diagRecord(1)->graphics().at(0).list), known) << "none for unknown";
  EXPECT_EQ(diag.diagRecord(1)->texts().size(), 1U);

  // A quarter turn takes (x, y) of the line to (1 - y, 2 + x); the characters are 20 by 40, and
  // 14 by 18 from 12 on.
  const auto& box = dynamic_cast<const rzGraphicSimple<rzAffineRectangle>&>(*list.items()[3]);
  EXPECT_NEAR(box.shape().cornerPo().distance(rzVector<2>(1, 14)), 0, 1e-9);
  EXPECT_NEAR(box.shape().cornerPx().distance(rzVector<2>(1, 28)), 0, 1e-9);
  const auto& outline =
      dynamic_cast<const rzGraphicWithFill<rzGenRect, rzGenRect>&>(*list.items()[6]);
  EXPECT_NEAR(outline.shape().ul().distance(rzVector<2>(1, 2)), 0, 1e-6);
  EXPECT_NEAR(outline.shape().lr().distance(rzVector<2>(-39, 28)), 0, 1e-6);
}

}  // namespace
