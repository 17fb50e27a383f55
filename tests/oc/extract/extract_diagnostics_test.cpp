// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "oc/extract_model.h"
#include "rz/angle.h"
#include "rz/diag.h"
#include "rz/graphics.h"
#include "tests/oc/extract/drawn_alphabet.h"
#include "tests/oc/extract/extract_peer.h"

namespace {

using testing::StartsWith;
using Peer = rz_OCExtractPeer;

constexpr rzULong kResults = 0x20000;

const std::string kParamLines =
    "Runtime Params\n"
    "==============\n"
    "Accept Thresh = 0.5\n"
    "Confusion Thresh = 0.6\n"
    "Overlap =0.1\n";

rz_OCExtractCharInstance instanceAt(double score, double x, double y, double degrees) {
  rz_OCExtractCharInstance instance;
  instance.score = score;
  instance.pose = drawn::placed(x, y, degrees, 1.5);
  instance.affRect = rzAffineRectangle(rzPelRect(0, 0, 32, 42)).map(instance.pose);
  return instance;
}

template <class Shape>
const rzGraphicSimple<Shape>* item(const rzDiagRecord& record, std::size_t i) {
  const auto& items = record.graphics().at(0).list.items();
  return dynamic_cast<const rzGraphicSimple<Shape>*>(items.at(i).rep());
}

// A model that was trained for K, R and a blank, with results made by hand: two instances of K.
class ExtractDiagnostics : public testing::Test {
 protected:
  ExtractDiagnostics() {
    const std::vector<rzLong> text = {'K', 'R', ' '};
    Peer::train(model_, alphabet_, text, result_);
    const rzPtrHandle<rz_OCExtractCharResult> foundK(new rz_OCExtractCharResult);
    Peer::append(*foundK, instanceAt(0.75, 10, 20, 0));
    Peer::append(*foundK, instanceAt(0.5, 40, 20, 90));
    foundK->found(true);
    foundK_ = foundK;
    Peer::add(result_, 'K', foundK);
    Peer::add(result_, 'R', new rz_OCExtractCharResult);
    Peer::add(result_, ' ', new rz_OCExtractCharResult);
    Peer::postProcess(model_, result_, text);
  }

  void draw(rzULong flags) { Peer::drawDiags(model_, alphabet_, result_, &diag_, flags); }

  rzPtrHandle_const<rzOCAlphabet> alphabet_ =
      drawn::alphabet({drawn::character('K', draw::letterK()),
                       drawn::character('R', draw::letterR()), drawn::blank(' ')});
  rz_OCExtractModel model_;
  rz_OCExtractStringResult result_;
  rzPtrHandle<rz_OCExtractCharResult> foundK_;
  rzDiagObject diag_;
};

TEST_F(ExtractDiagnostics, NothingIsWrittenUnlessAskedFor) {
  draw(0x40000);
  EXPECT_EQ(Peer::diagText(model_), "");
  EXPECT_EQ(diag_.numRecords(), 0);
}

TEST_F(ExtractDiagnostics, TextListsSearchableCharactersAndTheirInstances) {
  draw(kResults);
  const std::string expected =
      "\nFinal Results\n"
      "Found Char Model 'K'\n"
      " \t Instance #0 \t Score= 0.75 \t Angle= 0 \t Scale=1.5\n"
      " \t Instance #1 \t Score= 0.5 \t Angle= 90 \t Scale=1.5\n"
      "\n"
      "Could not find Char Model 'R'\n"
      "\n";
  ASSERT_EQ(diag_.numRecords(), 3);
  EXPECT_EQ(diag_.diagRecord(0)->annotation(), "Result details");
  EXPECT_EQ(diag_.diagRecord(0)->texts().at(0).content, expected + '\0');
}

TEST_F(ExtractDiagnostics, EachInstanceHasItsOwnPicture) {
  draw(kResults);
  ASSERT_EQ(diag_.numRecords(), 3);
  for (rzLong k = 0; k < 2; ++k) {
    const rzDiagRecord& record = *diag_.diagRecord(k + 1);
    EXPECT_EQ(record.annotation(), "Character 'K' Result #" + std::to_string(k) + '\0');
    ASSERT_EQ(record.graphics().size(), 1u);
    EXPECT_EQ(record.graphics()[0].coordinateSystem, rzDiagDefs::eClientCoordinates);
    const auto* box = item<rzAffineRectangle>(record, 0);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->shape(), foundK_->affRect(k));
    EXPECT_EQ(box->color(), rzColor::greenColor());
  }
}

TEST_F(ExtractDiagnostics, TicksShowEachAngleAtWhichTheCharacterLooksTheSame) {
  const struct {
    rz_OCExtractDefs::Symmetry symmetry;
    std::vector<double> thinTicks;
  } cases[] = {{rz_OCExtractDefs::eNoSymmetry, {}},
               {rz_OCExtractDefs::eRot180Symmetry, {180}},
               {rz_OCExtractDefs::eAnyAngleSymmetry, {180, 90, 270}}};
  constexpr double kRounding = 1e-9;
  constexpr double kLength = 1.5 * 16;  // the pose's scale times half the smaller side
  for (const auto& c : cases) {
    Peer::symmetry(*foundK_, c.symmetry);
    rzDiagObject diag;
    Peer::drawDiags(model_, alphabet_, result_, &diag, kResults);
    const rzDiagRecord& record = *diag.diagRecord(2);  // at (40, 20), turned by 90 degrees
    const auto& items = record.graphics().at(0).list.items();
    ASSERT_EQ(items.size(), c.thinTicks.size() + 2);
    for (std::size_t i = 1; i < items.size(); ++i) {
      const auto* tick = item<rzLineSeg>(record, i);
      ASSERT_NE(tick, nullptr);
      const bool isOwn = i + 1 == items.size();
      const rzDegree angle(90.0 + (isOwn ? 0.0 : c.thinTicks[i - 1]));
      const rzVector<2> start(40, 20);
      EXPECT_LT(tick->shape().p1().distance(start), kRounding);
      EXPECT_LT(tick->shape().p2().distance(start + rzVector<2>(kLength, angle)), kRounding);
      EXPECT_EQ(tick->props(), isOwn ? rzGraphicProps(rzColor::greenColor(), 2)
                                     : rzGraphicProps(rzColor::blueColor()));
    }
  }
}

}  // namespace
